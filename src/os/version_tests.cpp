#include "os/version_tests.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"

namespace qb_support {

namespace {

struct KnownVersion {
    DWORD major;
    DWORD minor;
    WORD servicePack;
};

// In the order in which they are tried.
constexpr KnownVersion KnownVersionTable[] = {
    {10, 0, 0}, {6, 3, 0}, {6, 2, 0}, {6, 1, 1}, {6, 1, 0}, {5, 1, 3}, {5, 1, 2},
    {5, 1, 1},  {5, 1, 0}, {6, 0, 2}, {6, 0, 1}, {6, 0, 0}, {5, 2, 2}, {5, 2, 1},
    {5, 2, 0},  {5, 0, 4}, {5, 0, 3}, {5, 0, 2}, {5, 0, 1}, {5, 0, 0},
};

constexpr WORD kSuites[] = {
    VER_SUITE_BACKOFFICE,     VER_SUITE_BLADE,
    VER_SUITE_COMPUTE_SERVER, VER_SUITE_DATACENTER,
    VER_SUITE_ENTERPRISE,     VER_SUITE_EMBEDDEDNT,
    VER_SUITE_PERSONAL,       VER_SUITE_SINGLEUSERTS,
    VER_SUITE_SMALLBUSINESS,  VER_SUITE_SMALLBUSINESS_RESTRICTED,
    VER_SUITE_STORAGE_SERVER, VER_SUITE_TERMINAL,
    VER_SUITE_WH_SERVER,
};

constexpr BYTE kProductTypes[] = {VER_NT_WORKSTATION, VER_NT_SERVER, VER_NT_DOMAIN_CONTROLLER};

// The search for the build number starts with coarse steps and stops at the limit.
constexpr DWORD kBuildSteps[] = {100000, 10000, 7000, 1000, 500, 100, 50, 10};
constexpr DWORD kBuildLimit = 1000000;

// Asks whether one field of the running system's version meets `condition` compared with `value`,
// and returns the platform's answer, which is 0 for no. The callers below count only 1 as yes for
// suites and builds, and any other answer than 0 for the other fields.
template <typename Field>
BOOL Ask(Field OSVERSIONINFOEXA::* field, Field value, DWORD fieldBit, BYTE condition) {
    OSVERSIONINFOEXA probe{};
    probe.dwOSVersionInfoSize = sizeof(probe);
    probe.*field = value;
    return VerifyVersionInfoA(&probe, fieldBit, VerSetConditionMask(0, fieldBit, condition));
}

bool IsMajorVersion(DWORD major) {
    return Ask(&OSVERSIONINFOEXA::dwMajorVersion, major, VER_MAJORVERSION, VER_EQUAL) != 0;
}

bool IsMinorVersion(DWORD minor) {
    return Ask(&OSVERSIONINFOEXA::dwMinorVersion, minor, VER_MINORVERSION, VER_EQUAL) != 0;
}

bool IsServicePack(WORD servicePack) {
    return Ask(&OSVERSIONINFOEXA::wServicePackMajor, servicePack, VER_SERVICEPACKMAJOR,
               VER_EQUAL) != 0;
}

bool IsProductType(BYTE productType) {
    return Ask(&OSVERSIONINFOEXA::wProductType, productType, VER_PRODUCT_TYPE, VER_EQUAL) != 0;
}

bool HasSuite(WORD suite) {
    return Ask(&OSVERSIONINFOEXA::wSuiteMask, suite, VER_SUITENAME, VER_EQUAL) == 1;
}

bool IsBuildGreater(DWORD build) {
    return Ask(&OSVERSIONINFOEXA::dwBuildNumber, build, VER_BUILDNUMBER, VER_GREATER) == 1;
}

bool IsBuildEqual(DWORD build) {
    return Ask(&OSVERSIONINFOEXA::dwBuildNumber, build, VER_BUILDNUMBER, VER_EQUAL) == 1;
}

bool IsRunning(const KnownVersion& known) {
    return IsMajorVersion(known.major) && IsMinorVersion(known.minor) &&
           IsServicePack(known.servicePack);
}

bool FindVersionByScan(DWORD& major, DWORD& minor) {
    for (major = 6; major <= 10; ++major) {
        if (!IsMajorVersion(major)) {
            continue;
        }
        // The table has the versions 6.0 to 6.2.
        for (minor = major == 6 ? 3 : 0; minor <= 5; ++minor) {
            if (IsMinorVersion(minor)) {
                return true;
            }
        }
    }
    return false;
}

WORD FindServicePack() {
    for (WORD servicePack = 1; servicePack <= 4; ++servicePack) {
        if (IsServicePack(servicePack)) {
            return servicePack;
        }
    }
    return 0;
}

// Fills the fields that both searches find in the same way. The service pack must be filled
// already.
void CompleteRecord(OSVERSIONINFOEXA& version) {
    version.wSuiteMask = DetectSuiteMask();
    version.dwBuildNumber = DetectBuildNumber();
    if (version.wServicePackMajor != 0) {
        CText servicePack("Service Pack ");
        servicePack << version.wServicePackMajor;
        std::memcpy(version.szCSDVersion, servicePack.CStr(), servicePack.Size());
    }
    version.dwPlatformId = VER_PLATFORM_WIN32_NT;
}

}  // namespace

bool DetectVersionFromTable(OSVERSIONINFOEXA& version) {
    version = {};
    const auto* const match = std::ranges::find_if(KnownVersionTable, IsRunning);
    if (match == std::end(KnownVersionTable)) {
        return false;
    }
    version.dwMajorVersion = match->major;
    version.dwMinorVersion = match->minor;
    version.wServicePackMajor = match->servicePack;
    version.wProductType = DetectProductType();
    CompleteRecord(version);
    return true;
}

bool DetectVersionByScan(OSVERSIONINFOEXA& version) {
    version = {};
    DWORD major = 0;
    DWORD minor = 0;
    if (!FindVersionByScan(major, minor)) {
        return false;
    }
    version.dwMajorVersion = major;
    version.dwMinorVersion = minor;
    version.wProductType = DetectProductType();
    version.wServicePackMajor = FindServicePack();
    CompleteRecord(version);
    return true;
}

std::uint8_t DetectProductType() {
    for (const BYTE productType : kProductTypes) {
        if (IsProductType(productType)) {
            return productType;
        }
    }
    return 0;
}

std::uint16_t DetectSuiteMask() {
    WORD mask = 0;
    for (const WORD suite : kSuites) {
        if (HasSuite(suite)) {
            mask = static_cast<WORD>(mask | suite);
        }
    }
    return mask;
}

std::uint32_t DetectBuildNumber() {
    DWORD base = 0;
    for (const DWORD step : kBuildSteps) {
        while (IsBuildGreater(base + step)) {
            if (base > kBuildLimit) {
                return 0;
            }
            base += step;
        }
    }
    // If the system's answers are consistent, the number is now at most ten above the base.
    for (; base < kBuildLimit; ++base) {
        if (IsBuildEqual(base)) {
            return base;
        }
    }
    return 0;
}

}  // namespace qb_support
