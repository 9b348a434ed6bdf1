// The calls that the platform gets, the planned fault, and the open handles.
#ifndef QBSUPPORT_STAND_IN_CALLS_H
#define QBSUPPORT_STAND_IN_CALLS_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

#include "platform/windows_api.h"

namespace stand_in {

/// The number of calls since the last reset, of all functions or of the one with this name.
/// Functions that cannot fail count too.
std::uint64_t CallsMade();
std::uint64_t CallsMade(std::string_view function);

/// Forgets the calls made, the planned fault and the handle misuses.
void ResetCalls();

enum class FaultMode { Once, FromThenOn };

/// Resets the calls and makes the call with this number fail, where 1 is the next one. A function
/// that cannot fail works nevertheless.
void PlanFault(std::uint64_t number, FaultMode mode);

/// A call that failed as planned. `ordinal` counts the calls of its function from 1.
struct FailedCall {
    std::string_view function;
    std::uint64_t ordinal;
};

/// The first since the fault was planned. Faults work for a single thread only.
const std::optional<FailedCall>& FirstFailedCall();

/// If set, runs before each call is answered, so that a test can change the machine between two
/// calls. `ordinal` counts the calls of the function from 1.
extern std::function<void(std::string_view function, std::uint64_t ordinal)> beforeCall;

/// The number of open keys, snapshots and device contexts.
int OpenHandles();

/// How often a handle was used or released that was not open or was of another kind.
int HandleMisuses();

// For the functions of the platform, which pass __func__ as their name:

/// Counts one call of a function that cannot fail.
void Count(const char* function);

/// Counts one call. If the result is true, the call must fail: the last error is set, and the
/// memory that the call is expected to fill contains garbage.
bool Fails(const char* function, void* memory = nullptr, std::size_t size = 0);

/// Fills memory with what a failing call may leave there if Windows does not define it.
void FillWithGarbage(void* memory, std::size_t size);

/// Writes a text with its NUL. Returns false, and leaves garbage, if the buffer is too small.
bool Give(std::string_view text, char* buffer, std::size_t size);

extern thread_local DWORD lastError;

/// Sets the last error and returns `result`, with which the function shows that it failed.
template <typename Result>
Result Refuse(DWORD code, Result result) {
    lastError = code;
    return result;
}

}  // namespace stand_in

#endif
