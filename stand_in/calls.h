// What the platform was asked: the calls by function, the planned fault, and what is still open.
#ifndef QBSUPPORT_STAND_IN_CALLS_H
#define QBSUPPORT_STAND_IN_CALLS_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

#include "platform/windows_api.h"

namespace stand_in {

/// Calls since the last reset, those that cannot fail included; `function` is the function's name.
std::uint64_t CallsMade();
std::uint64_t CallsMade(std::string_view function);

/// Forgets the calls made, the planned fault and the handle misuses.
void ResetCalls();

enum class FaultMode { Once, FromThenOn };

/// Resets the calls; the call with this number, 1 for the next one, then fails as that function
/// fails. A function that cannot fail works all the same.
void PlanFault(std::uint64_t number, FaultMode mode);

/// A call that failed as planned, and which of its function's calls it was.
struct FailedCall {
    std::string_view function;
    std::uint64_t ordinal;
};

/// The first since the fault was planned. Faults are for one thread at a time.
const std::optional<FailedCall>& FirstFailedCall();

/// Runs before a call is answered, with which of its function's calls it is, so that a test can
/// change the machine between two calls. Empty for nothing.
extern std::function<void(std::string_view function, std::uint64_t ordinal)> beforeCall;

int OpenHandles();

/// Uses and releases of a handle that was not open, or not of that kind.
int HandleMisuses();

// For the functions of the platform, which name themselves by __func__:

/// Counts one call of a function that cannot fail.
void Count(const char* function);

/// Counts one call. When true the call must fail: the last error is set, and the memory that it
/// was to fill holds garbage.
bool Fails(const char* function, void* memory = nullptr, std::size_t size = 0);

/// What a failing call may leave in memory whose content Windows does not define.
void FillWithGarbage(void* memory, std::size_t size);

/// Writes a text with its NUL; false, and garbage, when the buffer is too small.
bool Give(std::string_view text, char* buffer, std::size_t size);

extern thread_local DWORD lastError;

/// Sets the last error and passes the function's own sign of failure on.
template <typename Result>
Result Refuse(DWORD code, Result result) {
    lastError = code;
    return result;
}

}  // namespace stand_in

#endif
