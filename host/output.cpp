#include "output.h"

#include <windows.h>

#include <memory>
#include <string_view>

#include "text.h"

namespace {

struct CloseFile {
    void operator()(HANDLE file) const { CloseHandle(file); }
};

using File = std::unique_ptr<void, CloseFile>;

// Windows keeps 12 characters in reserve for an 8.3 name.
constexpr std::size_t kLongPath = MAX_PATH - 12;

// The path in the form that has no limit of length in Windows.
std::wstring SystemPath(const std::wstring& path) {
    std::wstring full = FullPath(path);
    if (full.size() < kLongPath || full.starts_with(LR"(\\?)") || full.starts_with(LR"(\\.)")) {
        return full;
    }
    return full[0] == L'\\' ? LR"(\\?\UNC)" + full.substr(1) : LR"(\\?\)" + full;
}

// Returns null and sets the last error if the file cannot be opened.
File Open(const std::wstring& path, DWORD share, DWORD disposition) {
    const HANDLE file = CreateFileW(SystemPath(path).c_str(), GENERIC_WRITE, share, nullptr,
                                    disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return File(file != INVALID_HANDLE_VALUE ? file : nullptr);
}

// `write` is WriteFile or WriteConsoleW, which may write only a part at once.
template <typename Text, typename Write>
bool WriteAll(HANDLE handle, Text text, Write write) {
    constexpr std::size_t kMostAtOnce = 8192;  // older consoles take no more than 64 KB
    while (!text.empty()) {
        const Text part = text.substr(0, kMostAtOnce);
        DWORD written = 0;
        if (!write(handle, part.data(), static_cast<DWORD>(part.size()), &written, nullptr) ||
            written == 0) {
            return false;
        }
        text.remove_prefix(written);
    }
    return true;
}

// Writes the characters to a console, and the bytes to anything else.
bool Write(HANDLE handle, const std::wstring& characters, const std::string& bytes) {
    return IsConsole(handle) ? WriteAll(handle, std::wstring_view(characters), WriteConsoleW)
                             : WriteAll(handle, std::string_view(bytes), WriteFile);
}

bool WriteReport(HANDLE handle, const std::string& report) {
    return Write(handle, Widen(CP_ACP, report), report);
}

// Creates a new file beside the target, and sets `path` to its path. Its name does not contain the
// target's name, which may have the greatest length already.
File CreateTemporaryFile(const std::wstring& target, std::wstring& path) {
    constexpr int kMostTries = 100;
    const std::wstring directory = target.substr(0, target.find_last_of(L'\\') + 1);
    for (int number = 1; number <= kMostTries; ++number) {
        path = directory + L"qbreport" + std::to_wstring(number) + L".tmp";
        File file = Open(path, 0, CREATE_NEW);
        if (file != nullptr || GetLastError() != ERROR_FILE_EXISTS) {
            return file;
        }
    }
    return nullptr;
}

// Gives a file a new name, in place of the file that may have that name.
std::string RenameOver(const std::wstring& from, const std::wstring& to) {
    constexpr int kMostTries = 11;
    constexpr DWORD kPause = 100;  // milliseconds
    for (int tries = 1; tries <= kMostTries; ++tries) {
        if (MoveFileExW(SystemPath(from).c_str(), SystemPath(to).c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            return "";
        }
        const DWORD error = GetLastError();
        if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) {
            return ErrorText(error);
        }
        // Virus scanners and indexers open a new file at once, but only for a short time.
        Sleep(kPause);
    }
    return "it is write-protected, in use or a directory";
}

std::string ReplaceFile(const std::string& report, const std::wstring& target) {
    std::wstring path;
    File file = CreateTemporaryFile(target, path);
    if (file == nullptr) {
        return ErrorText(GetLastError());
    }
    const bool isWritten = WriteReport(file.get(), report) && FlushFileBuffers(file.get()) != 0;
    std::string problem = isWritten ? "" : ErrorText(GetLastError());
    file.reset();
    if (problem.empty()) {
        problem = RenameOver(path, target);
    }
    if (!problem.empty()) {
        DeleteFileW(SystemPath(path).c_str());
    }
    return problem;
}

}  // namespace

bool IsConsole(void* handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

std::string PrintText(unsigned long stream, const std::string& text) {
    const std::wstring wide = Widen(CP_UTF8, WithCrLf(text));
    return Write(GetStdHandle(stream), wide, Narrow(CP_ACP, wide)) ? "" : ErrorText(GetLastError());
}

std::string PrintReport(const std::string& report) {
    return WriteReport(GetStdHandle(STD_OUTPUT_HANDLE), report) ? "" : ErrorText(GetLastError());
}

std::string SaveReport(const std::string& report, const std::wstring& path) {
    // This opens a pipe only once, because it may have a single instance.
    File file = Open(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (file != nullptr && GetFileType(file.get()) != FILE_TYPE_DISK) {
        return WriteReport(file.get(), report) ? "" : ErrorText(GetLastError());
    }
    file.reset();
    return ReplaceFile(report, FullPath(path));
}

std::wstring FullPath(const std::wstring& path) {
    constexpr DWORD kPathSize = 32768;
    std::wstring full(kPathSize, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), kPathSize, full.data(), nullptr));
    return full.empty() ? path : full;
}
