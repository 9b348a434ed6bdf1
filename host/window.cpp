// qbreportw: the whole support report in a window, to read, search, copy and save.
#include "window.h"

#include <algorithm>
#include <cwchar>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "output.h"
#include "platform.h"
#include "report.h"
#include "text.h"

#include <commctrl.h>
#include <commdlg.h>

namespace {

constexpr UINT kProgressMessage = WM_APP;    // the step, the number of steps
constexpr UINT kDoneMessage = WM_APP + 1;    // a Result, which the receiver owns
constexpr UINT kScaledMessage = WM_APP + 2;  // Windows has scaled the controls

// The result of the worker thread.
struct Result {
    std::string status = "No report: out of memory";  // or the missing sections
    std::string report;                               // its own bytes; empty if there is none
};

// The program has one window. Only the user interface thread uses the other variables.
HWND window = nullptr;
HFONT textFont = nullptr;
std::string savedText;       // the report's own bytes
std::wstring displayedText;  // the same as in the text control
std::string status;          // what the row shows, except after a failed search
HWND findDialog = nullptr;
UINT findMessage = 0;
wchar_t wantedText[128] = L"";
FINDREPLACEW find = {};

HWND Control(int number) {
    return GetDlgItem(window, number);
}

void Compose(Result& result) {
    qbsupport::ReportOptions options = DefaultReportOptions();
    options.progress = [](std::size_t step, std::size_t count, const char*) {
        PostMessageW(window, kProgressMessage, step, static_cast<LPARAM>(count));
    };
    std::string problem;
    qbsupport::Report report = ComposeReport(std::move(options), problem);
    if (!problem.empty()) {
        result.status = "No report: " + problem;
        return;
    }
    std::string failures;
    for (const qbsupport::FailedSection& failed : report.failed) {
        failures += (failures.empty() ? "" : "; ") + FailureText(failed);
    }
    result.status = std::move(failures);
    result.report = std::move(report.text);
}

DWORD WINAPI ComposeOnThread(void* context) {
    std::unique_ptr<Result> result(static_cast<Result*>(context));
    try {
        Compose(*result);
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the status says so already
    }
    if (PostMessageW(window, kDoneMessage, 0, reinterpret_cast<LPARAM>(result.get()))) {
        static_cast<void>(result.release());
    }
    return 0;
}

void ShowStatus(const std::string& text) {
    SetWindowTextW(Control(WINDOW_STATUS), Widen(CP_UTF8, text).c_str());
}

// The font is a little larger than the buttons' font, which Windows scales for each screen's dots
// per inch.
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

SIZE ButtonSize() {
    RECT button = {};
    GetWindowRect(Control(IDCANCEL), &button);
    return {button.right - button.left, button.bottom - button.top};
}

// The text is above a row with the status and the buttons. All sizes depend on that of a button.
void LayOut() {
    RECT area = {};
    GetClientRect(window, &area);
    const auto [width, height] = ButtonSize();
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
    InvalidateRect(Control(WINDOW_STATUS), nullptr, TRUE);
}

void ShowResult(const Result& result) {
    ShowWindow(Control(WINDOW_PROGRESS), SW_HIDE);
    ShowWindow(Control(WINDOW_STATUS), SW_SHOW);
    savedText = result.report;
    status = result.status;
    ShowStatus(status);
    // The row may be too short for the reason. The text control needs CR LF at each line end.
    displayedText = savedText.empty() ? Widen(CP_UTF8, status) : Widen(CP_ACP, WithCrLf(savedText));
    SetWindowTextW(Control(WINDOW_TEXT), displayedText.c_str());
    EnableWindow(Control(WINDOW_SAVE), !savedText.empty());
    EnableWindow(Control(WINDOW_COPY), TRUE);
}

void Start() {
    SetTextFont();
    LayOut();
    auto result = std::make_unique<Result>();
    const HANDLE thread = CreateThread(nullptr, 0, ComposeOnThread, result.get(), 0, nullptr);
    if (thread == nullptr) {
        return ShowResult(*result);
    }
    static_cast<void>(result.release());
    CloseHandle(thread);
}

void ShowFailure(const std::string& text) {
    status = text;
    ShowStatus(status);
    MessageBoxW(window, Widen(CP_UTF8, status).c_str(), L"Support report", MB_ICONERROR);
}

void Save() {
    if (savedText.empty()) {
        return;  // Ctrl+S comes here even without a report
    }
    std::wstring path = NewReportPaths().front();
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
    if (askForName == nullptr) {
        return ShowFailure("Cannot open Save As: " + ErrorText(GetLastError()));
    }
    if (!askForName(&dialog)) {
        const DWORD error = SystemFunction<decltype(&CommDlgExtendedError)>(
            L"comdlg32.dll", "CommDlgExtendedError")();
        return error == 0 ? void()  // the user chose Cancel
                          : ShowFailure("Cannot open Save As: common dialog error " +
                                        std::to_string(error));
    }
    path.resize(path.find(L'\0'));
    const std::string name = Narrow(CP_UTF8, FullPath(path));
    const std::string problem = SaveReport(savedText, path);
    if (!problem.empty()) {
        return ShowFailure("Cannot save the report in " + name + ": " + problem);
    }
    status = "Saved in " + name;
    ShowStatus(status);
}

std::pair<DWORD, DWORD> Selection() {
    std::pair<DWORD, DWORD> selection;
    SendMessageW(Control(WINDOW_TEXT), EM_GETSEL, reinterpret_cast<WPARAM>(&selection.first),
                 reinterpret_cast<LPARAM>(&selection.second));
    return selection;
}

void Select(std::size_t start, std::size_t length) {
    SendMessageW(Control(WINDOW_TEXT), EM_SETSEL, start, static_cast<LPARAM>(start + length));
    SendMessageW(Control(WINDOW_TEXT), EM_SCROLLCARET, 0, 0);
}

// Without a selection, copies the whole text and selects it, so that the user sees what was copied.
void Copy(bool selectionOnly) {
    const auto [start, end] = Selection();
    if (!selectionOnly || start == end) {
        Select(0, displayedText.size());
    }
    SendMessageW(Control(WINDOW_TEXT), WM_COPY, 0, 0);
}

void OpenFindDialog() {
    if (findDialog != nullptr) {
        return static_cast<void>(SetFocus(findDialog));
    }
    find.lStructSize = sizeof(find);
    find.hwndOwner = window;
    find.lpstrFindWhat = wantedText;
    find.wFindWhatLen = static_cast<WORD>(std::size(wantedText));
    find.Flags = FR_DOWN | FR_HIDEWHOLEWORD | FR_HIDEMATCHCASE;
    const auto openDialog = SystemFunction<decltype(&FindTextW)>(L"comdlg32.dll", "FindTextW");
    findDialog = openDialog != nullptr ? openDialog(&find) : nullptr;
}

void Find(bool down) {
    if (*wantedText == L'\0') {
        return OpenFindDialog();
    }
    std::wstring text = displayedText;
    std::wstring wanted = wantedText;
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    CharLowerBuffW(wanted.data(), static_cast<DWORD>(wanted.size()));
    const auto [start, end] = Selection();
    // From the first character, the search backwards wraps around to the end.
    std::size_t found = down ? text.find(wanted, end) : text.rfind(wanted, std::size_t{start} - 1);
    if (found == std::wstring::npos) {  // continue from the other end
        found = down ? text.find(wanted) : text.rfind(wanted);
    }
    if (found != std::wstring::npos) {
        Select(found, wanted.size());
        ShowStatus(status);
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
            return static_cast<void>(DestroyWindow(window));
        default:
            return;
    }
}

INT_PTR Handle(HWND receiver, UINT message, WPARAM wParam, LPARAM lParam) {
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
            // After the dialog's own handler, which scales the controls.
            PostMessageW(window, kScaledMessage, 0, 0);
            return FALSE;
        case kScaledMessage:
            SetTextFont();
            [[fallthrough]];
        case WM_SIZE:
            LayOut();
            return TRUE;
        case WM_GETMINMAXINFO: {
            const auto [width, height] = ButtonSize();
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {5 * width, 10 * height};
            return TRUE;
        }
        case WM_COMMAND:
            RunCommand(LOWORD(wParam));
            return TRUE;
        case kProgressMessage:
            SendMessageW(Control(WINDOW_PROGRESS), PBM_SETRANGE32, 0, lParam);
            SendMessageW(Control(WINDOW_PROGRESS), PBM_SETPOS, wParam, 0);
            return TRUE;
        case kDoneMessage:
            ShowResult(*std::unique_ptr<Result>(reinterpret_cast<Result*>(lParam)));
            return TRUE;
        case WM_DESTROY:
            PostQuitMessage(0);
            return TRUE;
        default:
            return FALSE;
    }
}

