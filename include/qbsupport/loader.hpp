// QBSUPPORT for C++17 hosts that find the library at run time.
//
// Includes <windows.h> with the macros that the host has defined. All of them work except NONLS.
// Nothing here throws except std::bad_alloc and what the host's own progress function throws. No
// dialog opens.
#ifndef QBSUPPORT_LOADER_HPP
#define QBSUPPORT_LOADER_HPP

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "qbsupport.hpp"

#ifndef _WIN32
#error "loader.hpp is for Windows: elsewhere link the library and include qbsupport.hpp"
#endif
#include <windows.h>

namespace qbsupport {

/// The library's file name.
inline constexpr char kLibraryFileName[] = "QBSUPPORT.dll";

namespace detail {

/// While this object exists, Windows opens no dialog about a file that cannot be loaded or a drive
/// without a disk. Instead, the function that the thread calls fails.
class NoErrorDialogs {
public:
    NoErrorDialogs() noexcept : m_before(GetThreadErrorMode()) {
        SetThreadErrorMode(m_before | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
    }
    ~NoErrorDialogs() { SetThreadErrorMode(m_before, nullptr); }
    NoErrorDialogs(const NoErrorDialogs&) = delete;
    NoErrorDialogs& operator=(const NoErrorDialogs&) = delete;

private:
    DWORD m_before;
};

inline std::string SystemMessage(DWORD error) {
    char text[512] = {};
    DWORD length = FormatMessageA(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
        nullptr, error, 0, text, sizeof(text), nullptr);
    while (length > 0 && (text[length - 1] == ' ' || text[length - 1] == '.')) {
        --length;
    }
    return std::string(text, length) + " (Windows error " + std::to_string(error) + ")";
}

inline std::string LoadErrorText(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_MOD_NOT_FOUND:
            return "the file, or a library that it needs, was not found";
        case ERROR_BAD_EXE_FORMAT:
            // The system's own message speaks of "%1", which has no text here.
            return "the file is damaged, or the file and this program are not both for x64";
        default:
            return SystemMessage(error);
    }
}

inline bool IsFullPath(const std::wstring& path) noexcept {
    const auto isSlash = [](wchar_t character) { return character == L'\\' || character == L'/'; };
    const bool onDrive = path.size() > 2 && path[1] == L':' && isSlash(path[2]);
    return onDrive || (path.size() > 1 && isSlash(path[0]) && isSlash(path[1]));
}

/// LoadLibraryExW, also on a Windows 7 without the update that brought its search flags. The file
/// is then looked for at `path`.
inline HMODULE LoadWithFlags(const std::wstring& name, DWORD flags, const std::wstring& path) {
    const HMODULE handle = LoadLibraryExW(name.c_str(), nullptr, flags);
    return handle == nullptr && GetLastError() == ERROR_INVALID_PARAMETER
               ? LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)
               : handle;
}

/// Loads a library of Windows' own from Windows' own directory and from no other. Null if
/// there is none.
inline HMODULE LoadSystemLibrary(const std::wstring& name) {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetSystemDirectoryW(path.data(), MAX_PATH));
    return LoadWithFlags(name, LOAD_LIBRARY_SEARCH_SYSTEM32, path + L'\\' + name);
}

/// Loads a file. Null with `error` set if that fails.
inline HMODULE LoadModule(const std::wstring& fileName, std::string& error) {
    const NoErrorDialogs noDialogs;
    HMODULE handle = nullptr;
    if (IsFullPath(fileName)) {
        // The library loads these by name alone, and then gets those loaded here.
        for (const wchar_t* const name : {L"version.dll", L"Secur32.dll", L"psapi.dll"}) {
            LoadSystemLibrary(name);
        }
        handle = LoadWithFlags(
            fileName, LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR, fileName);
    } else {
        handle = LoadLibraryW(fileName.c_str());
    }
    if (handle == nullptr) {
        error = LoadErrorText(GetLastError());
    }
    return handle;
}

template <typename Function>
Function FindFunction(HMODULE handle, const char* name) noexcept {
    // Through a third type, because compilers warn about a direct cast.
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(handle, name)));
}

inline std::wstring FileNameOf(const char* fileName) {
    const int size = MultiByteToWideChar(CP_ACP, 0, fileName, -1, nullptr, 0);
    std::wstring name(size > 0 ? static_cast<std::size_t>(size) : 1, L'\0');
    MultiByteToWideChar(CP_ACP, 0, fileName, -1, name.data(), size);
    name.pop_back();
    return name;
}

