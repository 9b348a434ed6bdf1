// System and process, the libraries found by name, directories, locale and messages.
#include <algorithm>
#include <cstring>

#include "stand_in/calls.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

void FillSystemInfo(SYSTEM_INFO* info, WORD architecture) {
    info->wProcessorArchitecture = architecture;
    info->dwNumberOfProcessors = CurrentMachine().processors;
}

void WINAPI GetNativeSystemInfo(SYSTEM_INFO* info) {
    Count(__func__);
    FillSystemInfo(info, CurrentMachine().nativeArchitecture);
}

BOOL WINAPI GetProductInfo(DWORD major, DWORD, DWORD, DWORD, DWORD* product) {
    if (Fails(__func__)) {
        return FALSE;
    }
    // There are product types since version 6.
    *product = major < 6 ? 0 : CurrentMachine().productInfo;
    return major < 6 ? FALSE : TRUE;
}

BOOL WINAPI GetProcessMemoryInfo(HANDLE process, PROCESS_MEMORY_COUNTERS* counters, DWORD size) {
    if (Fails(__func__, counters, size)) {
        return FALSE;
    }
    if (process != INVALID_HANDLE_VALUE || size != sizeof *counters || counters->cb != size) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
    }
    *counters = CurrentMachine().processMemory;
    return TRUE;
}

BOOLEAN WINAPI GetUserNameExA(EXTENDED_NAME_FORMAT format, char* buffer, ULONG* size) {
    constexpr BOOLEAN failed = 0;
    if (Fails(__func__, buffer, *size)) {
        return failed;
    }
    const auto& names = CurrentMachine().userNames;
    const auto name = names.find(format);
    if (name == names.end()) {
        return Refuse(ERROR_NONE_MAPPED, failed);
    }
    const bool fits = Give(name->second, buffer, *size);
    *size = static_cast<ULONG>(name->second.size() + (fits ? 0 : 1));
    return fits ? BOOLEAN{1} : Refuse(ERROR_MORE_DATA, failed);
}

struct NamedFunction {
    std::string_view library;
    std::string_view name;
    bool Available::* libraryAvailable;  // null for a library that every process has loaded
    bool Available::* available;
    void* address;
};

const NamedFunction functions[] = {
    {"kernel32.dll", "GetNativeSystemInfo", nullptr, &Available::getNativeSystemInfo,
     reinterpret_cast<void*>(GetNativeSystemInfo)},
    {"kernel32.dll", "GetProductInfo", nullptr, &Available::getProductInfo,
     reinterpret_cast<void*>(GetProductInfo)},
    {"psapi.dll", "GetProcessMemoryInfo", &Available::psapi, &Available::getProcessMemoryInfo,
     reinterpret_cast<void*>(GetProcessMemoryInfo)},
    {"secur32.dll", "GetUserNameExA", &Available::secur32, &Available::getUserNameEx,
     reinterpret_cast<void*>(GetUserNameExA)},
};

// A library's handle is its first row.
HMODULE FindLibrary(LPCSTR name, bool onlyLoaded) {
    for (const NamedFunction& function : functions) {
        const bool isLoaded = function.libraryAvailable == nullptr;
        if (SameName(name, function.library) &&
            (isLoaded || (!onlyLoaded && CurrentMachine().available.*function.libraryAvailable))) {
            return reinterpret_cast<HMODULE>(const_cast<NamedFunction*>(&function));
        }
    }
    return Refuse(ERROR_MOD_NOT_FOUND, HMODULE{});
}

/// The length without the NUL if the path fits, and with it if the path does not fit.
DWORD AnswerPath(const char* function, const std::string& path, LPSTR buffer, DWORD size) {
    if (Fails(function, buffer, size)) {
        return 0;
    }
    return static_cast<DWORD>(path.size() + (Give(path, buffer, size) ? 0 : 1));
}

}  // namespace

HMODULE GetModuleHandleA(LPCSTR name) {
    return Fails(__func__) ? nullptr : FindLibrary(name, true);
}

