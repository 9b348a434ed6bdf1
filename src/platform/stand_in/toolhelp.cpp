#include <algorithm>
#include <atomic>
#include <cstring>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/handles.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

namespace {

/// Counts the machine's answer down; several threads may ask at once.
bool AnswersBadLength() {
    std::atomic_ref<int> remaining(CurrentMachine().badLengthAnswers);
    return remaining.load() > 0 && remaining.fetch_sub(1) > 0;
}

/// Windows documents no terminator for a name that fills its field: none is written then.
template <std::size_t Size>
void CopyName(char (&field)[Size], const std::string& name) {
    std::memset(field, 0, Size);
    std::memcpy(field, name.data(), std::min(name.size(), Size));
}

void Fill(MODULEENTRY32& entry, const Process& owner, std::size_t index) {
    const Module& module = owner.modules[index];
    const ULONG_PTR address = 0x7FF700000000 + index * 0x1000000;
    entry.th32ModuleID = 1;
    entry.th32ProcessID = owner.id;
    entry.GlblcntUsage = 0xFFFF;
    entry.ProccntUsage = 0xFFFF;
    entry.modBaseAddr = reinterpret_cast<BYTE*>(address);
    entry.modBaseSize = 0x100000;
    entry.hModule = reinterpret_cast<HMODULE>(address);
    CopyName(entry.szModule, module.name);
    CopyName(entry.szExePath, module.path);
}

void Fill(PROCESSENTRY32& entry, const Process& process) {
    entry.cntUsage = 0;
    entry.th32ProcessID = process.id;
    entry.th32DefaultHeapID = 0;
    entry.th32ModuleID = 0;
    entry.cntThreads = 4;
    entry.th32ParentProcessID = 4;
    entry.pcPriClassBase = 8;
    entry.dwFlags = 0;
    CopyName(entry.szExeFile, process.name);
}

BOOL ReadModule(HANDLE snapshot, MODULEENTRY32* entry, bool fromTheStart) {
    const auto state = StateOf(HandleKind::Snapshot, snapshot);
    if (!state) {
        return Refuse(ERROR_INVALID_HANDLE, FALSE);
    }
    if (!entry || entry->dwSize != sizeof *entry) {
        return Refuse(ERROR_BAD_LENGTH, FALSE);
    }
    const std::size_t index = fromTheStart ? 0 : state->nextEntry;
    if (!state->moduleOwner || index >= state->moduleOwner->modules.size()) {
        return Refuse(ERROR_NO_MORE_FILES, FALSE);
    }
    Fill(*entry, *state->moduleOwner, index);
    SetNextEntry(snapshot, index + 1);
    return TRUE;
}

BOOL ReadProcess(HANDLE snapshot, PROCESSENTRY32* entry, bool fromTheStart) {
    const auto state = StateOf(HandleKind::Snapshot, snapshot);
    if (!state) {
        return Refuse(ERROR_INVALID_HANDLE, FALSE);
    }
    if (!entry || entry->dwSize != sizeof *entry) {
        return Refuse(ERROR_BAD_LENGTH, FALSE);
    }
    const auto& processes = CurrentMachine().processes;
    const std::size_t index = fromTheStart ? 0 : state->nextEntry;
    if (!state->hasProcesses || index >= processes.size()) {
        return Refuse(ERROR_NO_MORE_FILES, FALSE);
    }
    Fill(*entry, processes[index]);
    SetNextEntry(snapshot, index + 1);
    return TRUE;
}

}  // namespace

HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD processId) {
    if (CallFails(PlatformCall::CreateToolhelp32Snapshot)) {
        return INVALID_HANDLE_VALUE;
    }
    constexpr DWORD moduleFlags = TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32;
    if (flags == 0 || (flags & ~(moduleFlags | TH32CS_SNAPPROCESS)) != 0) {
        return Refuse(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    }
    HandleState state;
    state.hasProcesses = (flags & TH32CS_SNAPPROCESS) != 0;
    if (flags & moduleFlags) {
        const Machine& machine = CurrentMachine();
        const DWORD ownerId = processId == 0 ? machine.processId : processId;
        const auto owner = std::ranges::find(machine.processes, ownerId, &Process::id);
        if (owner == machine.processes.end()) {
            return Refuse(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
        }
        if (owner->snapshotError != ERROR_SUCCESS) {
            return Refuse(owner->snapshotError, INVALID_HANDLE_VALUE);
        }
        if (AnswersBadLength()) {
            return Refuse(ERROR_BAD_LENGTH, INVALID_HANDLE_VALUE);
        }
        state.moduleOwner = &*owner;
    }
    void* const handle = OpenHandle(HandleKind::Snapshot, state);
    return handle ? handle : Refuse(ERROR_NO_SYSTEM_RESOURCES, INVALID_HANDLE_VALUE);
}

BOOL Module32First(HANDLE snapshot, MODULEENTRY32* entry) {
    return CallFails(PlatformCall::Module32First) ? FALSE : ReadModule(snapshot, entry, true);
}

BOOL Module32Next(HANDLE snapshot, MODULEENTRY32* entry) {
    return CallFails(PlatformCall::Module32Next) ? FALSE : ReadModule(snapshot, entry, false);
}

BOOL Process32First(HANDLE snapshot, PROCESSENTRY32* entry) {
    return CallFails(PlatformCall::Process32First) ? FALSE : ReadProcess(snapshot, entry, true);
}

BOOL Process32Next(HANDLE snapshot, PROCESSENTRY32* entry) {
    return CallFails(PlatformCall::Process32Next) ? FALSE : ReadProcess(snapshot, entry, false);
}

BOOL CloseHandle(HANDLE handle) {
    CountCall(PlatformCall::CloseHandle);
    return ReleaseHandle(HandleKind::Snapshot, handle) ? TRUE : Refuse(ERROR_INVALID_HANDLE, FALSE);
}
