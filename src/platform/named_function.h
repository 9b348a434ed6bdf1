// Functions that not every system has, looked up by name at the moment of use.
#ifndef QBSUPPORT_PLATFORM_NAMED_FUNCTION_H
#define QBSUPPORT_PLATFORM_NAMED_FUNCTION_H

#include "platform/windows_api.h"

namespace qb_support {

// The function `name` of `module`, null when there is no such module or function. `Function` is the
// function's type.
template <typename Function>
Function* FindFunction(HMODULE module, const char* name) {
    // A null module would search the host's executable.
    if (module == nullptr) {
        return nullptr;
    }
    // By way of a third type, because compilers doubt a direct cast between the other two.
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace qb_support

#endif