HMODULE LoadLibraryA(LPCSTR name) {
    return Fails(__func__) ? nullptr : FindLibrary(name, false);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    if (Fails(__func__)) {
        return nullptr;
    }
    const auto& library = reinterpret_cast<const NamedFunction*>(module)->library;
    for (const NamedFunction& function : functions) {
        if (function.library == library && function.name == name &&
            CurrentMachine().available.*function.available) {
            return reinterpret_cast<FARPROC>(function.address);
        }
    }
    return Refuse(ERROR_PROC_NOT_FOUND, FARPROC{});
}

void GetSystemInfo(SYSTEM_INFO* info) {
    Count(__func__);
    FillSystemInfo(info, CurrentMachine().architecture);
}

BOOL GlobalMemoryStatusEx(MEMORYSTATUSEX* status) {
    if (Fails(__func__) || status->dwLength != sizeof *status) {
        return FALSE;
    }
    *status = CurrentMachine().memory;
    return TRUE;
}

HANDLE GetCurrentProcess() {
    Count(__func__);
    // The pseudo handle of the calling process has the same value as an invalid handle.
    return INVALID_HANDLE_VALUE;
}

DWORD GetCurrentProcessId() {
    Count(__func__);
    return CurrentMachine().processId;
}

DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* zone) {
    if (Fails(__func__, zone, sizeof *zone)) {
        return TIME_ZONE_ID_INVALID;
    }
    *zone = CurrentMachine().timeZone;
    return CurrentMachine().timeZoneId;
}

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD message, DWORD language, LPSTR buffer, DWORD size,
                     va_list*) {
    // Without FORMAT_MESSAGE_IGNORE_INSERTS, Windows would read arguments that were not passed.
    if (Fails(__func__, buffer, size) ||
        flags != (FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS) ||
        language != MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT)) {
        return 0;
    }
    const auto& messages = CurrentMachine().messages;
    const auto text = messages.find(message);
    return text != messages.end() && Give(text->second, buffer, size)
               ? static_cast<DWORD>(text->second.size())
               : 0;
}

UINT GetSystemDirectoryA(LPSTR buffer, UINT size) {
    return AnswerPath(__func__, CurrentMachine().systemDirectory, buffer, size);
}

UINT GetWindowsDirectoryA(LPSTR buffer, UINT size) {
    return AnswerPath(__func__, CurrentMachine().windowsDirectory, buffer, size);
}

DWORD GetTempPathA(DWORD size, LPSTR buffer) {
    return AnswerPath(__func__, CurrentMachine().tempDirectory, buffer, size);
}

DWORD GetCurrentDirectoryA(DWORD size, LPSTR buffer) {
    return AnswerPath(__func__, CurrentMachine().currentDirectory, buffer, size);
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size) {
    if (Fails(__func__, buffer, size) || module) {
        return 0;
    }
    const std::string& path = CurrentMachine().executablePath;
    Give(path.substr(0, size - 1), buffer, size);
    // For a truncated path Windows returns the buffer's size.
    return static_cast<DWORD>(std::min<std::size_t>(path.size(), size));
}

DWORD GetFileAttributesA(LPCSTR path) {
    if (Fails(__func__)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    const auto& attributes = CurrentMachine().attributes;
    const auto entry = attributes.find(path);
    return entry != attributes.end() ? entry->second : INVALID_FILE_ATTRIBUTES;
}

LANGID GetSystemDefaultLangID() {
    Count(__func__);
    return CurrentMachine().language;
}

DWORD VerLanguageNameA(DWORD language, LPSTR buffer, DWORD size) {
    if (Fails(__func__, buffer, size) || language != CurrentMachine().language) {
        return 0;
    }
    const std::string& name = CurrentMachine().languageName;
    Give(name.substr(0, size - 1), buffer, size);
    return static_cast<DWORD>(name.size());
}

int GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size) {
    const auto room = static_cast<std::size_t>(size);
    if (Fails(__func__, buffer, room) || locale != LOCALE_USER_DEFAULT) {
        return 0;
    }
    const auto& values = CurrentMachine().locale;
    const auto value = values.find(type);
    if (value == values.end() || (size != 0 && !Give(value->second, buffer, room))) {
        return 0;
    }
    return static_cast<int>(value->second.size()) + 1;
}
