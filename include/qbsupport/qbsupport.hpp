// QBSUPPORT for C++17 hosts: the library found at run time, or linked, and sections as std::string.
//
// Nothing here throws but std::bad_alloc, and no dialog ever opens.
#ifndef QBSUPPORT_QBSUPPORT_HPP
#define QBSUPPORT_QBSUPPORT_HPP

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "qbsupport.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace qbsupport {

/// Headings, separators and indent: how a section of a whole report is written.
inline constexpr unsigned int kAllFlags =
    QbSupportFlagHeadings | QbSupportFlagSeparator | QbSupportFlagIndent;

/// The library's file name on this system.
#ifdef _WIN32
inline constexpr char kLibraryFileName[] = "QBSUPPORT.dll";
#else
inline constexpr char kLibraryFileName[] = "libQBSUPPORT.so";
#endif

/// Gives a text back to the library that handed it out.
struct BufferRelease {
    decltype(&QbSupportReleaseBuffer) release = nullptr;
    void operator()(char* text) const noexcept { release(text); }
};

/// Owns the NUL-terminated text of one section; null when the section failed. It must be gone
/// before the Library that it came from, whose memory it is.
using Buffer = std::unique_ptr<char, BufferRelease>;

namespace detail {

inline Buffer GetBuffer(decltype(&QbSupportGetInfo) getInfo,
                        decltype(&QbSupportReleaseBuffer) release, int kind, unsigned int flags,
                        const char* argument) {
    char* text = nullptr;
    const bool complete = getInfo(kind, flags, &text, argument) != 0;
    return Buffer(complete ? text : nullptr, BufferRelease{release});
}

inline std::optional<std::string> TextOf(const Buffer& buffer) {
    return buffer != nullptr ? std::optional<std::string>(buffer.get()) : std::nullopt;
}

#ifdef _WIN32

using ModuleHandle = HMODULE;

/// While it lives, Windows reports a file that cannot be loaded to the calling thread's code and
/// not in a dialog to the user.
class NoErrorDialogs {
public:
    NoErrorDialogs() noexcept {
        SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_before);
    }
    ~NoErrorDialogs() { SetThreadErrorMode(m_before, nullptr); }
    NoErrorDialogs(const NoErrorDialogs&) = delete;
    NoErrorDialogs& operator=(const NoErrorDialogs&) = delete;

private:
    DWORD m_before = 0;
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
            return sizeof(void*) == 8 ? "the file is damaged or not a 64-bit Windows library"
                                      : "the file is damaged or not a 32-bit Windows library";
        default:
            return SystemMessage(error);
    }
}

inline ModuleHandle LoadFile(const char* fileName) noexcept {
    return LoadLibraryA(fileName);
}

inline ModuleHandle LoadFile(const wchar_t* fileName) noexcept {
    return LoadLibraryW(fileName);
}

/// Loads a file; null with `error` set when that fails.
template <typename Character>
ModuleHandle LoadModule(const Character* fileName, std::string& error) {
    const NoErrorDialogs noDialogs;
    const ModuleHandle handle = LoadFile(fileName);
    if (handle == nullptr) {
        error = LoadErrorText(GetLastError());
    }
    return handle;
}

template <typename Function>
Function FindFunction(ModuleHandle handle, const char* name) noexcept {
    // By way of a third type, because compilers doubt a direct cast between the other two.
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(handle, name)));
}

inline void UnloadModule(ModuleHandle handle) noexcept {
    FreeLibrary(handle);
}

inline std::string DisplayName(const wchar_t* fileName) {
    const int size = WideCharToMultiByte(CP_ACP, 0, fileName, -1, nullptr, 0, nullptr, nullptr);
    std::string name(size > 0 ? static_cast<std::size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_ACP, 0, fileName, -1, name.data(), size, nullptr, nullptr);
    name.pop_back();
    return name;
}

#else

using ModuleHandle = void*;

/// Loads a file; null with `error` set when that fails.
inline ModuleHandle LoadModule(const char* fileName, std::string& error) {
    const ModuleHandle handle = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* const message = dlerror();
        error = message != nullptr ? message : "unknown error";
        // Most messages open with the name, which the caller's own message gives already.
        const std::string prefix = std::string(fileName) + ": ";
        if (error.compare(0, prefix.size(), prefix) == 0) {
            error.erase(0, prefix.size());
        }
    }
    return handle;
}

template <typename Function>
Function FindFunction(ModuleHandle handle, const char* name) noexcept {
    return reinterpret_cast<Function>(dlsym(handle, name));
}

inline void UnloadModule(ModuleHandle handle) noexcept {
    dlclose(handle);
}

#endif

inline std::string DisplayName(const char* fileName) {
    return fileName;
}

struct ModuleUnload {
    void operator()(ModuleHandle handle) const noexcept { UnloadModule(handle); }
};

using Module = std::unique_ptr<std::remove_pointer_t<ModuleHandle>, ModuleUnload>;

}  // namespace detail

/// The library, found at run time and unloaded with this object. May be moved, not copied.
class Library {
public:
    /// Loads the library from the default file name, in the system's search order. A host that
    /// ships the library beside itself passes the full path instead, so that no other directory's
    /// file can take its place.
    Library() : Library(kLibraryFileName) {}

    /// Loads the library from `fileName` (on Windows in the ANSI code page). Does not throw when
    /// that fails: IsLoaded says so, and Error says why.
    explicit Library(const char* fileName) { Load(fileName); }

#ifdef _WIN32
    /// The same for any file name that Windows knows, whatever the ANSI code page.
    explicit Library(const wchar_t* fileName) {
        Load(fileName);
    }
#endif

    [[nodiscard]] bool IsLoaded() const noexcept {
        return m_module != nullptr;
    }

    /// Why the library is not loaded, as one line without a line end: the file is missing, is no
    /// library that this process can load, or lacks one of the functions, which is named. Empty
    /// when it is loaded.
    [[nodiscard]] const std::string& Error() const noexcept {
        return m_error;
    }

    /// Builds one section without copying its text.
    ///
    /// `kind`, `flags` and `argument` are those of QbSupportGetInfo. Null when the section failed
    /// or the library is not loaded. The buffer must be gone before this object.
    [[nodiscard]] Buffer SectionBuffer(int kind, unsigned int flags = kAllFlags,
                                       const char* argument = nullptr) const {
        return IsLoaded() ? detail::GetBuffer(m_getInfo, m_releaseBuffer, kind, flags, argument)
                          : Buffer();
    }

    /// Builds one section and returns a copy of its text, which the caller keeps.
    ///
    /// `kind`, `flags` and `argument` are those of QbSupportGetInfo; an argument ends at its first
    /// NUL. Nothing when the section failed or the library is not loaded.
    [[nodiscard]] std::optional<std::string> Section(int kind, unsigned int flags = kAllFlags,
                                                     const std::string& argument = {}) const {
        return detail::TextOf(SectionBuffer(kind, flags, argument.c_str()));
    }

private:
    template <typename Character>
    void Load(const Character* fileName) {
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

/// The same as Library::Section, for hosts that link the library: builds one section and returns
/// its text, or nothing when the section failed. A host that does not call it need not link.
inline std::optional<std::string> Section(int kind, unsigned int flags = kAllFlags,
                                          const std::string& argument = {}) {
    return detail::TextOf(detail::GetBuffer(&QbSupportGetInfo, &QbSupportReleaseBuffer, kind, flags,
                                            argument.c_str()));
}

}  // namespace qbsupport

#endif
