// The open registry keys, snapshots and device contexts. A released handle's value never comes
// back, so that its later use is noticed.
#ifndef QBSUPPORT_PLATFORM_STAND_IN_HANDLES_H
#define QBSUPPORT_PLATFORM_STAND_IN_HANDLES_H

#include <cstddef>

#include "platform/stand_in/machine.h"

namespace stand_in {

enum class HandleKind { None, RegistryKey, Snapshot, DeviceContext };

struct HandleState {
    const RegistryKey* key = nullptr;
    REGSAM access = 0;
    /// The snapshot's parts, null or false for one that was not asked for.
    const Process* moduleOwner = nullptr;
    bool hasProcesses = false;
    std::size_t nextEntry = 0;
};

/// Null when too many are open.
void* OpenHandle(HandleKind kind, const HandleState& state);

/// The state of an open handle, empty (and a misuse) when it is not open.
std::optional<HandleState> StateOf(HandleKind kind, const void* handle);

void SetNextEntry(const void* snapshot, std::size_t nextEntry);

/// False, and a misuse, when it is not open.
bool ReleaseHandle(HandleKind kind, const void* handle);

void ResetHandleMisuses();

}  // namespace stand_in

#endif
