#include <algorithm>
#include <cstring>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

namespace {

/// The length without the NUL when the path fits, the length with it when it does not.
DWORD AnswerPath(PlatformCall call, const std::string& path, LPSTR buffer, DWORD size) {
    if (CallFails(call)) {
        FillWithGarbage(buffer, size);
        return 0;
    }
    const auto length = static_cast<DWORD>(path.size());
    if (!buffer || size <= length) {
        FillWithGarbage(buffer, size);
        return length + 1;
    }
    std::memcpy(buffer, path.c_str(), length + 1);
    return length;
}

}  // namespace

UINT GetSystemDirectoryA(LPSTR buffer, UINT size) {
    return AnswerPath(PlatformCall::GetSystemDirectoryA, CurrentMachine().systemDirectory, buffer,
                      size);
}

UINT GetWindowsDirectoryA(LPSTR buffer, UINT size) {
    return AnswerPath(PlatformCall::GetWindowsDirectoryA, CurrentMachine().windowsDirectory, buffer,
                      size);
}

DWORD GetTempPathA(DWORD size, LPSTR buffer) {
    return AnswerPath(PlatformCall::GetTempPathA, CurrentMachine().tempDirectory, buffer, size);
}

DWORD GetCurrentDirectoryA(DWORD size, LPSTR buffer) {
    return AnswerPath(PlatformCall::GetCurrentDirectoryA, CurrentMachine().currentDirectory, buffer,
                      size);
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size) {
    if (CallFails(PlatformCall::GetModuleFileNameA)) {
        FillWithGarbage(buffer, size);
        return 0;
    }
    if (module) {
        return Refuse(ERROR_MOD_NOT_FOUND, 0u);
    }
    if (!buffer || size == 0) {
        return Refuse(ERROR_INSUFFICIENT_BUFFER, 0u);
    }
    const std::string& path = CurrentMachine().executablePath;
    const auto copied = static_cast<DWORD>(std::min<std::size_t>(path.size(), size - 1));
    std::memcpy(buffer, path.data(), copied);
    buffer[copied] = '\0';
    // A path that was cut is told by the size alone, as if it filled the buffer to the last byte.
    return path.size() < size ? copied : Refuse(ERROR_INSUFFICIENT_BUFFER, size);
}

DWORD GetFileAttributesA(LPCSTR path) {
    if (CallFails(PlatformCall::GetFileAttributesA)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    if (!path || !*path) {
        return Refuse(ERROR_PATH_NOT_FOUND, INVALID_FILE_ATTRIBUTES);
    }
    const auto& attributes = CurrentMachine().attributes;
    const auto entry = attributes.find(path);
    return entry != attributes.end() ? entry->second
                                     : Refuse(ERROR_FILE_NOT_FOUND, INVALID_FILE_ATTRIBUTES);
}
