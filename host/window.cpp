// qbreportw: the whole support report in a window, to read, search, copy and save.
#include "window.h"

#include <algorithm>
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

constexpr UINT kProgressMessage = WM_APP;  // the step, the number of steps
constexpr UINT kDoneMessage = WM_APP + 1;  // a Result, which the receiver owns

// What the worker thread hands over.
struct Result {
    qbsupport::Report report;
    std::string problem;  // why there is no report
};

std::unique_ptr<Result> Compose(HWND window) {
    auto result = std::make_unique<Result>();
    const qbsupport::Library library = LoadLibraryBesideExecutable();
    if (!library.IsLoaded()) {
        result->problem = Utf8Of(library.Error());
        return result;
    }
    qbsupport::ReportOptions options = ForLibrary(DefaultReportOptions());
    options.progress = [window](std::size_t step, std::size_t count, const char*) {
        PostMessageW(window, kProgressMessage, step, static_cast<LPARAM>(count));
    };
    result->report = library.WholeReport(options);
    return result;
}

DWORD WINAPI ComposeOnThread(void* window) {
    std::unique_ptr<Result> result;
    try {
        result = Compose(static_cast<HWND>(window));
    } catch (const std::bad_alloc&) {
        result.reset();
    }
    Result* const handedOver = result.release();
    if (!PostMessageW(static_cast<HWND>(window), kDoneMessage, 0,
                      reinterpret_cast<LPARAM>(handedOver))) {
        delete handedOver;
    }
    return 0;
}

// The report's line ends are of two kinds, of which the control knows one.
std::wstring DisplayedText(const std::string& report) {
    std::string text;
    for (const char character : report) {
        if (character == '\n') {
            text += '\r';
        }
        if (character != '\r') {
            text += character;
        }
    }
    return Widen(CP_ACP, text);
}

class Window {
public:
    int Run(HINSTANCE program, int showCommand);

private:
    static INT_PTR CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(int command);
    void OnDone(std::unique_ptr<Result> result);

    [[nodiscard]] HWND Control(int number) const { return GetDlgItem(m_window, number); }
    void Start();
    void SetTextFont(int dotsPerInch);
    void LayOut() const;
    void ShowStatus(const std::string& text) const;
    void Save();
    void Copy(bool selectionOnly) const;
    void OpenFindDialog();
    void Find(bool down);

    HWND m_window = nullptr;
    HWND m_findDialog = nullptr;
    UINT m_findMessage = RegisterWindowMessageW(FINDMSGSTRINGW);
    FINDREPLACEW m_find = {};
    wchar_t m_wanted[128] = L"";
    HFONT m_textFont = nullptr;
    std::string m_report;
    std::wstring m_displayed;
};

