#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

namespace {

// One condition of three bits for every type bit, the lowest type bit first.
constexpr int typeBitCount = 8;
constexpr int conditionBits = 3;
constexpr DWORD conditionMask = 7;

bool Holds(DWORD condition, DWORD actual, DWORD asked) {
    switch (condition) {
        case VER_EQUAL:
            return actual == asked;
        case VER_GREATER:
            return actual > asked;
        case VER_GREATER_EQUAL:
            return actual >= asked;
        case VER_LESS:
            return actual < asked;
        case VER_LESS_EQUAL:
            return actual <= asked;
        default:
            return false;
    }
}

/// Answers for the suites asked about and no others; equality too, which Windows may refuse.
bool SuiteHolds(DWORD condition, DWORD actual, DWORD asked) {
    switch (condition) {
        case VER_EQUAL:
        case VER_AND:
            return (actual & asked) == asked;
        case VER_OR:
            return (actual & asked) != 0;
        default:
            return false;
    }
}

}  // namespace

ULONGLONG VerSetConditionMask(ULONGLONG mask, DWORD typeBits, BYTE condition) {
    CountCall(PlatformCall::VerSetConditionMask);
    for (int bit = typeBitCount - 1; bit >= 0; --bit) {
        if (typeBits >> bit & 1) {
            return mask | ULONGLONG{condition & conditionMask} << bit * conditionBits;
        }
    }
    return mask;
}

BOOL VerifyVersionInfoA(OSVERSIONINFOEXA* probe, DWORD typeBits, DWORDLONG conditions) {
    if (CallFails(PlatformCall::VerifyVersionInfoA)) {
        return FALSE;
    }
    if (!probe || probe->dwOSVersionInfoSize != sizeof *probe || typeBits == 0 ||
        typeBits >> typeBitCount != 0) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
    }
    const Version& version = CurrentMachine().version;
    const DWORD actual[typeBitCount] = {version.minor,
                                        version.major,
                                        version.build,
                                        VER_PLATFORM_WIN32_NT,
                                        version.servicePackMinor,
                                        version.servicePackMajor,
                                        version.suiteMask,
                                        version.productType};
    const DWORD asked[typeBitCount] = {probe->dwMinorVersion,    probe->dwMajorVersion,
                                       probe->dwBuildNumber,     probe->dwPlatformId,
                                       probe->wServicePackMinor, probe->wServicePackMajor,
                                       probe->wSuiteMask,        probe->wProductType};
    for (int bit = 0; bit < typeBitCount; ++bit) {
        const DWORD type = typeBits & 1u << bit;
        if (type == 0) {
            continue;
        }
        const DWORD condition =
            static_cast<DWORD>(conditions >> bit * conditionBits) & conditionMask;
        if (condition == 0) {
            return Refuse(ERROR_INVALID_PARAMETER, FALSE);
        }
        const bool holds = type == VER_SUITENAME ? SuiteHolds(condition, actual[bit], asked[bit])
                                                 : Holds(condition, actual[bit], asked[bit]);
        if (!holds) {
            return Refuse(ERROR_OLD_WIN_VERSION, FALSE);
        }
    }
    return TRUE;
}
