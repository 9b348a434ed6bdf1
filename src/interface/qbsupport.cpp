// The two exported functions.
#include "qbsupport/qbsupport.h"

#include <cstdlib>
#include <cstring>

#include "core/collector.h"

using qb_support::CQbSupportWindows;
using qb_support::CText;

namespace {

// Copies the text and its terminator into a block of exactly their size, which the caller then
// owns.
bool HandOut(const CText& text, char** buffer) {
    const std::size_t size = text.Size() + 1;
    char* const block = static_cast<char*>(std::malloc(size));
    if (block == nullptr) {
        return false;
    }
    std::memcpy(block, text.CStr(), size);
    *buffer = block;
    return true;
}

}  // namespace

int QBSUPPORT_CALL QbSupportGetInfo(int kind, unsigned int flags, char** buffer,
                                    const char* argument) {
    CQbSupportWindows collector;
    CText result;
    CText sectionArgument(argument != nullptr ? argument : "");
    // A truncated argument would name something else, so no section gets one.
    if (sectionArgument.Failed()) {
        return 0;
    }
    const bool complete =
        collector.GetInfo(kind, flags, result, sectionArgument) && !result.Failed();
    return complete && HandOut(result, buffer) ? 1 : 0;
}

bool QBSUPPORT_CALL QbSupportReleaseBuffer(char* buffer) {
    if (buffer != nullptr) {
        std::free(buffer);
    }
    return true;
}
