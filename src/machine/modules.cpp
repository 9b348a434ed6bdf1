// The Modules section: the modules loaded in a process, and single modules, with their versions.
#include "core/collector.h"
#include "machine/module_version.h"
#include "machine/process_id.h"
#include "machine/warning.h"
#include "platform/snapshot.h"

namespace qb_support {

namespace {

constexpr DWORD kModulesOfAnyWidth = TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32;

// While a process loads modules the snapshot fails with ERROR_BAD_LENGTH; the platform's advice is
// to try again. A process that never stops loading must not hold up its host for ever.
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

void AppendModuleLine(Text& result, const Text& indent, const Text& file, const char* name) {
    result << indent << file << "  [" << GetModuleVersion(name) << "]\r\n";
}

}  // namespace

bool CQbSupportWindows::GetModulesInfo(Text& result, Text& argument) {
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

bool CQbSupportWindows::GetModuleInfo(Text& result, Text& argument) {
    AppendModuleLine(result, m_indent, argument, argument.CStr());
    return true;
}

int CQbSupportWindows::ListProcessModules(DWORD processId, Text& result) {
    const Snapshot snapshot(TakeModuleSnapshot(processId));
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
        Text file(BufferText(entry.szExePath));
        ReplaceAll(file, "\\", "/");
        const Text name(BufferText(entry.szModule));
        AppendModuleLine(result, m_indent, file, name.CStr());
    } while (Module32Next(snapshot.Handle(), &entry) != 0);
    return 1;
}

}  // namespace qb_support
