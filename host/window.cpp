// qbreportw: the whole support report in a window, to read, search, copy and save.
#include "window.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "output.h"
#include "platform.h"
#include "report.h"
#include "wide.h"

#include <commctrl.h>
#include <commdlg.h>

namespace {

constexpr UINT kProgressMessage = WM_APP;    // the step, the number of steps
constexpr UINT kDoneMessage = WM_APP + 1;    // a Result, which the receiver owns
constexpr UINT kScaledMessage = WM_APP + 2;  // Windows has scaled the controls

// What the worker thread hands over.
struct Result {
    qbsupport::Report report;
    std::string problem;  // why there is no report
};

// The program has one window. All of this is the user interface thread's.
HWND window = nullptr;
HFONT textFont = nullptr;
std::string savedText;       // the report's own bytes
std::wstring displayedText;  // the same as the text control has it
HWND findDialog = nullptr;
UINT findMessage = 0;
wchar_t wantedText[128] = L"";
FINDREPLACEW find = {};

// Windows' own libraries are loaded when PrepareProcess has said where from: on the program's list
// of imports, some would load others from the program's directory before that.
template <typename Function>
Function SystemFunction(const wchar_t* library, const char* name) {
    return qbsupport::detail::FindFunction<Function>(LoadLibraryW(library), name);
}

HWND Control(int number) {
    return GetDlgItem(window, number);
}

std::unique_ptr<Result> Compose(HWND receiver) {
    auto result = std::make_unique<Result>();
    const qbsupport::Library library = LoadLibraryBesideExecutable();
    if (!library.IsLoaded()) {
        result->problem = Utf8Of(library.Error());
        return result;
    }
    qbsupport::ReportOptions options = ForLibrary(DefaultReportOptions());
    options.progress = [receiver](std::size_t step, std::size_t count, const char*) {
        PostMessageW(receiver, kProgressMessage, step, static_cast<LPARAM>(count));
    };
    result->report = library.WholeReport(options);
    return result;
}

DWORD WINAPI ComposeOnThread(void* context) {
    const HWND receiver = static_cast<HWND>(context);
    std::unique_ptr<Result> result;
    try {
        result = Compose(receiver);
    } catch (const std::bad_alloc&) {  // then there is no result
    }
    if (PostMessageW(receiver, kDoneMessage, 0, reinterpret_cast<LPARAM>(result.get()))) {
        static_cast<void>(result.release());
    }
    return 0;
}

// The report's line ends are of two kinds, of which the control knows one.
std::wstring DisplayedText(const std::string& report) {
    std::string text;
    for (const char character : report) {
        const bool isLoneLineEnd = character == '\n' && !text.ends_with('\r');
        text += isLoneLineEnd ? "\r\n" : std::string(1, character);
    }
    return Widen(CP_ACP, text);
}

void ShowStatus(const std::string& text) {
    SetWindowTextW(Control(WINDOW_STATUS), Widen(CP_UTF8, text).c_str());
}

// As large as the buttons' font, which Windows scales where another screen has other dots per inch,
// and a little more.
void SetTextFont() {
    LOGFONTW font = {};
    const LRESULT buttonFont = SendMessageW(Control(IDCANCEL), WM_GETFONT, 0, 0);
    GetObjectW(reinterpret_cast<HGDIOBJ>(buttonFont), sizeof(font), &font);
    font.lfHeight = font.lfHeight * 5 / 4;
    font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    std::wcscpy(font.lfFaceName, L"Consolas");
    const HFONT before = std::exchange(textFont, CreateFontIndirectW(&font));
    SendMessageW(Control(WINDOW_TEXT), WM_SETFONT, reinterpret_cast<WPARAM>(textFont), TRUE);
    DeleteObject(before);
}

// The text above, a row with the status and the buttons below; all from the size of a button.
void LayOut() {
    RECT area = {};
    RECT button = {};
    GetClientRect(window, &area);
    GetWindowRect(Control(IDCANCEL), &button);
    const int width = button.right - button.left;
    const int height = button.bottom - button.top;
    const int gap = height / 3;
    const int top = area.bottom - gap - height;
    int left = area.right;
    for (const int number : {IDCANCEL, WINDOW_COPY, WINDOW_SAVE}) {
        left -= gap + width;
        MoveWindow(Control(number), left, top, width, height, TRUE);
    }
    for (const int number : {WINDOW_PROGRESS, WINDOW_STATUS}) {
        MoveWindow(Control(number), gap, top, std::max(left - 2 * gap, 0), height, TRUE);
    }
    MoveWindow(Control(WINDOW_TEXT), 0, 0, area.right, std::max(top - gap, 0), TRUE);
}

void ShowResult(std::unique_ptr<Result> result) {
    ShowWindow(Control(WINDOW_PROGRESS), SW_HIDE);
    ShowWindow(Control(WINDOW_STATUS), SW_SHOW);
    if (result == nullptr || !result->problem.empty()) {
        ShowStatus("No report: " + (result == nullptr ? "out of memory" : result->problem));
        return;
    }
    savedText = std::move(result->report.text);
    displayedText = DisplayedText(savedText);
    SetWindowTextW(Control(WINDOW_TEXT), displayedText.c_str());
    std::string status;
    for (const qbsupport::FailedSection& failed : result->report.failed) {
        status += (status.empty() ? "" : "; ") + FailureText(failed);
    }
    ShowStatus(status);
    EnableWindow(Control(WINDOW_SAVE), TRUE);
    EnableWindow(Control(WINDOW_COPY), TRUE);
}

void Start() {
    SetTextFont();
    LayOut();
    const HANDLE thread = CreateThread(nullptr, 0, ComposeOnThread, window, 0, nullptr);
    if (thread == nullptr) {
        ShowResult(nullptr);
        return;
    }
    CloseHandle(thread);
}

void Save() {
    if (!IsWindowEnabled(Control(WINDOW_SAVE))) {
        return;  // Ctrl+S does not ask the button
    }
    std::wstring path = Widen(CP_UTF8, NewReportPaths().front());
    path.resize(32768);
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = window;
    dialog.lpstrFilter = L"Text files (*.txt)\0*.txt\0All files\0*.*\0";
    dialog.lpstrDefExt = L"txt";
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST |
                   OFN_DONTADDTORECENT;
    const auto askForName =
        SystemFunction<decltype(&GetSaveFileNameW)>(L"comdlg32.dll", "GetSaveFileNameW");
    if (askForName == nullptr || !askForName(&dialog)) {
        return;
    }
    const std::string target = Narrow(CP_UTF8, path.c_str());
    const std::string problem = SaveReport(savedText, target);
    if (problem.empty()) {
        ShowStatus("Saved in " + FullPath(target));
        return;
    }
    const std::string message = "Cannot save the report in " + target + ": " + problem;
    ShowStatus(message);
    MessageBoxW(window, Widen(CP_UTF8, message).c_str(), L"Support report", MB_ICONERROR);
}

std::pair<DWORD, DWORD> Selection() {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(Control(WINDOW_TEXT), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    return {start, end};
}

void Select(std::size_t start, std::size_t length) {
    SendMessageW(Control(WINDOW_TEXT), EM_SETSEL, start, static_cast<LPARAM>(start + length));
    SendMessageW(Control(WINDOW_TEXT), EM_SCROLLCARET, 0, 0);
}

// Without a selection it is the whole text, which then shows that it was copied.
void Copy(bool selectionOnly) {
    const auto [start, end] = Selection();
    if (!selectionOnly || start == end) {
        Select(0, displayedText.size());
    }
    SendMessageW(Control(WINDOW_TEXT), WM_COPY, 0, 0);
}

void OpenFindDialog() {
    if (findDialog != nullptr) {
        SetFocus(findDialog);
        return;
    }
    find.lStructSize = sizeof(find);
    find.hwndOwner = window;
    find.lpstrFindWhat = wantedText;
    find.wFindWhatLen = static_cast<WORD>(std::size(wantedText));
    find.Flags = FR_DOWN | FR_HIDEWHOLEWORD;
    const auto openDialog = SystemFunction<decltype(&FindTextW)>(L"comdlg32.dll", "FindTextW");
    findDialog = openDialog != nullptr ? openDialog(&find) : nullptr;
}

void Find(bool down) {
    if (*wantedText == L'\0') {
        OpenFindDialog();
        return;
    }
    std::wstring text = displayedText;
    std::wstring wanted = wantedText;
    if ((find.Flags & FR_MATCHCASE) == 0) {
        CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
        CharLowerBuffW(wanted.data(), static_cast<DWORD>(wanted.size()));
    }
    const auto [start, end] = Selection();
    std::size_t found = std::wstring::npos;
    if (down) {
        found = text.find(wanted, end);
    } else if (start > 0) {
        found = text.rfind(wanted, start - 1);
    }
    if (found == std::wstring::npos) {  // on from the other end
        found = down ? text.find(wanted) : text.rfind(wanted);
    }
    if (found != std::wstring::npos) {
        Select(found, wanted.size());
    } else {
        ShowStatus("Not found: " + Narrow(CP_UTF8, wantedText));
        MessageBeep(MB_ICONWARNING);
    }
}

void RunCommand(int command) {
    switch (command) {
        case WINDOW_SAVE:
            return Save();
        case WINDOW_COPY:
        case WINDOW_COPY_SELECTION:
            return Copy(command == WINDOW_COPY_SELECTION);
        case WINDOW_SELECT_ALL:
            return Select(0, displayedText.size());
        case WINDOW_FIND:
            return OpenFindDialog();
        case WINDOW_FIND_NEXT:
        case WINDOW_FIND_PREVIOUS:
            return Find(command == WINDOW_FIND_NEXT);
        case IDCANCEL:
            DestroyWindow(window);
            return;
        default:
            return;
    }
}

INT_PTR CALLBACK Receive(HWND receiver, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == findMessage) {
        if ((find.Flags & FR_DIALOGTERM) != 0) {
            findDialog = nullptr;
        } else {
            Find((find.Flags & FR_DOWN) != 0);
        }
        return TRUE;
    }
    switch (message) {
        case WM_INITDIALOG:
            window = receiver;
            Start();
            return TRUE;
        case WM_DPICHANGED:
            // After the dialog's own answer to it, which scales the controls.
            PostMessageW(window, kScaledMessage, 0, 0);
            return FALSE;
        case kScaledMessage:
            SetTextFont();
            LayOut();
            return TRUE;
        case WM_SIZE:
            LayOut();
            return TRUE;
        case WM_COMMAND:
            RunCommand(LOWORD(wParam));
            return TRUE;
        case kProgressMessage:
            SendMessageW(Control(WINDOW_PROGRESS), PBM_SETRANGE32, 0, lParam);
            SendMessageW(Control(WINDOW_PROGRESS), PBM_SETPOS, wParam, 0);
            return TRUE;
        case kDoneMessage:
            ShowResult(std::unique_ptr<Result>(reinterpret_cast<Result*>(lParam)));
            return TRUE;
        case WM_DESTROY:
            PostQuitMessage(0);
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE program, HINSTANCE /*before*/, wchar_t* /*arguments*/,
                    int showCommand) {
    PrepareProcess();
    const INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_PROGRESS_CLASS};
    const auto initialize =
        SystemFunction<decltype(&InitCommonControlsEx)>(L"comctl32.dll", "InitCommonControlsEx");
    if (initialize != nullptr) {
        initialize(&controls);
    }
    findMessage = RegisterWindowMessageW(FINDMSGSTRINGW);
    const HACCEL keys = LoadAcceleratorsW(program, MAKEINTRESOURCEW(WINDOW_KEYS));
    if (CreateDialogParamW(program, MAKEINTRESOURCEW(WINDOW_DIALOG), nullptr, Receive, 0) ==
        nullptr) {
        return 1;
    }
    ShowWindow(window, showCommand);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!IsDialogMessageW(findDialog, &message) &&
            !TranslateAcceleratorW(window, keys, &message) && !IsDialogMessageW(window, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return 0;
}
