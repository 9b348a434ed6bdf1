#include "stand_in/calls.h"

#include <cstring>
#include <mutex>

#include "stand_in/handles.h"

namespace stand_in {

std::function<void(std::string_view function, std::uint64_t ordinal)> beforeCall;
thread_local DWORD lastError = 0;

namespace {

std::mutex mutex;
std::map<const char*, std::uint64_t> callsByFunction;  // by the name's address, which is fast
std::uint64_t callsMade = 0;
std::uint64_t firstFault = 0;
std::uint64_t lastFault = 0;
std::optional<FailedCall> firstFailedCall;
int misuses = 0;

}  // namespace

std::uint64_t CallsMade() {
    return callsMade;
}

std::uint64_t CallsMade(std::string_view function) {
    std::uint64_t calls = 0;
    for (const auto& [name, count] : callsByFunction) {
        calls += name == function ? count : 0;
    }
    return calls;
}

const std::optional<FailedCall>& FirstFailedCall() {
    return firstFailedCall;
}

void ResetCalls() {
    PlanFault(0, FaultMode::Once);
    misuses = 0;
}

void PlanFault(std::uint64_t number, FaultMode mode) {
    callsByFunction.clear();
    callsMade = 0;
    firstFailedCall.reset();
    firstFault = number;
    lastFault = mode == FaultMode::Once ? number : UINT64_MAX;
}

void Count(const char* function) {
    std::uint64_t ordinal = 0;
    {
        const std::lock_guard lock(mutex);
        ++callsMade;
        ordinal = ++callsByFunction[function];
    }
    if (beforeCall) {
        beforeCall(function, ordinal);
    }
}

bool Fails(const char* function, void* memory, std::size_t size) {
    Count(function);
    const std::lock_guard lock(mutex);
    if (callsMade < firstFault || callsMade > lastFault) {
        return false;
    }
    if (!firstFailedCall) {
        firstFailedCall = {function, callsByFunction[function]};
    }
    FillWithGarbage(memory, size);
    return Refuse(ERROR_NOT_ENOUGH_MEMORY, true);
}

void FillWithGarbage(void* memory, std::size_t size) {
    if (memory) {  // null if the caller only asks for a size
        std::memset(memory, 0xCC, size);
    }
}

bool Give(std::string_view text, char* buffer, std::size_t size) {
    if (size <= text.size()) {
        FillWithGarbage(buffer, size);
        return false;
    }
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return true;
}

std::mutex& HandleMutex() {
    return mutex;
}

void CountMisuse() {
    ++misuses;
}

int HandleMisuses() {
    return misuses;
}

}  // namespace stand_in

DWORD GetLastError() {
    stand_in::Count(__func__);
    return stand_in::lastError;
}
