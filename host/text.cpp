#include "text.h"

#include <windows.h>

#include <system_error>

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

std::string AnsiOf(const std::string& utf8) {
    return Narrow(CP_ACP, Widen(CP_UTF8, utf8));
}

std::string Utf8Of(const std::string& ansi) {
    return Narrow(CP_UTF8, Widen(CP_ACP, ansi));
}

std::string WithCrLf(const std::string& text) {
    std::string result;
    for (const char character : text) {
        const bool isLone = character == '\n' && !result.ends_with('\r');
        result += isLone ? "\r\n" : std::string(1, character);
    }
    return result;
}

std::string ErrorText(unsigned long error) {
    const std::string text = std::system_category().message(static_cast<int>(error));
    return Utf8Of(text) + " (Windows error " + std::to_string(error) + ")";
}
