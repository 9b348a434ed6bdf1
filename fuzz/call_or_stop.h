// One call whose broken promises stop the fuzzer.
#ifndef QBSUPPORT_FUZZ_CALL_OR_STOP_H
#define QBSUPPORT_FUZZ_CALL_OR_STOP_H

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>

#include "faults/checked_call.h"

inline void Require(bool kept, const char* promise) {
    if (!kept) {
        std::fprintf(stderr, "ERROR: promise broken: %s\n", promise);
        std::abort();
    }
}

inline std::optional<std::string> CallOrStop(int kind, unsigned flags, const char* argument,
                                             faults::AllocationFault fault = {}) {
    faults::CallOutcome outcome = faults::CallAlone(kind, flags, argument, fault);
    Require(outcome.violations.empty(), outcome.violations.c_str());
    const bool memoryFailed = fault.first != 0 && fault.first <= outcome.allocations;
    Require(!memoryFailed || !outcome.text, "a failed allocation fails the call");
    return std::move(outcome.text);
}

#endif
