#include "support.h"

#include "faults/checked_call.h"

std::optional<std::string> GetInfo(int kind, unsigned flags, const char* argument) {
    const faults::CallOutcome outcome = faults::CallAlone(kind, flags, argument);
    EXPECT_EQ(outcome.violations, "") << "by kind " << kind;
    return outcome.text;
}
