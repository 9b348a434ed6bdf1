#include <utility>

#include "stand_in/calls.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

bool Holds(unsigned condition, DWORD actual, DWORD asked, bool isSuite) {
    // Compares only the suites that are asked about. Windows may refuse VER_EQUAL for suites.
    actual = isSuite ? actual & asked : actual;
    return condition == VER_EQUAL ? actual == asked
                                  : condition == VER_GREATER && !isSuite && actual > asked;
}

}  // namespace

// The mask has three bits for each type bit, starting with the lowest.
ULONGLONG VerSetConditionMask(ULONGLONG mask, DWORD typeBit, BYTE condition) {
    Count(__func__);
    return mask | ULONGLONG{condition} << __builtin_ctz(typeBit) * 3;
}

BOOL VerifyVersionInfoA(OSVERSIONINFOEXA* probe, DWORD typeBit, DWORDLONG conditions) {
    if (Fails(__func__)) {
        return FALSE;
    }
    if (probe->dwOSVersionInfoSize != sizeof *probe) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
    }
    const Version& version = CurrentMachine().version;
    const std::pair<DWORD, DWORD> actualAndAsked[] = {
        {version.minor, probe->dwMinorVersion},
        {version.major, probe->dwMajorVersion},
        {version.build, probe->dwBuildNumber},
        {VER_PLATFORM_WIN32_NT, probe->dwPlatformId},
        {version.servicePackMinor, probe->wServicePackMinor},
        {version.servicePackMajor, probe->wServicePackMajor},
        {version.suiteMask, probe->wSuiteMask},
        {version.productType, probe->wProductType}};
    const int bit = __builtin_ctz(typeBit);
    const auto [actual, asked] = actualAndAsked[bit];
    return Holds(conditions >> bit * 3 & 7, actual, asked, typeBit == VER_SUITENAME)
               ? TRUE
               : Refuse(ERROR_OLD_WIN_VERSION, FALSE);
}