// No exception may cross Windows' own functions.
INT_PTR CALLBACK Receive(HWND receiver, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return Handle(receiver, message, wParam, lParam);
    } catch (const std::exception&) {
        SetWindowTextW(Control(WINDOW_STATUS), L"Out of memory");
        return TRUE;
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE /*hPrevInstance*/, wchar_t* /*lpCmdLine*/,
                    int nShowCmd) {
    PrepareProcess();
    // Windows' user interface loads these by name alone.
    for (const wchar_t* const name : {L"dwmapi.dll", L"msimg32.dll", L"ole32.dll"}) {
        LoadSystemLibrary(name);
    }
    const INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_PROGRESS_CLASS};
    if (const auto initialize = SystemFunction<decltype(&InitCommonControlsEx)>(
            L"comctl32.dll", "InitCommonControlsEx")) {
        initialize(&controls);
    }
    findMessage = RegisterWindowMessageW(FINDMSGSTRINGW);
    const HACCEL keys = LoadAcceleratorsW(hInstance, MAKEINTRESOURCEW(WINDOW_KEYS));
    if (CreateDialogParamW(hInstance, MAKEINTRESOURCEW(WINDOW_DIALOG), nullptr, Receive, 0) ==
        nullptr) {
        return 1;
    }
    ShowWindow(window, nShowCmd);
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
