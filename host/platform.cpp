#include "platform.h"

void PrepareProcess() {
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    // Windows has this policy from Windows 10 1607 on.
    if (const auto setPolicy = SystemFunction<decltype(&SetProcessMitigationPolicy)>(
            L"kernel32.dll", "SetProcessMitigationPolicy")) {
        PROCESS_MITIGATION_IMAGE_LOAD_POLICY policy = {};
        policy.PreferSystem32Images = 1;
        setPolicy(ProcessImageLoadPolicy, &policy, sizeof(policy));
    }
    // Some systems load these by name alone, for the theme and the user's display name. If the
    // policy does not exist, they then get the libraries that are loaded already.
    for (const wchar_t* const name : {L"imm32.dll", L"uxtheme.dll", L"netapi32.dll"}) {
        LoadSystemLibrary(name);
    }
}

void LoadFromWindowsOnly() {
    // Windows 7 may lack the update that brought this function.
    if (const auto setDirectories = SystemFunction<decltype(&SetDefaultDllDirectories)>(
            L"kernel32.dll", "SetDefaultDllDirectories")) {
        setDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
}

HMODULE LoadSystemLibrary(const wchar_t* name) {
    if (const HMODULE library = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
        return library;
    }
    // Windows 7 may lack the update that brought the flag. Elsewhere the path would keep the
    // manifest from choosing the library's version.
    wchar_t directory[MAX_PATH] = L"";
    GetSystemDirectoryW(directory, MAX_PATH);
    const std::wstring path = std::wstring(directory) + L'\\' + name;
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

std::wstring ProgramDirectory() {
    constexpr DWORD kLongestPath = 32768;
    std::wstring path(kLongestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
    path.resize(path.find_last_of(L'\\') + 1);
    return path;
}

bool OwnsConsole() {
    DWORD processes[2] = {};
    return GetConsoleProcessList(processes, 2) == 1;
}

bool IsSessionVisible() {
    const auto getStation = SystemFunction<decltype(&GetProcessWindowStation)>(
        L"user32.dll", "GetProcessWindowStation");
    const auto getInformation = SystemFunction<decltype(&GetUserObjectInformationW)>(
        L"user32.dll", "GetUserObjectInformationW");
    USEROBJECTFLAGS flags = {};
    getInformation(getStation(), UOI_FLAGS, &flags, sizeof(flags), nullptr);
    return (flags.dwFlags & WSF_VISIBLE) != 0;
}
