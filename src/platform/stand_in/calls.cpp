#include "platform/stand_in/calls.h"

#include <array>
#include <atomic>
#include <cstring>

#include "platform/stand_in/handles.h"
#include "platform/stand_in/kernel.h"

namespace stand_in {
namespace {

constexpr auto callNames = std::to_array<const char*>({
    "VerSetConditionMask",
    "VerifyVersionInfoA",
    "GetModuleHandleA",
    "LoadLibraryA",
    "GetProcAddress",
    "GetSystemInfo",
    "GetNativeSystemInfo",
    "GetProductInfo",
    "GlobalMemoryStatusEx",
    "GetCurrentProcess",
    "GetCurrentProcessId",
    "GetProcessMemoryInfo",
    "GetUserNameExA",
    "GetTimeZoneInformation",
    "GetSystemDefaultLangID",
    "VerLanguageNameA",
    "GetLocaleInfoA",
    "CreateToolhelp32Snapshot",
    "Module32First",
    "Module32Next",
    "Process32First",
    "Process32Next",
    "CloseHandle",
    "GetLastError",
    "FormatMessageA",
    "GetFileVersionInfoSizeA",
    "GetFileVersionInfoA",
    "VerQueryValueA",
    "GetSystemDirectoryA",
    "GetWindowsDirectoryA",
    "GetTempPathA",
    "GetModuleFileNameA",
    "GetCurrentDirectoryA",
    "GetFileAttributesA",
    "RegOpenKeyExA",
    "RegQueryValueExA",
    "RegCloseKey",
    "GetSystemMetrics",
    "GetDC",
    "ReleaseDC",
    "GetDeviceCaps",
    "EnumDisplayMonitors",
    "GetMonitorInfoA",
    "_time64",
    "_ctime64",
    "_tzset",
    "getenv",
    "setlocale",
});
static_assert(callNames.size() == platformCallKinds);
static_assert(static_cast<std::size_t>(PlatformCall::Setlocale) + 1 == platformCallKinds);

// Orders nothing but itself: each counter is read on its own.
constexpr auto relaxed = std::memory_order_relaxed;

std::array<std::atomic<std::uint64_t>, platformCallKinds> callsByKind;
std::atomic<std::uint64_t> callsMade;
std::atomic<std::uint64_t> firstFault;
std::atomic<std::uint64_t> lastFault;

thread_local DWORD lastError = 0;

std::uint64_t NextCallNumber(PlatformCall call) {
    callsByKind[static_cast<std::size_t>(call)].fetch_add(1, relaxed);
    return callsMade.fetch_add(1, relaxed) + 1;
}

}  // namespace

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
    firstFault.store(number, relaxed);
    lastFault.store(mode == FaultMode::Once ? number : UINT64_MAX, relaxed);
}

void CountCall(PlatformCall call) {
    NextCallNumber(call);
}

bool CallFails(PlatformCall call) {
    const std::uint64_t number = NextCallNumber(call);
    if (number < firstFault.load(relaxed) || number > lastFault.load(relaxed)) {
        return false;
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
