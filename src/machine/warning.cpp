#include "machine/warning.h"

#include <cstdio>

#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

namespace {

bool IsControl(char character) {
    return static_cast<unsigned char>(character) < 0x20;
}

// Cuts a system message where its first line ends, and its closing full stops and blanks off.
std::string_view Trimmed(std::string_view message) {
    std::size_t end = 0;
    while (end < message.size() && (!IsControl(message[end]) || message[end] == '\t')) {
        ++end;
    }
    while (end > 0 &&
           (IsControl(message[end - 1]) || message[end - 1] == '.' || message[end - 1] == ' ')) {
        --end;
    }
    return {message.data(), end};
}

}  // namespace

void PrintLastErrorWarning(const char* operation) {
    const DWORD error = GetLastError();
    char buffer[256] = {};
    const DWORD length =
        FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buffer, sizeof(buffer), nullptr);
    const Text message(length != 0 ? Trimmed(BufferText(buffer)) : std::string_view());
    std::printf("\n  WARNING: %s failed with error %d (%s)", operation, static_cast<int>(error),
                message.CStr());
}

}  // namespace qb_support
