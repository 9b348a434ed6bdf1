// What the platform was asked: the calls by kind, the planned fault, and what is still open.
#ifndef QBSUPPORT_PLATFORM_STAND_IN_CALLS_H
#define QBSUPPORT_PLATFORM_STAND_IN_CALLS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/stand_in/types.h"

namespace stand_in {

enum class PlatformCall {
#define PLATFORM_CALL(name) name,
#include "platform/stand_in/platform_calls.inc"
#undef PLATFORM_CALL
};
inline constexpr std::size_t platformCallKinds =
    static_cast<std::size_t>(PlatformCall::setlocale) + 1;

const char* CallName(PlatformCall call);

/// Calls since the last reset, those that cannot fail included.
std::uint64_t CallsMade();
std::uint64_t CallsMade(PlatformCall call);

/// Forgets the calls made, the planned fault and the handle misuses.
void ResetCalls();

enum class FaultMode { Once, FromThenOn };

/// Resets the calls; the call with this number, 1 for the next one, then fails as that function
/// fails. A function that cannot fail works all the same.
void PlanFault(std::uint64_t number, FaultMode mode);

/// A call that failed as planned, and which of its function's calls it was.
struct FailedCall {
    PlatformCall call;
    std::uint64_t ordinal;
};

/// The first since the fault was planned. Faults are for one thread at a time.
const std::optional<FailedCall>& FirstFailedCall();

/// Runs before a call is answered, with which of its function's calls it is, so that a test can
/// change the machine between two calls. Empty for nothing.
extern std::function<void(PlatformCall call, std::uint64_t ordinal)> beforeCall;

struct OpenHandles {
    int registryKeys = 0;
    int snapshots = 0;
    int deviceContexts = 0;

    [[nodiscard]] int Total() const { return registryKeys + snapshots + deviceContexts; }
};
OpenHandles CountOpenHandles();

/// Uses and releases of a handle that was not open, or not of that kind.
int HandleMisuses();

// For the functions of the platform:

/// Counts one call of a function that cannot fail.
void CountCall(PlatformCall call);

/// Counts one call; when true, the call must fail, and the last error is already set.
bool CallFails(PlatformCall call);

void SetLastErrorCode(LONG code);

/// Sets the last error and passes the function's own sign of failure on.
template <typename Result>
Result Refuse(LONG code, Result result) {
    SetLastErrorCode(code);
    return result;
}

/// What a failing call may leave in memory whose content Windows does not define.
void FillWithGarbage(void* memory, std::size_t size);

}  // namespace stand_in

#endif