int DotsPerInch(HWND window) {
    using GetDpi = UINT(WINAPI*)(HWND);
    const auto getDpi =
        qbsupport::detail::FindFunction<GetDpi>(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
    if (getDpi != nullptr) {
        return static_cast<int>(getDpi(window));
    }
    // Before Windows 10 1607.
    const HDC context = GetDC(window);
    const int dotsPerInch = GetDeviceCaps(context, LOGPIXELSY);
    ReleaseDC(window, context);
    return dotsPerInch;
}

void Window::Start() {
    SetTextFont(DotsPerInch(m_window));
    SendMessageW(Control(WINDOW_TEXT), EM_SETLIMITTEXT, 0, 0);
    LayOut();
    const HANDLE thread = CreateThread(nullptr, 0, ComposeOnThread, m_window, 0, nullptr);
    if (thread == nullptr) {
        OnDone(nullptr);
    } else {
        CloseHandle(thread);
    }
}

void Window::SetTextFont(int dotsPerInch) {
    constexpr int kPoints = 10;
    const HFONT before = std::exchange(
        m_textFont, CreateFontW(-MulDiv(kPoints, dotsPerInch, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                                FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                CLEARTYPE_QUALITY, FIXED_PITCH | FF_MODERN, L"Consolas"));
    SendMessageW(Control(WINDOW_TEXT), WM_SETFONT, reinterpret_cast<WPARAM>(m_textFont), TRUE);
    DeleteObject(before);
}

// The text above, a row with the status and the buttons below. Windows scales the buttons where
// another screen has other dots per inch, and everything else follows from their size.
void Window::LayOut() const {
    RECT area = {};
    RECT button = {};
    GetClientRect(m_window, &area);
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
        MoveWindow(Control(number), gap, top, (std::max)(left - 2 * gap, 0), height, TRUE);
    }
    MoveWindow(Control(WINDOW_TEXT), 0, 0, area.right, (std::max)(top - gap, 0), TRUE);
}

void Window::ShowStatus(const std::string& text) const {
    SetWindowTextW(Control(WINDOW_STATUS), Widen(CP_UTF8, text).c_str());
}

void Window::OnDone(std::unique_ptr<Result> result) {
    ShowWindow(Control(WINDOW_PROGRESS), SW_HIDE);
    ShowWindow(Control(WINDOW_STATUS), SW_SHOW);
    if (result == nullptr || !result->problem.empty()) {
        ShowStatus("No report: " + (result == nullptr ? "out of memory" : result->problem));
        return;
    }
    m_report = std::move(result->report.text);
    m_displayed = DisplayedText(m_report);
    SetWindowTextW(Control(WINDOW_TEXT), m_displayed.c_str());
    std::string status;
    for (const qbsupport::FailedSection& failed : result->report.failed) {
        status += (status.empty() ? "" : "; ") + FailureText(failed);
    }
    ShowStatus(status);
    EnableWindow(Control(WINDOW_SAVE), TRUE);
    EnableWindow(Control(WINDOW_COPY), TRUE);
}

void Window::Save() {
    if (!IsWindowEnabled(Control(WINDOW_SAVE))) {
        return;
    }
    std::wstring path = Widen(CP_UTF8, NewReportPath());
    path.resize(32768);
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = m_window;
    dialog.lpstrFilter = L"Text files (*.txt)\0*.txt\0All files\0*.*\0";
    dialog.lpstrDefExt = L"txt";
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST |
                   OFN_DONTADDTORECENT;
    if (!GetSaveFileNameW(&dialog)) {
        return;
    }
    const std::string target = Narrow(CP_UTF8, path.c_str());
    const std::string problem = SaveReport(m_report, target);
    if (problem.empty()) {
        ShowStatus("Saved in " + FullPath(target));
        return;
    }
    const std::string message = "Cannot save the report in " + target + ": " + problem;
    ShowStatus(message);
    MessageBoxW(m_window, Widen(CP_UTF8, message).c_str(), L"Support report", MB_ICONERROR);
}

void Window::Copy(bool selectionOnly) const {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(Control(WINDOW_TEXT), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    if (!selectionOnly || start == end) {
        SendMessageW(Control(WINDOW_TEXT), EM_SETSEL, 0, -1);
    }
    SendMessageW(Control(WINDOW_TEXT), WM_COPY, 0, 0);
}

void Window::OpenFindDialog() {
    if (m_findDialog != nullptr) {
        SetFocus(m_findDialog);
        return;
    }
    m_find.lStructSize = sizeof(m_find);
    m_find.hwndOwner = m_window;
    m_find.lpstrFindWhat = m_wanted;
    m_find.wFindWhatLen = static_cast<WORD>(std::size(m_wanted));
    m_find.Flags = FR_DOWN | FR_HIDEWHOLEWORD;
    m_findDialog = FindTextW(&m_find);
}

void Window::Find(bool down) {
    if (*m_wanted == L'\0') {
        OpenFindDialog();
        return;
    }
    std::wstring text = m_displayed;
    std::wstring wanted = m_wanted;
    if ((m_find.Flags & FR_MATCHCASE) == 0) {
        CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
        CharLowerBuffW(wanted.data(), static_cast<DWORD>(wanted.size()));
    }
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(Control(WINDOW_TEXT), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    std::size_t found = std::wstring::npos;
    if (down) {
        found = text.find(wanted, end);
    } else if (start > 0) {
        found = text.rfind(wanted, start - 1);
    }
    if (found == std::wstring::npos) {
        // On from the other end.
        found = down ? text.find(wanted) : text.rfind(wanted);
    }
    if (found == std::wstring::npos) {
        ShowStatus("Not found: " + Narrow(CP_UTF8, m_wanted));
        MessageBeep(MB_ICONWARNING);
        return;
    }
    SendMessageW(Control(WINDOW_TEXT), EM_SETSEL, found,
                 static_cast<LPARAM>(found + wanted.size()));
    SendMessageW(Control(WINDOW_TEXT), EM_SCROLLCARET, 0, 0);
}

void Window::OnCommand(int command) {
    switch (command) {
        case WINDOW_SAVE:
            return Save();
        case WINDOW_COPY:
            return Copy(false);
        case WINDOW_COPY_SELECTION:
            return Copy(true);
        case WINDOW_SELECT_ALL:
            SendMessageW(Control(WINDOW_TEXT), EM_SETSEL, 0, -1);
            return;
        case WINDOW_FIND:
            return OpenFindDialog();
        case WINDOW_FIND_NEXT:
        case WINDOW_FIND_PREVIOUS:
            return Find(command == WINDOW_FIND_NEXT);
        case IDCANCEL:
            DestroyWindow(m_window);
            return;
        default:
            return;
    }
}

INT_PTR Window::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == m_findMessage) {
        if ((m_find.Flags & FR_DIALOGTERM) != 0) {
            m_findDialog = nullptr;
        } else {
            Find((m_find.Flags & FR_DOWN) != 0);
        }
        return TRUE;
    }
    switch (message) {
        case WM_SIZE:
            LayOut();
            return TRUE;
        case WM_DPICHANGED:
            SetTextFont(LOWORD(wParam));
            return FALSE;
        case WM_COMMAND:
            OnCommand(LOWORD(wParam));
            return TRUE;
        case kProgressMessage:
            SendMessageW(Control(WINDOW_PROGRESS), PBM_SETRANGE32, 0, lParam);
            SendMessageW(Control(WINDOW_PROGRESS), PBM_SETPOS, wParam, 0);
            return TRUE;
        case kDoneMessage:
            OnDone(std::unique_ptr<Result>(reinterpret_cast<Result*>(lParam)));
            return TRUE;
        case WM_DESTROY:
            PostQuitMessage(0);
            return TRUE;
        default:
            return FALSE;
    }
}

INT_PTR CALLBACK Window::Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        auto* const self = reinterpret_cast<Window*>(lParam);
        self->m_window = window;
        self->Start();
        return TRUE;
    }
    auto* const self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self != nullptr ? self->OnMessage(message, wParam, lParam) : FALSE;
}

int Window::Run(HINSTANCE program, int showCommand) {
    const HACCEL keys = LoadAcceleratorsW(program, MAKEINTRESOURCEW(WINDOW_KEYS));
    CreateDialogParamW(program, MAKEINTRESOURCEW(WINDOW_DIALOG), nullptr, Receive,
                       reinterpret_cast<LPARAM>(this));
    ShowWindow(m_window, showCommand);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if ((m_findDialog != nullptr && IsDialogMessageW(m_findDialog, &message)) ||
            TranslateAcceleratorW(m_window, keys, &message) ||
            IsDialogMessageW(m_window, &message)) {
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE program, HINSTANCE /*before*/, wchar_t* /*arguments*/,
                    int showCommand) {
    PrepareProcess();
    const INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    return Window().Run(program, showCommand);
}
