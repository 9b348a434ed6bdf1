// Finds functions by name, because not every system has them.
#ifndef QBSUPPORT_PLATFORM_NAMED_FUNCTION_H
#define QBSUPPORT_PLATFORM_NAMED_FUNCTION_H

#include "platform/windows_api.h"

namespace qb_support {

// The function `name` of `module`, or null if there is no such module or function. `Function` is
// the function's type.
template <typename Function>
Function* FindFunction(HMODULE module, const char* name) {
    // For a null module, GetProcAddress would search the host's executable.
    if (module == nullptr) {
        return nullptr;
    }
    // Through a third type, because compilers warn about a direct cast between the other two.
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace qb_support

#endif