inline std::string DisplayName(const std::wstring& fileName) {
    const int size =
        WideCharToMultiByte(CP_ACP, 0, fileName.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string name(size > 0 ? static_cast<std::size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_ACP, 0, fileName.c_str(), -1, name.data(), size, nullptr, nullptr);
    name.pop_back();
    return name;
}

struct ModuleUnload {
    void operator()(HMODULE handle) const noexcept { FreeLibrary(handle); }
};

using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleUnload>;

}  // namespace detail

/// The library, found at run time and unloaded with this object. May be moved, not copied.
///
/// While it loads and while a section is built, Windows opens no dialog about a missing disk or a
/// damaged file on the calling thread.
class Library {
public:
    /// Loads the library from the default file name, in the system's search order. A host that
    /// ships the library beside itself passes the full path instead, so that no other directory's
    /// file can take its place. In that case version.dll, Secur32.dll and psapi.dll, which it
    /// needs, also come from Windows' own directory, and stay in the process.
    Library() : Library(kLibraryFileName) {}

    /// Loads the library from `fileName` (in the ANSI code page). Does not throw if that fails:
    /// IsLoaded says so, and Error says why.
    explicit Library(const char* fileName) { Load(detail::FileNameOf(fileName)); }

    /// The same for any file name that Windows knows, whatever the ANSI code page.
    explicit Library(const wchar_t* fileName) { Load(fileName); }

    [[nodiscard]] bool IsLoaded() const noexcept { return m_module != nullptr; }

    /// Why the library is not loaded, as one line without a line end: the file is missing, this
    /// process cannot load it, or it lacks one of the functions, which is named. Empty if the
    /// library is loaded.
    [[nodiscard]] const std::string& Error() const noexcept { return m_error; }

    /// Builds one section without copying its text.
    ///
    /// `kind`, `flags` and `argument` are those of QbSupportGetInfo. Null if the section failed
    /// or the library is not loaded. Release the buffer before this object.
    [[nodiscard]] Buffer SectionBuffer(int kind, unsigned int flags = kAllFlags,
                                       const char* argument = nullptr) const {
        const detail::NoErrorDialogs noDialogs;
        return IsLoaded() ? detail::GetBuffer(m_getInfo, m_releaseBuffer, kind, flags, argument)
                          : Buffer();
    }

    /// Builds one section and returns a copy of its text, which the caller keeps.
    ///
    /// `kind`, `flags` and `argument` are those of QbSupportGetInfo. An argument ends at its first
    /// NUL. Nothing if the section failed or the library is not loaded.
    [[nodiscard]] std::optional<std::string> Section(int kind, unsigned int flags = kAllFlags,
                                                     const std::string& argument = {}) const {
        return detail::TextOf(SectionBuffer(kind, flags, argument.c_str()));
    }

    /// Builds the whole report, or the chosen sections. Sections that fail are left out and named
    /// in the result. If the library is not loaded, these are all sections.
    [[nodiscard]] Report WholeReport(const ReportOptions& options = {}) const {
        return detail::Compose(options, [this](int kind, unsigned int flags, const char* argument) {
            return SectionBuffer(kind, flags, argument);
        });
    }

private:
    void Load(const std::wstring& fileName) {
        std::string reason;
        m_module.reset(detail::LoadModule(fileName, reason));
        if (m_module == nullptr) {
            m_error = "cannot load " + detail::DisplayName(fileName) + ": " + reason;
        } else if (!Bind(m_getInfo, "QbSupportGetInfo", reason) ||
                   !Bind(m_releaseBuffer, "QbSupportReleaseBuffer", reason)) {
            m_module.reset();
            m_error = detail::DisplayName(fileName) + " lacks the function " + reason;
        }
    }

    template <typename Function>
    bool Bind(Function& function, const char* name, std::string& missing) {
        function = detail::FindFunction<Function>(m_module.get(), name);
        if (function == nullptr) {
            missing = name;
        }
        return function != nullptr;
    }

    detail::Module m_module;
    std::string m_error;
    decltype(&QbSupportGetInfo) m_getInfo = nullptr;
    decltype(&QbSupportReleaseBuffer) m_releaseBuffer = nullptr;
};

}  // namespace qbsupport

#endif
