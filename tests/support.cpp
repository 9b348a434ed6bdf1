#include "support.h"

#include "platform/stand_in/calls.h"
#include "qbsupport/qbsupport.h"

std::optional<std::string> GetInfo(int kind, unsigned flags, const char* argument) {
    char untouched[] = "untouched";
    char* buffer = untouched;
    const int result = QbSupportGetInfo(kind, flags, &buffer, argument);
    EXPECT_EQ(stand_in::CountOpenHandles().Total(), 0) << "left open by kind " << kind;
    EXPECT_EQ(stand_in::HandleMisuses(), 0) << "by kind " << kind;

    std::optional<std::string> text;
    if (result == 1 && buffer != untouched) {
        text = buffer;
        EXPECT_TRUE(QbSupportReleaseBuffer(buffer));
    } else {
        EXPECT_EQ(result, 0) << "from kind " << kind;
        EXPECT_EQ(buffer, untouched) << "by kind " << kind;
    }
    return text;
}
