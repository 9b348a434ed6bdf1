// The Modules section: the modules that a process has loaded, or a single module, with versions.
#include <cstdio>

#include "core/collector.h"
#include "machine/module_version.h"

namespace qb_support {

namespace {

// A snapshot of the running processes or of one process's modules. Owns the handle, which is
// INVALID_HANDLE_VALUE if there is none.
class CSnapshot {
public:
    explicit CSnapshot(HANDLE handle) : m_handle(handle) {}
    CSnapshot(const CSnapshot&) = delete;
    CSnapshot& operator=(const CSnapshot&) = delete;
    ~CSnapshot() {
        if (IsValid()) {
            CloseHandle(m_handle);
        }
    }

    [[nodiscard]] bool IsValid() const { return m_handle != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE Handle() const { return m_handle; }

private:
    HANDLE m_handle;
};

constexpr DWORD kModulesOfAnyWidth = TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32;

// While a process loads modules, the snapshot may fail with ERROR_BAD_LENGTH, and Windows'
// documentation says to try again. The tries are limited, because a process that never stops
// loading must not block the host.
constexpr int kMostTries = 100;

HANDLE TakeModuleSnapshot(DWORD processId) {
    HANDLE handle = INVALID_HANDLE_VALUE;
    for (int tries = 0; tries < kMostTries && handle == INVALID_HANDLE_VALUE; ++tries) {
        handle = CreateToolhelp32Snapshot(kModulesOfAnyWidth, processId);
        if (handle == INVALID_HANDLE_VALUE && GetLastError() != ERROR_BAD_LENGTH) {
            break;
        }
    }
    return handle;
}

// The identifier of the first running process whose executable file is named `name`, in the same
// upper and lower case, or 0 if there is none or if the processes cannot be listed.
DWORD FindProcessId(std::string_view name) {
    const CSnapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot.IsValid()) {
        return 0;
    }
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32First(snapshot.Handle(), &entry); more != 0;
         more = Process32Next(snapshot.Handle(), &entry)) {
        if (BufferText(entry.szExeFile) == name) {
            return entry.th32ProcessID;
        }
    }
    return 0;
}

bool IsControl(char character) {
    return static_cast<unsigned char>(character) < 0x20;
}

// The first line of a system message, without full stops and blanks at its end.
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

// Writes a line about the calling thread's last error, with the system's text for it, to standard
// output. It must be called before another platform call changes that error. The line begins with
// its line end and has none behind it, which is intended.
void PrintLastErrorWarning(const char* operation) {
    const DWORD error = GetLastError();
    char buffer[256] = {};
    const DWORD length =
        FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buffer, sizeof(buffer), nullptr);
    const CText message(length != 0 ? Trimmed(BufferText(buffer)) : std::string_view());
    std::printf("\n  WARNING: %s failed with error %d (%s)", operation, static_cast<int>(error),
                message.CStr());
    // Without this, a pipe would get the line after what the host prints next, or not at all if the
    // host crashes.
    static_cast<void>(std::fflush(stdout));
}

void AppendModuleLine(CText& result, const CText& indent, const CText& file, const char* name) {
    result << indent << file << "  [" << GetModuleVersion(name) << "]\r\n";
}

}  // namespace

bool CQbSupportWindows::GetModulesInfo(CText& result, CText& argument) {
    CQbSupport::GetModulesInfo(result, argument);
    DWORD processId = 0;
    if (argument.Empty()) {
        processId = GetCurrentProcessId();
    } else {
        processId = FindProcessId(argument.View());
        if (processId == 0) {
            return false;
        }
    }
    ListProcessModules(processId, result);
    result << "\r\n";
    return true;
}

bool CQbSupportWindows::GetModuleInfo(CText& result, CText& argument) {
    AppendModuleLine(result, m_indent, argument, argument.CStr());
    return true;
}

int CQbSupportWindows::ListProcessModules(DWORD processId, CText& result) {
    const CSnapshot snapshot(TakeModuleSnapshot(processId));
    if (!snapshot.IsValid()) {
        PrintLastErrorWarning("CreateToolhelp32Snapshot (of modules)");
        return 0;
    }
    MODULEENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    if (Module32First(snapshot.Handle(), &entry) == 0) {
        PrintLastErrorWarning("Module32First");
        return 0;
    }
    do {
        CText file(BufferText(entry.szExePath));
        ReplaceAll(file, "\\", "/");
        const CText name(BufferText(entry.szModule));
        AppendModuleLine(result, m_indent, file, name.CStr());
    } while (Module32Next(snapshot.Handle(), &entry) != 0);
    return 1;
}

}  // namespace qb_support
