#include "platform.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

// The longest path that Windows knows.
constexpr DWORD kPathSize = 32768;

std::wstring ExecutablePath() {
    std::wstring path(kPathSize, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), kPathSize));
    return path;
}

}  // namespace

std::string ExecutableDirectory() {
    std::string path(kPathSize, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), kPathSize));
    const std::size_t slash = path.find_last_of('\\');
    if (slash == std::string::npos) {
        return "";
    }
    // "C:" alone would be the current directory of that drive.
    const bool isRoot = slash > 0 && path[slash - 1] == ':';
    return path.substr(0, isRoot ? slash + 1 : slash);
}

qbsupport::Library LoadLibraryBesideExecutable() {
    // In wide characters, because the directory's name need not exist in the ANSI code page.
    std::wstring path = ExecutablePath();
    path.resize(path.find_last_of(L'\\') + 1);
    for (const char character : std::string(qbsupport::kLibraryFileName)) {
        path += static_cast<wchar_t>(character);
    }
    return qbsupport::Library(path.c_str());
}

void ReportClosedPipes() {}

bool IsTerminal(std::FILE* stream) {
    // _isatty also says yes to the null device.
    DWORD mode = 0;
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    return GetConsoleMode(handle, &mode) != 0;
}

void SetBinaryMode(std::FILE* stream) {
    _setmode(_fileno(stream), _O_BINARY);
}

std::string LastErrorText() {
    // The run-time library calls a pipe whose reader has gone an invalid argument.
    const bool readerIsGone =
        errno == EINVAL && (_doserrno == ERROR_NO_DATA || _doserrno == ERROR_PIPE_NOT_CONNECTED);
    return readerIsGone ? "the reader has gone" : std::strerror(errno);
}

bool IsDevice(const std::string& path) {
    // The console cannot be opened without any access.
    const HANDLE handle = CreateFileA(path.c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const DWORD type = GetFileType(handle);
    CloseHandle(handle);
    return type != FILE_TYPE_DISK;
}

std::string FullPath(const std::string& path) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> full(_fullpath(nullptr, path.c_str(), 0));
    return full != nullptr ? full.get() : path;
}

std::FILE* CreateNewFile(const std::string& path) {
    const int file = _open(path.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT,
                           _S_IREAD | _S_IWRITE);
    return file >= 0 ? _fdopen(file, "wb") : nullptr;
}

bool FlushToDisk(std::FILE* file) {
    return std::fflush(file) == 0 && _commit(_fileno(file)) == 0;
}

std::string RenameOver(const std::string& from, const std::string& to) {
    if (MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return "";
    }
    const DWORD error = GetLastError();
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION
               ? "it is write-protected, in use or a directory"
               : "Windows error " + std::to_string(error);
}
