#include <algorithm>
#include <atomic>
#include <cstring>

#include "stand_in/calls.h"
#include "stand_in/handles.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

struct OpenSnapshot {
    const Process* moduleOwner;  // null in a snapshot of processes
    std::size_t next = 0;
};
Handles<OpenSnapshot> openSnapshots;

/// Uses up one of the machine's planned answers. Several threads may ask at the same time.
bool AnswersBadLength() {
    const std::atomic_ref<int> remaining(CurrentMachine().badLengthAnswers);
    return remaining.load() > 0 && remaining.fetch_sub(1) > 0;
}

/// A name that fills its field gets no terminator, because Windows documents none.
template <std::size_t Size>
void CopyName(char (&field)[Size], const std::string& name) {
    std::memset(field, 0, Size);
    std::memcpy(field, name.data(), std::min(name.size(), Size));
}

void Fill(MODULEENTRY32& entry, const Module& module) {
    CopyName(entry.szModule, module.name);
    CopyName(entry.szExePath, module.path);
}

void Fill(PROCESSENTRY32& entry, const Process& process) {
    entry.th32ProcessID = process.id;
    CopyName(entry.szExeFile, process.name);
}

template <typename Entry>
BOOL Read(HANDLE handle, Entry* entry, bool fromTheStart, const auto& listOf) {
    OpenSnapshot* const snapshot = openSnapshots.Find(handle);
    if (!snapshot || entry->dwSize != sizeof *entry) {
        return Refuse(snapshot ? ERROR_BAD_LENGTH : ERROR_INVALID_HANDLE, FALSE);
    }
    const auto* const list = listOf(*snapshot);
    snapshot->next = fromTheStart ? 0 : snapshot->next;
    if (!list || snapshot->next >= list->size()) {
        return Refuse(ERROR_NO_MORE_FILES, FALSE);
    }
    Fill(*entry, (*list)[snapshot->next++]);
    return TRUE;
}

const std::vector<Module>* Modules(const OpenSnapshot& snapshot) {
    return snapshot.moduleOwner ? &snapshot.moduleOwner->modules : nullptr;
}

const std::vector<Process>* Processes(const OpenSnapshot& snapshot) {
    return snapshot.moduleOwner ? nullptr : &CurrentMachine().processes;
}

}  // namespace

int stand_in::OpenSnapshots() {
    return openSnapshots.Count();
}

HANDLE CreateToolhelp32Snapshot(DWORD flags, DWORD processId) {
    if (Fails(__func__)) {
        return INVALID_HANDLE_VALUE;
    }
    if (flags == TH32CS_SNAPPROCESS) {
        return openSnapshots.Open({nullptr});
    }
    const auto& processes = CurrentMachine().processes;
    const auto owner = std::ranges::find(processes, processId, &Process::id);
    if (flags != (TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32) || owner == processes.end()) {
        return Refuse(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    }
    if (owner->snapshotError != ERROR_SUCCESS) {
        return Refuse(static_cast<DWORD>(owner->snapshotError), INVALID_HANDLE_VALUE);
    }
    return AnswersBadLength() ? Refuse(ERROR_BAD_LENGTH, INVALID_HANDLE_VALUE)
                              : openSnapshots.Open({&*owner});
}

BOOL Module32First(HANDLE snapshot, MODULEENTRY32* entry) {
    return Fails(__func__) ? FALSE : Read(snapshot, entry, true, Modules);
}

BOOL Module32Next(HANDLE snapshot, MODULEENTRY32* entry) {
    return Fails(__func__) ? FALSE : Read(snapshot, entry, false, Modules);
}

BOOL Process32First(HANDLE snapshot, PROCESSENTRY32* entry) {
    return Fails(__func__) ? FALSE : Read(snapshot, entry, true, Processes);
}

BOOL Process32Next(HANDLE snapshot, PROCESSENTRY32* entry) {
    return Fails(__func__) ? FALSE : Read(snapshot, entry, false, Processes);
}

BOOL CloseHandle(HANDLE handle) {
    Count(__func__);
    return openSnapshots.Release(handle) ? TRUE : Refuse(ERROR_INVALID_HANDLE, FALSE);
}
