// The system's libraries and the functions that are found in them by name.
#include <cstring>
#include <string_view>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"
#include "platform/stand_in/system_information.h"

using namespace stand_in;

namespace {

void GetNativeSystemInfo(SYSTEM_INFO* info) {
    CountCall(PlatformCall::GetNativeSystemInfo);
    FillSystemInfo(*info, CurrentMachine().nativeArchitecture);
}

BOOL GetProductInfo(DWORD major, DWORD, DWORD, DWORD, DWORD* product) {
    if (CallFails(PlatformCall::GetProductInfo) || !product) {
        return FALSE;
    }
    // Product types began with version 6.
    *product = major < 6 ? 0 : CurrentMachine().productInfo;
    return major < 6 ? FALSE : TRUE;
}

BOOL GetProcessMemoryInfo(HANDLE process, PROCESS_MEMORY_COUNTERS* counters, DWORD size) {
    if (CallFails(PlatformCall::GetProcessMemoryInfo)) {
        FillWithGarbage(counters, size);
        return FALSE;
    }
    if (process != INVALID_HANDLE_VALUE) {
        return Refuse(ERROR_INVALID_HANDLE, FALSE);
    }
    if (!counters || size < sizeof *counters) {
        return Refuse(ERROR_INSUFFICIENT_BUFFER, FALSE);
    }
    *counters = CurrentMachine().processMemory;
    counters->cb = sizeof *counters;
    return TRUE;
}

BOOLEAN GetUserNameExA(int format, char* buffer, ULONG* size) {
    constexpr BOOLEAN failed = 0;
    constexpr BOOLEAN succeeded = 1;
    if (CallFails(PlatformCall::GetUserNameExA)) {
        FillWithGarbage(buffer, size ? *size : 0);
        return failed;
    }
    if (!size) {
        return Refuse(ERROR_INVALID_PARAMETER, failed);
    }
    const auto& names = CurrentMachine().userNames;
    const auto name = names.find(format);
    if (name == names.end()) {
        return Refuse(ERROR_NONE_MAPPED, failed);
    }
    const auto length = static_cast<ULONG>(name->second.size());
    if (!buffer || *size <= length) {
        FillWithGarbage(buffer, *size);
        *size = length + 1;
        return Refuse(ERROR_MORE_DATA, failed);
    }
    std::memcpy(buffer, name->second.c_str(), length + 1);
    *size = length;
    return succeeded;
}

struct Library {
    std::string_view name;
    std::string_view nameWithoutExtension;
    ULONG_PTR address;
    /// Null for a library that every process has loaded.
    bool Available::*available;
};

constexpr ULONG_PTR kernel32 = 0x7FF810000000;
constexpr ULONG_PTR psapi = 0x7FF811000000;
constexpr ULONG_PTR secur32 = 0x7FF812000000;

constexpr Library libraries[] = {
    {"kernel32.dll", "kernel32", kernel32, nullptr},
    {"psapi.dll", "psapi", psapi, &Available::psapi},
    {"secur32.dll", "secur32", secur32, &Available::secur32},
};

HMODULE FindLibrary(LPCSTR name, bool onlyLoaded) {
    for (const Library& library : libraries) {
        if (!SameName(name, library.name) && !SameName(name, library.nameWithoutExtension)) {
            continue;
        }
        const bool isLoaded = library.available == nullptr;
        if (isLoaded || (!onlyLoaded && CurrentMachine().available.*library.available)) {
            return reinterpret_cast<HMODULE>(library.address);
        }
    }
    return Refuse(ERROR_MOD_NOT_FOUND, HMODULE{});
}

struct NamedFunction {
    ULONG_PTR library;
    std::string_view name;
    bool Available::*available;
    FARPROC address;
};

template <typename Function>
FARPROC AddressOf(Function* function) {
    // By way of the one type that the compiler lets a function pointer become without a warning.
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

const NamedFunction functions[] = {
    {kernel32, "GetNativeSystemInfo", &Available::getNativeSystemInfo,
     AddressOf(GetNativeSystemInfo)},
    {kernel32, "GetProductInfo", &Available::getProductInfo, AddressOf(GetProductInfo)},
    {psapi, "GetProcessMemoryInfo", &Available::getProcessMemoryInfo,
     AddressOf(GetProcessMemoryInfo)},
    {secur32, "GetUserNameExA", &Available::getUserNameEx, AddressOf(GetUserNameExA)},
};

}  // namespace

HMODULE GetModuleHandleA(LPCSTR name) {
    if (CallFails(PlatformCall::GetModuleHandleA)) {
        return nullptr;
    }
    if (!name) {
        return Refuse(ERROR_INVALID_PARAMETER, HMODULE{});
    }
    return FindLibrary(name, true);
}

HMODULE LoadLibraryA(LPCSTR name) {
    if (CallFails(PlatformCall::LoadLibraryA)) {
        return nullptr;
    }
    if (!name) {
        return Refuse(ERROR_INVALID_PARAMETER, HMODULE{});
    }
    return FindLibrary(name, false);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    if (CallFails(PlatformCall::GetProcAddress)) {
        return nullptr;
    }
    if (!module || !name) {
        return Refuse(ERROR_INVALID_PARAMETER, FARPROC{});
    }
    for (const NamedFunction& function : functions) {
        if (reinterpret_cast<ULONG_PTR>(module) == function.library && name == function.name &&
            CurrentMachine().available.*function.available) {
            return function.address;
        }
    }
    return Refuse(ERROR_PROC_NOT_FOUND, FARPROC{});
}
