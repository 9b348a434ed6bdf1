// Uses qbreportw as a user does: window_user <qbreportw> <directory>. Leaves there, as UTF-8, what
// it saw: displayed.txt, copied.txt, what the window saved, and last of all log.txt. Has the
// programs' manifest, so that its own texts are UTF-8, too.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "../../host/window.h"

namespace {

// Fields of the dialogs of Windows, by their numbers in dlgs.h.
constexpr int kFindEdit = 0x480;
constexpr int kFileNameCombo = 0x47C;

std::string directory;

void Write(const char* name, const std::string& text) {
    std::FILE* const file = std::fopen((directory + '\\' + name).c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

void WaitFor(const char* what, const std::function<bool()>& condition) {
    for (int tries = 0; tries < 3000; ++tries) {
        if (condition()) {
            return;
        }
        Sleep(10);
    }
    Write("log.txt", std::string("waited in vain for ") + what);
    std::exit(1);
}

std::string Utf8(const wchar_t* text) {
    std::string utf8(64 * 1024, '\0');
    utf8.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), 64 * 1024, nullptr, nullptr) - 1));
    return utf8;
}

std::string TextOf(HWND control) {
    static wchar_t text[64 * 1024];
    SendMessageW(control, WM_GETTEXT, 64 * 1024, reinterpret_cast<LPARAM>(text));
    return Utf8(text);
}

std::string Clipboard() {
    if (!OpenClipboard(nullptr)) {
        return "";
    }
    const void* const text = GetClipboardData(CF_UNICODETEXT);
    const std::string copied = text != nullptr ? Utf8(static_cast<const wchar_t*>(text)) : "";
    CloseClipboard();
    return copied;
}

HWND WaitForWindow(const wchar_t* title) {
    HWND window = nullptr;
    WaitFor(Utf8(title).c_str(), [&] {
        window = FindWindowW(L"#32770", title);
        return window != nullptr && IsWindowVisible(window);
    });
    return window;
}

// Fills the one field of a dialog and presses its first button.
void Answer(HWND window, UINT command, const wchar_t* title, int field, const std::string& text) {
    PostMessageW(window, WM_COMMAND, command, 0);
    const HWND dialog = WaitForWindow(title);
    const HWND edit = GetDlgItem(dialog, field);
    WaitFor("the dialog's field", [&] {
        SendMessageA(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
        return TextOf(edit) == text;
    });
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
}

void Press(WORD key, bool withControl) {
    if (withControl) {
        keybd_event(VK_CONTROL, 0, 0, 0);
    }
    keybd_event(static_cast<BYTE>(key), 0, 0, 0);
    keybd_event(static_cast<BYTE>(key), 0, KEYEVENTF_KEYUP, 0);
    if (withControl) {
        keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        return 2;
    }
    directory = arguments[2];
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    const ULONGLONG start = GetTickCount64();
    CreateProcessA(arguments[1], nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                   &process);
    const HWND window = WaitForWindow(L"Support report");
    const ULONGLONG started = GetTickCount64();
    const HWND text = GetDlgItem(window, WINDOW_TEXT);
    const HWND status = GetDlgItem(window, WINDOW_STATUS);
    WaitFor("the report", [&] { return IsWindowEnabled(GetDlgItem(window, WINDOW_SAVE)) != 0; });
    const std::string displayed = TextOf(text);
    Write("displayed.txt", displayed);

    RECT before = {};
    RECT after = {};
    GetWindowRect(text, &before);
    SetWindowPos(window, nullptr, 0, 0, 500, 300, SWP_NOMOVE);
    WaitFor("another size",
            [&] { return GetWindowRect(text, &after) && after.right < before.right; });

    SendMessageW(window, WM_COMMAND, WINDOW_COPY, 0);
    WaitFor("the copy", [] { return !Clipboard().empty(); });
    Write("copied.txt", Clipboard());

    Answer(window, WINDOW_FIND, L"Find", kFindEdit, "MEMORY:");
    const std::size_t found = displayed.find("Memory:");
    const auto isSelected = [&](std::size_t first, std::size_t end) {
        return SendMessageW(text, EM_GETSEL, 0, 0) == MAKELONG(first, end);
    };
    WaitFor("the text to find", [&] { return isSelected(found, found + 7); });
    SendMessageW(FindWindowW(L"#32770", L"Find"), WM_COMMAND, IDCANCEL, 0);

    SetForegroundWindow(window);
    Press('A', true);
    const LRESULT length = SendMessageW(text, WM_GETTEXTLENGTH, 0, 0);
    WaitFor("Ctrl+A", [&] { return isSelected(0, static_cast<std::size_t>(length)); });
    Press(VK_F3, false);
    WaitFor("F3", [&] { return isSelected(found, found + 7); });

    const std::string wanted = directory + "\\\u043e\u0442\u0447\u0451\u0442.txt";
    Answer(window, WINDOW_SAVE, L"Save As", kFileNameCombo, wanted);
    WaitFor("the saved file", [&] { return TextOf(status) == "Saved in " + wanted; });
    // 256 bytes are too many for a file's name below Wine, and 128 characters are not for a dialog.
    std::string tooLong = directory + '\\';
    for (int count = 0; count < 128; ++count) {
        tooLong += "\u00e9";
    }
    Answer(window, WINDOW_SAVE, L"Save As", kFileNameCombo, tooLong);
    WaitFor("the failure",
            [&] { return TextOf(status).rfind("Cannot save the report in ", 0) == 0; });
    WaitFor("the message", [&] { return GetLastActivePopup(window) != window; });
    SendMessageW(GetLastActivePopup(window), WM_COMMAND, IDOK, 0);

    WaitFor("the window", [&] { return IsWindowEnabled(window) != 0; });
    SetForegroundWindow(window);
    Press(VK_ESCAPE, false);
    WaitFor("the end", [&] { return WaitForSingleObject(process.hProcess, 0) == WAIT_OBJECT_0; });
    Write("log.txt", "started in " + std::to_string(started - start) + " ms");
    return 0;
}
