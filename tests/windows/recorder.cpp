#include "recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <type_traits>

#include "library.h"
#include "platform/stand_in/kernel.h"
#include "platform/stand_in/registry.h"
#include "platform/stand_in/runtime.h"
#include "platform/stand_in/user_interface.h"
#include "platform/stand_in/version_resource.h"
#include "qbsupport/qbsupport.h"

// The watch over the library's allocations, which the native build ties in by the linker's --wrap.
void* RealMalloc(std::size_t size) asm("__real_malloc");
void* RealCalloc(std::size_t count, std::size_t size) asm("__real_calloc");
void RealFree(void* block) asm("__real_free");
void* WatchedMalloc(std::size_t size) asm("__wrap_malloc");
void* WatchedCalloc(std::size_t count, std::size_t size) asm("__wrap_calloc");
void WatchedFree(void* block) asm("__wrap_free");

void* RealMalloc(std::size_t size) {
    void* const block = std::malloc(size);
    if (block != nullptr) {
        std::memset(block, 0xCD, size);  // what is read before it is written shows
    }
    return block;
}

void* RealCalloc(std::size_t count, std::size_t size) {
    return std::calloc(count, size);
}

void RealFree(void* block) {
    std::free(block);
}

int yesAnswer = 1;

namespace {

Recorder* recorder = nullptr;

template <typename Number>
std::string Digits(Number number) {
    char text[32];
    const auto wide = static_cast<unsigned long long>(number);
    std::snprintf(text, sizeof(text), wide > 0xFFFF ? "0x%llX" : "%llu", wide);
    return text;
}

std::string Size(DWORD size) {
    return "size " + Digits(size);
}

// Every field that is set.
std::string ShowVersion(OSVERSIONINFOEXA record) {
    std::string text = Size(record.dwOSVersionInfoSize);
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

std::string ShowMonitor(const MONITORINFO& record) {
    const MONITORINFOEXA zero{};
    const bool isZero = std::memcmp(&record.rcMonitor, &zero.rcMonitor,
                                    sizeof(zero) - offsetof(MONITORINFO, rcMonitor)) == 0;
    return Size(record.cbSize) + (isZero ? "" : " not zeroed");
}

// How a parameter is written down.
template <typename Type>
std::string Show(Type value) {
    if constexpr (std::is_same_v<Type, LPARAM>) {
        return "given";  // an address
    } else if constexpr (std::is_integral_v<Type>) {
        return Digits(value);
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
    } else if constexpr (std::is_same_v<Type, MONITORINFO*>) {
        return ShowMonitor(*value);
    } else if constexpr (requires { value->dwSize; }) {
        return Size(value->dwSize);
    } else if constexpr (requires { value->dwLength; }) {
        return Size(value->dwLength);
    } else if constexpr (requires { value->cb; }) {
        return Size(value->cb);
    } else if constexpr (std::is_same_v<Type, HANDLE>) {
        return value == INVALID_HANDLE_VALUE ? "-1" : "given";
    } else {
        return "given";
    }
}

template <typename... Parameters>
void Record(const char* name, Parameters... parameters) {
    if (recorder == nullptr) {
        return;
    }
    std::string line(name);
    line += '(';
    [[maybe_unused]] const char* separator = "";
    ((line += separator + Show(parameters), separator = ", "), ...);
    recorder->Add(line + ')');
}

// A function with the stand-in function's own type that writes the call down first. The name comes
// from a table, since a template cannot take it.
template <auto Function>
struct Recorded;

template <typename Result, typename... Parameters, Result (*Function)(Parameters...)>
struct Recorded<Function> {
    inline static const char* name = nullptr;
    static Result Call(Parameters... parameters) {
        Record(name, parameters...);
        return Function(parameters...);
    }
};

BOOL Verify(OSVERSIONINFOEXA* probe, DWORD typeBits, DWORDLONG conditions) {
    return VerifyVersionInfoA(probe, typeBits, conditions) != FALSE ? yesAnswer : FALSE;
}

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

template <auto Function>
std::pair<const std::string, void*> Entry(const char* name) {
    Recorded<Function>::name = name;
    return {name, Address(Recorded<Function>::Call)};
}

// The same for a function that is looked up by name; `found` is the stand-in's.
template <typename Type>
struct Named;

template <typename Result, typename... Parameters>
struct Named<Result(Parameters...)> {
    inline static const char* name = nullptr;
    inline static Result (*found)(Parameters...) = nullptr;

    static Result Call(Parameters... parameters) {
        Record(name, parameters...);
        return found(parameters...);
    }

    static void Replace(const char* wanted, const char* ownName, FARPROC& function) {
        if (std::strcmp(wanted, ownName) == 0) {
            name = ownName;
            found = reinterpret_cast<Result (*)(Parameters...)>(reinterpret_cast<void*>(function));
            function = reinterpret_cast<FARPROC>(Address(Call));
        }
    }
};

FARPROC FindProcedure(HMODULE module, const char* name) {
    Record("GetProcAddress", name);
    FARPROC function = GetProcAddress(module, name);
    if (recorder != nullptr && function != nullptr) {
        Named<void(SYSTEM_INFO*)>::Replace(name, "GetNativeSystemInfo", function);
        Named<BOOL(DWORD, DWORD, DWORD, DWORD, DWORD*)>::Replace(name, "GetProductInfo", function);
        Named<BOOL(HANDLE, PROCESS_MEMORY_COUNTERS*, DWORD)>::Replace(name, "GetProcessMemoryInfo",
                                                                      function);
        Named<BOOLEAN(int, char*, ULONG*)>::Replace(name, "GetUserNameExA", function);
    }
    return function;
}

std::map<std::string, void*> StandInFunctions() {
// clang-format off
#define ENTRY(function) Entry<function>(#function)
#define RUNTIME_ENTRY(function) Entry<qb_support::function>(#function)
    return {
        ENTRY(CloseHandle), ENTRY(CreateToolhelp32Snapshot), ENTRY(EnumDisplayMonitors),
        ENTRY(FormatMessageA), ENTRY(GetCurrentDirectoryA), ENTRY(GetCurrentProcess),
        ENTRY(GetCurrentProcessId), ENTRY(GetDC), ENTRY(GetDeviceCaps), ENTRY(GetFileAttributesA),
        ENTRY(GetFileVersionInfoA), ENTRY(GetFileVersionInfoSizeA), ENTRY(GetLastError),
        ENTRY(GetLocaleInfoA), ENTRY(GetModuleFileNameA), ENTRY(GetModuleHandleA),
        ENTRY(GetMonitorInfoA), ENTRY(GetSystemDefaultLangID), ENTRY(GetSystemDirectoryA),
        ENTRY(GetSystemInfo), ENTRY(GetSystemMetrics), ENTRY(GetTempPathA),
        ENTRY(GetTimeZoneInformation), ENTRY(GetWindowsDirectoryA), ENTRY(GlobalMemoryStatusEx),
        ENTRY(LoadLibraryA), ENTRY(Module32First), ENTRY(Module32Next), ENTRY(Process32First),
        ENTRY(Process32Next), ENTRY(RegCloseKey), ENTRY(RegOpenKeyExA), ENTRY(RegQueryValueExA),
        ENTRY(ReleaseDC), ENTRY(VerLanguageNameA), ENTRY(VerQueryValueA),
        ENTRY(VerSetConditionMask), RUNTIME_ENTRY(_ctime64), RUNTIME_ENTRY(_time64),
        RUNTIME_ENTRY(_tzset), RUNTIME_ENTRY(getenv), RUNTIME_ENTRY(setlocale),
        Entry<Verify>("VerifyVersionInfoA"), {"GetProcAddress", Address(FindProcedure)},
        {"malloc", Address(WatchedMalloc)}, {"calloc", Address(WatchedCalloc)},
        {"free", Address(WatchedFree)},
    };
#undef ENTRY
#undef RUNTIME_ENTRY
    // clang-format on
}

struct StandInLibrary : Library {
    StandInLibrary() {
        const auto functions = StandInFunctions();
        for (const Import& import : ImportsOf(module)) {
            const auto function = functions.find(import.name);
            if (function != functions.end()) {
                import.ReplaceBy(function->second);
            } else {
                leftAlone.push_back(import.name);
            }
        }
        std::ranges::sort(leftAlone);
    }

    std::vector<std::string> leftAlone;
};

const StandInLibrary& TheLibrary() {
    static const StandInLibrary library;
    return library;
}

}  // namespace

Recorder::Recorder() {
    recorder = this;
}

Recorder::~Recorder() {
    recorder = nullptr;
}

const std::vector<std::string>& ImportsLeftAlone() {
    return TheLibrary().leftAlone;
}

int QbSupportGetInfo(int kind, unsigned int flags, char** buffer, const char* argument) {
    return TheLibrary().getInfo(kind, flags, buffer, argument);
}

bool QbSupportReleaseBuffer(char* buffer) {
    return TheLibrary().release(buffer);
}
