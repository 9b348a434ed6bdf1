#include "directories/paths.h"

#include "platform/windows_api.h"

namespace qb_support {

namespace {

// The platform is offered one character less than the buffer has. A path is then terminated even if
// the platform truncates it without a NUL.
constexpr DWORD kOfferedSize = 1023;
using PathBuffer = char[kOfferedSize + 1];

CText WithForwardSlashes(std::string_view path) {
    CText text(path);
    ReplaceAll(text, "\\", "/");
    return text;
}

// A path query returns the path's length, or 0 if it failed, or the size that it needs if the
// offered size is too small.
bool IsWholePath(DWORD length, DWORD offered) {
    return length > 0 && length < offered;
}

CText DirectoryPath(UINT(WINAPI* query)(char* path, UINT size)) {
    PathBuffer path = {};
    const UINT length = query(path, kOfferedSize);
    return IsWholePath(length, kOfferedSize) ? WithForwardSlashes(BufferText(path)) : CText();
}

}  // namespace

CText GetSystemDirectoryPath() {
    return DirectoryPath(GetSystemDirectoryA);
}

CText GetWindowsDirectoryPath() {
    return DirectoryPath(GetWindowsDirectoryA);
}

CText GetTempDirectoryPath() {
    PathBuffer path = {};
    const DWORD length = GetTempPathA(kOfferedSize, path);
    return IsWholePath(length, kOfferedSize) ? WithForwardSlashes(BufferText(path)) : CText();
}

CText GetExecutablePath() {
    PathBuffer path = {};
    const DWORD length = GetModuleFileNameA(nullptr, path, kOfferedSize);
    return length > 0 ? WithForwardSlashes(BufferText(path)) : CText();
}

CText GetCurrentDirectoryPath() {
    char path[MAX_PATH] = {};
    const DWORD length = GetCurrentDirectoryA(MAX_PATH, path);
    return IsWholePath(length, MAX_PATH) ? CText(BufferText(path)) : CText();
}

}  // namespace qb_support
