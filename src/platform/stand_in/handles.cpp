#include "platform/stand_in/handles.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>

#include "platform/stand_in/calls.h"

namespace stand_in {
namespace {

struct Slot {
    HandleKind kind = HandleKind::None;
    std::uintptr_t value = 0;
    HandleState state;
};

// A fixed table: opening a handle needs no memory, so that a test can count the library's own
// allocations. A handle's value is its serial number and its slot, four apart as on Windows.
constexpr std::size_t slotCount = 256;
std::array<Slot, slotCount> slots;
std::uintptr_t lastSerial = 0;
std::mutex slotsMutex;

std::atomic<int> misuses;

/// Called with the table locked.
Slot* FindSlot(HandleKind kind, const void* handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    Slot& slot = slots[value / 4 % slotCount];
    return slot.kind == kind && slot.value == value ? &slot : nullptr;
}

int CountOpen(HandleKind kind) {
    return static_cast<int>(std::ranges::count(slots, kind, &Slot::kind));
}

}  // namespace

void* OpenHandle(HandleKind kind, const HandleState& state) {
    const std::lock_guard lock(slotsMutex);
    auto* const slot = std::ranges::find(slots, HandleKind::None, &Slot::kind);
    if (slot == slots.end()) {
        return nullptr;
    }
    const auto index = static_cast<std::uintptr_t>(slot - slots.begin());
    const std::uintptr_t value = (++lastSerial * slotCount + index) * 4;
    *slot = {kind, value, state};
    return reinterpret_cast<void*>(value);
}

std::optional<HandleState> StateOf(HandleKind kind, const void* handle) {
    const std::lock_guard lock(slotsMutex);
    const Slot* slot = FindSlot(kind, handle);
    if (!slot) {
        ++misuses;
        return std::nullopt;
    }
    return slot->state;
}

void SetNextEntry(const void* snapshot, std::size_t nextEntry) {
    const std::lock_guard lock(slotsMutex);
    if (Slot* slot = FindSlot(HandleKind::Snapshot, snapshot)) {
        slot->state.nextEntry = nextEntry;
    }
}

bool ReleaseHandle(HandleKind kind, const void* handle) {
    const std::lock_guard lock(slotsMutex);
    Slot* slot = FindSlot(kind, handle);
    if (!slot) {
        ++misuses;
        return false;
    }
    slot->kind = HandleKind::None;
    return true;
}

OpenHandles CountOpenHandles() {
    const std::lock_guard lock(slotsMutex);
    return {CountOpen(HandleKind::RegistryKey), CountOpen(HandleKind::Snapshot),
            CountOpen(HandleKind::DeviceContext)};
}

int HandleMisuses() {
    return misuses.load();
}

void ResetHandleMisuses() {
    misuses.store(0);
}

}  // namespace stand_in
