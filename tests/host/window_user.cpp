// Uses the programs in a directory as a user does: window_user <directory> <too long a name>.
// Leaves there, as UTF-8, what it saw in displayed.txt, what the window saved, and last of all
// log.txt. Has the programs' manifest, so that its own texts are UTF-8, too.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "../../host/window.h"

namespace {

// Fields of the dialogs of Windows, by their numbers in dlgs.h.
constexpr int kFindEdit = 0x480;
constexpr int kFileNameCombo = 0x47C;
constexpr int kTextSize = 64 * 1024;

std::string directory;

void Write(const char* name, const std::string& text) {
    std::FILE* const file = std::fopen((directory + '\\' + name).c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

template <class Condition>
void WaitFor(const std::string& what, Condition condition) {
    for (int tries = 0; !condition(); ++tries) {
        if (tries == 3000) {
            Write("log.txt", "waited in vain for " + what);
            std::exit(1);
        }
        Sleep(10);
    }
}

std::string TextOf(HWND control) {
    std::string text(kTextSize, '\0');
    SendMessageA(control, WM_GETTEXT, kTextSize, reinterpret_cast<LPARAM>(text.data()));
    return text.c_str();
}

// Windows' own conversion would be to the user's code page, and not to the process's.
std::string Clipboard() {
    std::string text(kTextSize, '\0');
    const void* const copied = OpenClipboard(nullptr) ? GetClipboardData(CF_UNICODETEXT) : nullptr;
    WideCharToMultiByte(CP_UTF8, 0, static_cast<const wchar_t*>(copied), -1, text.data(), kTextSize,
                        nullptr, nullptr);
    CloseClipboard();
    return text.c_str();
}

HWND WaitForWindow(const char* title) {
    HWND window = nullptr;
    WaitFor(title, [&] { return IsWindowVisible(window = FindWindowA("#32770", title)) != 0; });
    return window;
}

// Fills the one field of a dialog and presses its first button.
void Answer(HWND window, UINT command, const char* title, int field, const std::string& text) {
    PostMessageA(window, WM_COMMAND, command, 0);
    const HWND dialog = WaitForWindow(title);
    const HWND edit = GetDlgItem(dialog, field);
    WaitFor("the dialog's field", [&] {
        SendMessageA(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
        return TextOf(edit) == text;
    });
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
}

HANDLE Start(const std::string& program, DWORD flags, char* desktop) {
    std::string line = '"' + directory + '\\' + program + '"';
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    startup.lpDesktop = desktop;
    PROCESS_INFORMATION process = {};
    CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr, &startup,
                   &process);
    return process.hProcess;
}

void WaitForEnd(const std::string& what, HANDLE process) {
    WaitFor("the end of " + what, [=] { return WaitForSingleObject(process, 0) == WAIT_OBJECT_0; });
}

void Press(HWND window, BYTE key, BYTE modifier) {
    SetForegroundWindow(window);
    for (const DWORD flags : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) {
        keybd_event(modifier, 0, flags, 0);
        keybd_event(key, 0, flags, 0);
    }
}

}  // namespace

int main(int, char** arguments) {
    directory = arguments[1];
    // It has a console of its own, and a key to wait for, but no user who could press it.
    char unseen[] = "QbUnseen\\Default";
    WaitForEnd("a program that no one sees",
               Start("alone\\qbreport.exe", CREATE_NEW_CONSOLE, unseen));
    const HANDLE process = Start("qbreportw.exe", 0, nullptr);
    const HWND window = WaitForWindow("Support report");
    const HWND text = GetDlgItem(window, WINDOW_TEXT);
    const HWND status = GetDlgItem(window, WINDOW_STATUS);
    WaitFor("the report", [&] { return IsWindowEnabled(GetDlgItem(window, WINDOW_SAVE)) != 0; });
    const std::string displayed = TextOf(text);
    Write("displayed.txt", displayed);

    RECT place = {};
    SetWindowPos(window, nullptr, 0, 0, 500, 300, 0);
    WaitFor("another size", [&] { return GetWindowRect(text, &place) && place.right < 500; });

    SendMessageA(window, WM_COMMAND, WINDOW_COPY, 0);
    WaitFor("the copied report", [&] { return Clipboard() == displayed; });

    Answer(window, WINDOW_FIND, "Find", kFindEdit, "MEMORY:");
    const auto waitForSelection = [&](const char* what, std::size_t first, std::size_t end) {
        const LRESULT expected = MAKELONG(first, end);
        WaitFor(what, [&] { return SendMessageW(text, EM_GETSEL, 0, 0) == expected; });
    };
    const std::size_t found = displayed.find("Memory:");
    waitForSelection("the text to find", found, found + 7);
    SendMessageA(FindWindowA("#32770", "Find"), WM_COMMAND, IDCANCEL, 0);
    Press(window, 'A', VK_CONTROL);
    waitForSelection("Ctrl+A", 0,
                     static_cast<std::size_t>(SendMessageW(text, WM_GETTEXTLENGTH, 0, 0)));
    Press(window, VK_F3, 0);
    waitForSelection("F3", found, found + 7);

    const std::string wanted = directory + "\\\u043e\u0442\u0447\u0451\u0442.txt";
    Answer(window, WINDOW_SAVE, "Save As", kFileNameCombo, wanted);
    WaitFor("the saved file", [&] { return TextOf(status) == "Saved in " + wanted; });
    Answer(window, WINDOW_SAVE, "Save As", kFileNameCombo, directory + '\\' + arguments[2]);
    WaitFor("the failure",
            [&] { return TextOf(status).starts_with("Cannot save the report in "); });
    WaitFor("the message", [&] { return GetLastActivePopup(window) != window; });
    SendMessageA(GetLastActivePopup(window), WM_COMMAND, IDOK, 0);

    WaitFor("the window", [&] { return IsWindowEnabled(window) != 0; });
    Press(window, VK_ESCAPE, 0);
    WaitForEnd("qbreportw", process);
    Write("log.txt", "done");
    return 0;
}
