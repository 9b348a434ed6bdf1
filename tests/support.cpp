#include "support.h"

#include <cstring>

#include "stand_in/calls.h"

// With the linker's --wrap, the library's malloc and free come here first. The stand-in and the
// tests use operator new, which does not come here.
void* RealMalloc(std::size_t size) asm("__real_malloc");
void RealFree(void* block) asm("__real_free");
void* WatchedMalloc(std::size_t size) asm("__wrap_malloc");
void WatchedFree(void* block) asm("__wrap_free");

namespace {

// What a call allocates and frees, which it does on the caller's thread.
struct Allocations {
    AllocationFault fault;
    std::size_t attempts = 0;
    std::size_t live = 0;
    std::size_t lastSize = 0;
};

thread_local Allocations* watched = nullptr;

}  // namespace

void* WatchedMalloc(std::size_t size) {
    if (watched != nullptr) {
        const std::size_t number = ++watched->attempts;
        if (number >= watched->fault.first && number <= watched->fault.last) {
            return nullptr;
        }
        ++watched->live;
        watched->lastSize = size;
    }
    return RealMalloc(size);
}

void WatchedFree(void* block) {
    if (watched != nullptr && block != nullptr) {
        --watched->live;
    }
    RealFree(block);
}

CallOutcome Call(const Request& request, AllocationFault fault) {
    CallOutcome outcome;
    const auto require = [&outcome](bool kept, const char* promise) {
        outcome.violations += kept ? "" : std::string(promise) + "; ";
    };
    char untouched = 'u';
    char* buffer = &untouched;
    Allocations memory{fault};
    watched = &memory;
    const int result = QbSupportGetInfo(request.kind, request.flags, &buffer, request.argument);

    outcome.allocations = memory.attempts;
    const bool hasText = result == 1 && buffer != nullptr && buffer != &untouched;
    require(hasText || (result == 0 && buffer == &untouched), "result and buffer disagree");
    require(untouched == 'u', "wrote to the caller's own text");
    require(memory.live == (hasText ? 1U : 0U), "memory left behind");
    if (hasText) {
        const void* const end = std::memchr(buffer, '\0', memory.lastSize);
        require(end == buffer + memory.lastSize - 1, "block not of the text's size and one");
        outcome.text = end != nullptr ? buffer : "";
        require(QbSupportReleaseBuffer(buffer), "release failed");
        require(memory.live == 0, "block not freed");
    }
    watched = nullptr;
    return outcome;
}

CallOutcome CallAlone(const Request& request, AllocationFault fault) {
    CallOutcome outcome = Call(request, fault);
    outcome.violations += stand_in::OpenHandles() != 0 ? "handles left open; " : "";
    outcome.violations += stand_in::HandleMisuses() != 0 ? "handles misused; " : "";
    return outcome;
}

std::optional<std::string> GetInfo(int kind, unsigned flags, const char* argument) {
    const CallOutcome outcome = CallAlone({kind, flags, argument});
    EXPECT_EQ(outcome.violations, "") << "by kind " << kind;
    return outcome.text;
}

std::vector<Request> EveryRequest(const std::vector<const char*>& arguments) {
    std::vector<Request> requests;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        for (const char* argument : arguments) {
            requests.push_back({kind, 0, argument});
            requests.push_back({kind, 7, argument});
        }
    }
    return requests;
}
