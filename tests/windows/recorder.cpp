#include "recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string_view>

#include "faults/watched_memory.h"
#include "library.h"
#include "platform/stand_in/kernel.h"
#include "platform/stand_in/registry.h"
#include "platform/stand_in/runtime.h"
#include "platform/stand_in/user_interface.h"
#include "platform/stand_in/version_resource.h"
#include "qbsupport/qbsupport.h"

void* faults::RealMalloc(std::size_t size) {
    void* const block = std::malloc(size);
    if (block != nullptr) {
        std::memset(block, 0xCD, size);  // what is read before it is written shows
    }
    return block;
}

void* faults::RealCalloc(std::size_t count, std::size_t size) {
    return std::calloc(count, size);
}

void faults::RealFree(void* block) {
    std::free(block);
}

std::string* recording = nullptr;

std::string Digits(unsigned long long number) {
    char text[32];
    std::snprintf(text, sizeof(text), number > 0xFFFF ? "0x%llX" : "%llu", number);
    return text;
}

namespace {

// Every field that is set.
std::string ShowVersion(OSVERSIONINFOEXA record) {
    std::string text = "size " + Digits(record.dwOSVersionInfoSize);
    record.dwOSVersionInfoSize = 0;
    const auto take = [&text](const char* name, auto& field) {
        text += field != 0 ? name + Digits(field) : "";
        field = 0;
    };
    take(" major ", record.dwMajorVersion);
    take(" minor ", record.dwMinorVersion);
    take(" build ", record.dwBuildNumber);
    take(" pack ", record.wServicePackMajor);
    take(" suite ", record.wSuiteMask);
    take(" type ", record.wProductType);
    const OSVERSIONINFOEXA zero{};
    return text + (std::memcmp(&record, &zero, sizeof(zero)) == 0 ? "" : " and more");
}

// How a parameter is written down.
template <typename Type>
std::string Show(Type value) {
    if constexpr (std::is_same_v<Type, LPARAM>) {
        return "given";  // an address
    } else if constexpr (std::is_integral_v<Type>) {
        return Digits(static_cast<unsigned long long>(value));
    } else if constexpr (std::is_same_v<Type, HKEY>) {
        return value == HKEY_LOCAL_MACHINE ? "HKLM" : value == HKEY_CURRENT_USER ? "HKCU" : "key";
    } else if (value == nullptr) {
        return "null";
    } else if constexpr (std::is_same_v<Type, const char*>) {
        return value;
    } else if constexpr (std::is_same_v<Type, DWORD*>) {
        return Digits(*value);
    } else if constexpr (std::is_same_v<Type, OSVERSIONINFOEXA*>) {
        return ShowVersion(*value);
    } else if constexpr (requires { value->dwSize; }) {
        return "size " + Digits(value->dwSize);
    } else if constexpr (requires { value->dwLength; }) {
        return "size " + Digits(value->dwLength);
    } else if constexpr (requires { value->cbSize; }) {
        return "size " + Digits(value->cbSize);
    } else if constexpr (requires { value->cb; }) {
        return "size " + Digits(value->cb);
    } else if constexpr (std::is_same_v<Type, HANDLE>) {
        return value == INVALID_HANDLE_VALUE ? "-1" : "given";
    } else {
        return "given";
    }
}

template <typename... Parameters>
void Record(const char* name, Parameters... parameters) {
    if (recording != nullptr) {
        [[maybe_unused]] const char* separator = "";
        *recording += std::string(name) + '(';
        ((*recording += separator + Show(parameters), separator = ", "), ...);
        *recording += ")\n";
    }
}

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

template <std::size_t kSize>
struct Name {
    char text[kSize];
    consteval Name(const char (&letters)[kSize]) { std::copy_n(letters, kSize, text); }
};

// A function of the same type that writes the call down first.
template <Name kName, typename Result, typename... Parameters>
void* Recorded(Result (*function)(Parameters...)) {
    static Result (*wrapped)(Parameters...) = function;
    return Address(+[](Parameters... parameters) -> Result {
        Record(kName.text, parameters...);
        return wrapped(parameters...);
    });
}

template <Name kName, typename Type>
void RecordIfNamed(std::string_view name, FARPROC& function) {
    if (name == kName.text) {
        auto* const found = reinterpret_cast<Type*>(Address(function));
        function = reinterpret_cast<FARPROC>(Recorded<kName>(found));
    }
}

FARPROC FindProcedure(HMODULE module, const char* name) {
    Record("GetProcAddress", name);
    FARPROC function = GetProcAddress(module, name);
    if (recording != nullptr && function != nullptr) {
        RecordIfNamed<"GetNativeSystemInfo", void(SYSTEM_INFO*)>(name, function);
        RecordIfNamed<"GetProductInfo", BOOL(DWORD, DWORD, DWORD, DWORD, DWORD*)>(name, function);
        RecordIfNamed<"GetProcessMemoryInfo", BOOL(HANDLE, PROCESS_MEMORY_COUNTERS*, DWORD)>(
            name, function);
        RecordIfNamed<"GetUserNameExA", BOOLEAN(int, char*, ULONG*)>(name, function);
    }
    return function;
}

std::map<std::string, void*> StandInFunctions() {
// clang-format off
#define ENTRY(function) {#function, Recorded<#function>(function)}
#define RUNTIME_ENTRY(function) {#function, Recorded<#function>(qb_support::function)}
    return {
        ENTRY(CloseHandle), ENTRY(CreateToolhelp32Snapshot), ENTRY(EnumDisplayMonitors),
        ENTRY(FormatMessageA), ENTRY(GetCurrentDirectoryA), ENTRY(GetCurrentProcess),
        ENTRY(GetCurrentProcessId), ENTRY(GetDC), ENTRY(GetDeviceCaps), ENTRY(GetFileAttributesA),
        ENTRY(GetFileVersionInfoA), ENTRY(GetFileVersionInfoSizeA), ENTRY(GetLocaleInfoA),
        ENTRY(GetModuleFileNameA), ENTRY(GetModuleHandleA), ENTRY(GetMonitorInfoA),
        ENTRY(GetSystemDefaultLangID), ENTRY(GetSystemDirectoryA), ENTRY(GetSystemInfo),
        ENTRY(GetSystemMetrics), ENTRY(GetTempPathA), ENTRY(GetTimeZoneInformation),
        ENTRY(GetWindowsDirectoryA), ENTRY(GlobalMemoryStatusEx), ENTRY(LoadLibraryA),
        ENTRY(Module32First), ENTRY(Module32Next), ENTRY(Process32First), ENTRY(Process32Next),
        ENTRY(RegCloseKey), ENTRY(RegOpenKeyExA), ENTRY(RegQueryValueExA), ENTRY(ReleaseDC),
        ENTRY(VerLanguageNameA), ENTRY(VerQueryValueA), ENTRY(VerSetConditionMask),
        ENTRY(VerifyVersionInfoA), RUNTIME_ENTRY(_ctime64), RUNTIME_ENTRY(_time64),
        RUNTIME_ENTRY(_tzset), RUNTIME_ENTRY(getenv), RUNTIME_ENTRY(setlocale),
        {"GetProcAddress", Address(FindProcedure)},
        {"GetLastError", Address(GetLastError)}, {"malloc", Address(faults::WatchedMalloc)},
        {"calloc", Address(faults::WatchedCalloc)}, {"free", Address(faults::WatchedFree)},
    };
#undef ENTRY
#undef RUNTIME_ENTRY
    // clang-format on
}

struct StandInLibrary : Library {
    StandInLibrary() {
        const auto functions = StandInFunctions();
        ForEachImport([this, &functions](const char* name, void*& slot) {
            const auto function = functions.find(name);
            if (function != functions.end()) {
                slot = function->second;
            } else {
                leftAlone.emplace_back(name);
            }
        });
    }

    std::vector<std::string> leftAlone;
};

const StandInLibrary& TheLibrary() {
    static const StandInLibrary library;
    return library;
}

}  // namespace

const std::vector<std::string>& ImportsLeftAlone() {
    return TheLibrary().leftAlone;
}

int QbSupportGetInfo(int kind, unsigned int flags, char** buffer, const char* argument) {
    return TheLibrary().getInfo(kind, flags, buffer, argument);
}

bool QbSupportReleaseBuffer(char* buffer) {
    return TheLibrary().release(buffer);
}
