#include "platform/stand_in/calls.h"

#include <array>
#include <atomic>
#include <cstring>

#include "platform/stand_in/handles.h"
#include "platform/stand_in/kernel.h"

namespace stand_in {
namespace {

constexpr const char* callNames[] = {
#define PLATFORM_CALL(name) #name,
#include "platform/stand_in/platform_calls.inc"
#undef PLATFORM_CALL
};

// Orders nothing but itself: each counter is read on its own.
constexpr auto relaxed = std::memory_order_relaxed;

std::array<std::atomic<std::uint64_t>, platformCallKinds> callsByKind;
std::atomic<std::uint64_t> callsMade;
std::atomic<std::uint64_t> firstFault;
std::atomic<std::uint64_t> lastFault;

thread_local DWORD lastError = 0;

// Which call it is: of all, and of its function.
struct CallNumber {
    std::uint64_t number;
    std::uint64_t ordinal;
};

CallNumber NextCall(PlatformCall call) {
    auto& ofFunction = callsByKind[static_cast<std::size_t>(call)];
    const CallNumber next = {callsMade.fetch_add(1, relaxed) + 1,
                             ofFunction.fetch_add(1, relaxed) + 1};
    if (beforeCall) {
        beforeCall(call, next.ordinal);
    }
    return next;
}

std::optional<FailedCall> firstFailedCall;

}  // namespace

std::function<void(PlatformCall call, std::uint64_t ordinal)> beforeCall;

const std::optional<FailedCall>& FirstFailedCall() {
    return firstFailedCall;
}

const char* CallName(PlatformCall call) {
    return callNames[static_cast<std::size_t>(call)];
}

std::uint64_t CallsMade() {
    return callsMade.load(relaxed);
}

std::uint64_t CallsMade(PlatformCall call) {
    return callsByKind[static_cast<std::size_t>(call)].load(relaxed);
}

void ResetCalls() {
    PlanFault(0, FaultMode::Once);
    ResetHandleMisuses();
}

void PlanFault(std::uint64_t number, FaultMode mode) {
    for (auto& calls : callsByKind) {
        calls.store(0, relaxed);
    }
    callsMade.store(0, relaxed);
    firstFailedCall.reset();
    firstFault.store(number, relaxed);
    lastFault.store(mode == FaultMode::Once ? number : UINT64_MAX, relaxed);
}

void CountCall(PlatformCall call) {
    NextCall(call);
}

bool CallFails(PlatformCall call) {
    const CallNumber made = NextCall(call);
    if (made.number < firstFault.load(relaxed) || made.number > lastFault.load(relaxed)) {
        return false;
    }
    if (!firstFailedCall) {
        firstFailedCall = {call, made.ordinal};
    }
    SetLastErrorCode(ERROR_NOT_ENOUGH_MEMORY);
    return true;
}

void SetLastErrorCode(LONG code) {
    lastError = static_cast<DWORD>(code);
}

void FillWithGarbage(void* memory, std::size_t size) {
    if (size != 0) {  // a caller that only asks for a size has no memory
        std::memset(memory, 0xCC, size);
    }
}

}  // namespace stand_in

DWORD GetLastError() {
    stand_in::CountCall(stand_in::PlatformCall::GetLastError);
    return stand_in::lastError;
}
