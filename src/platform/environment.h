// The environment variables of the process.
#ifndef QBSUPPORT_PLATFORM_ENVIRONMENT_H
#define QBSUPPORT_PLATFORM_ENVIRONMENT_H

#include <cstring>

#include "platform/windows_api.h"

#if defined(_UCRT) || defined(_MSC_VER)
#define QBSUPPORT_ON_UCRT
// Not all compilers' headers declare it.
extern "C" int _initialize_narrow_environment();
#endif

namespace qb_support {

// The run-time library treats a longer name as a programming error and may end the process.
inline constexpr std::size_t kLongestVariableName = 32766;

// The value of the environment variable `name` in the library's run time, which owns it. Null if
// the variable is not set, if its name is too long, or if the run time cannot read the environment.
inline const char* FindVariable(const char* name) {
    if (std::strlen(name) > kLongestVariableName) {
        return nullptr;
    }
#ifdef QBSUPPORT_ON_UCRT
    // If the host's program uses another run time, nobody has filled this one's environment yet,
    // and getenv finds nothing. If it is filled already, this call does nothing.
    if (_initialize_narrow_environment() != 0) {
        return nullptr;
    }
#endif
    return getenv(name);
}

}  // namespace qb_support

#endif
