#include "platform.h"

#include <conio.h>
#include <fcntl.h>
#include <io.h>
#include <shlobj.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "report.h"
#include "wide.h"

namespace {

// The longest path that Windows knows.
constexpr DWORD kPathSize = 32768;

// A name of another length, such as one for a directory, must fit behind the path as well.
constexpr std::size_t kLongPath = MAX_PATH - 12;

std::wstring ExecutablePath() {
    std::wstring path(kPathSize, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), kPathSize));
    return path;
}

std::wstring WideFullPath(const std::string& path) {
    std::wstring full(kPathSize, L'\0');
    const std::wstring given = Widen(CP_UTF8, path);
    full.resize(GetFullPathNameW(given.c_str(), kPathSize, full.data(), nullptr));
    return full.empty() ? given : full;
}

// The path in the form in which Windows takes it whatever its length.
std::wstring SystemPath(const std::string& path) {
    const std::wstring full = WideFullPath(path);
    if (full.size() < kLongPath || full.compare(0, 3, L"\\\\?") == 0 ||
        full.compare(0, 3, L"\\\\.") == 0) {
        return full;
    }
    return full[0] == L'\\' ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

HANDLE HandleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

bool WriteConsole(HANDLE console, const std::wstring& text) {
    // Older systems take no more than 64 KB at once.
    constexpr std::size_t kMostAtOnce = 8192;
    for (std::size_t start = 0; start < text.size(); start += kMostAtOnce) {
        const std::wstring part = text.substr(start, kMostAtOnce);
        DWORD written = 0;
        if (!WriteConsoleW(console, part.data(), static_cast<DWORD>(part.size()), &written,
                           nullptr)) {
            errno = EIO;
            return false;
        }
    }
    return true;
}

}  // namespace

std::wstring Widen(unsigned int codePage, const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), size)));
    return wide;
}

std::string Narrow(unsigned int codePage, const std::wstring& text) {
    const int size = static_cast<int>(text.size());
    const int length =
        WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), size, narrow.data(), length, nullptr, nullptr);
    return narrow;
}

void PrepareProcess() {
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

std::vector<std::string> Utf8Arguments(int argc, wchar_t** argv) {
    std::vector<std::string> arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.push_back(Narrow(CP_UTF8, argv[index]));
    }
    return arguments;
}

std::string AnsiOf(const std::string& utf8) {
    return Narrow(CP_ACP, Widen(CP_UTF8, utf8));
}

std::string Utf8Of(const std::string& ansi) {
    return Narrow(CP_UTF8, Widen(CP_ACP, ansi));
}

std::string ExecutableDirectory() {
    const std::wstring path = ExecutablePath();
    const std::size_t slash = path.find_last_of(L'\\');
    if (slash == std::wstring::npos) {
        return "";
    }
    // "C:" alone would be the current directory of that drive.
    const bool isRoot = slash > 0 && path[slash - 1] == L':';
    return Narrow(CP_UTF8, path.substr(0, isRoot ? slash + 1 : slash));
}

qbsupport::Library LoadLibraryBesideExecutable() {
    // In wide characters, because the directory's name need not exist in the ANSI code page.
    std::wstring path = ExecutablePath();
    path.resize(path.find_last_of(L'\\') + 1);
    path += Widen(CP_UTF8, qbsupport::kLibraryFileName);
    return qbsupport::Library(path.c_str());
}

std::vector<std::string> NewReportPaths() {
    const std::string name = '\\' + NewReportName();
    std::vector<std::string> paths;
    // Loaded here, so that a report on this process does not show it without need.
    const qbsupport::detail::Module shell(qbsupport::detail::LoadSystemLibrary(L"shell32.dll"));
    const auto getFolder = qbsupport::detail::FindFunction<decltype(&SHGetFolderPathW)>(
        shell.get(), "SHGetFolderPathW");
    wchar_t documents[MAX_PATH] = L"";
    if (getFolder != nullptr &&
        getFolder(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, documents) == S_OK) {
        paths.push_back(Narrow(CP_UTF8, documents) + name);
    }
    paths.push_back(ExecutableDirectory() + name);
    wchar_t temporary[MAX_PATH + 1] = L"";
    if (GetTempPathW(MAX_PATH + 1, temporary) != 0) {
        paths.push_back(Narrow(CP_UTF8, temporary) + name);
    }
    return paths;
}

bool OwnsConsole() {
    DWORD processes[2] = {};
    return IsTerminal(stdout) && IsTerminal(stderr) && GetConsoleProcessList(processes, 2) == 1;
}

void WaitForKey() {
    static_cast<void>(_getwch());
}

bool IsTerminal(std::FILE* stream) {
    // _isatty also says yes to the null device.
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool WriteAnsi(std::FILE* stream, const std::string& text) {
    if (IsTerminal(stream)) {
        return std::fflush(stream) == 0 && WriteConsole(HandleOf(stream), Widen(CP_ACP, text));
    }
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
           std::fflush(stream) == 0;
}

bool WriteText(std::FILE* stream, const std::string& text) {
    if (IsTerminal(stream)) {
        return std::fflush(stream) == 0 && WriteConsole(HandleOf(stream), Widen(CP_UTF8, text));
    }
    return WriteAnsi(stream, AnsiOf(text));
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

std::FILE* OpenDevice(const std::string& path) {
    // Once and with the access that the text needs: a pipe may have a single instance.
    const HANDLE handle = CreateFileW(SystemPath(path).c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    errno = 0;
    if (handle == INVALID_HANDLE_VALUE) {
        return nullptr;
    }
    if (GetFileType(handle) == FILE_TYPE_DISK) {
        CloseHandle(handle);
        return nullptr;
    }
    const int file = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
    return file >= 0 ? _fdopen(file, "wb") : nullptr;
}

std::string FullPath(const std::string& path) {
    return Narrow(CP_UTF8, WideFullPath(path));
}

std::FILE* CreateNewFile(const std::string& path) {
    const int file =
        _wopen(SystemPath(path).c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT,
               _S_IREAD | _S_IWRITE);
    return file >= 0 ? _fdopen(file, "wb") : nullptr;
}

bool FlushToDisk(std::FILE* file) {
    return std::fflush(file) == 0 && _commit(_fileno(file)) == 0;
}

std::string RenameOver(const std::string& from, const std::string& to) {
    if (MoveFileExW(SystemPath(from).c_str(), SystemPath(to).c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return "";
    }
    const DWORD error = GetLastError();
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION
               ? "it is write-protected, in use or a directory"
               : Utf8Of(qbsupport::detail::SystemMessage(error));
}

void RemoveFile(const std::string& path) {
    _wremove(SystemPath(path).c_str());
}
