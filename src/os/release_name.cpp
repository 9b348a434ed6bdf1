#include "os/release_name.h"

namespace qb_support {

namespace {

// All product types but this one get the names of servers.
bool IsWorkstation(const OSVERSIONINFOEXA& version) {
    return version.wProductType == VER_NT_WORKSTATION;
}

bool HasSuite(const OSVERSIONINFOEXA& version, WORD suite) {
    return (version.wSuiteMask & suite) != 0;
}

// Only two builds of servers below 22000 have a name, and all servers from there on have the same
// one. That is intended: a newer server gets no name of its own here.
std::string_view Version10Name(const OSVERSIONINFOEXA& version) {
    const bool workstation = IsWorkstation(version);
    if (version.dwBuildNumber >= 22000) {
        return workstation ? "Windows 11" : "Windows Server 2022";
    }
    if (version.dwMinorVersion != 0) {
        return workstation ? "Windows 10+" : "Windows Server 2016+";
    }
    if (workstation) {
        return "Windows 10";
    }
    switch (version.dwBuildNumber) {
        case 14393:
            return "Windows Server 2016";
        case 17763:
            return "Windows Server 2019";
        default:
            return "";
    }
}

std::string_view Version6Name(const OSVERSIONINFOEXA& version) {
    const bool workstation = IsWorkstation(version);
    switch (version.dwMinorVersion) {
        case 0:
            return workstation ? "Windows Vista" : "Windows Server 2008";
        case 1:
            return workstation ? "Windows 7" : "Windows Server 2008 R2";
        case 2:
            return workstation ? "Windows 8" : "Windows Server 2012";
        case 3:
            return workstation ? "Windows 8.1" : "Windows Server 2012 R2";
        default:
            return workstation ? "Windows 8.1+" : "Windows Server 2012 R2+";
    }
}

std::string_view Windows2000Name(const OSVERSIONINFOEXA& version) {
    if (IsWorkstation(version)) {
        return "Windows 2000 Professional";
    }
    if (HasSuite(version, VER_SUITE_DATACENTER)) {
        return "Windows 2000 Datacenter Server";
    }
    return HasSuite(version, VER_SUITE_ENTERPRISE) ? "Windows 2000 Advanced Server"
                                                   : "Windows 2000 Server";
}

std::string_view Server2003Edition(const OSVERSIONINFOEXA& version, WORD architecture) {
    const bool datacenter = HasSuite(version, VER_SUITE_DATACENTER);
    const bool enterprise = HasSuite(version, VER_SUITE_ENTERPRISE);
    if (architecture == PROCESSOR_ARCHITECTURE_IA64) {
        return datacenter   ? "Datacenter Edition for Itanium-based Systems"
               : enterprise ? "Enterprise Edition for Itanium-based Systems"
                            : "";
    }
    if (architecture == PROCESSOR_ARCHITECTURE_AMD64) {
        return datacenter   ? "Datacenter x64 Edition"
               : enterprise ? "Enterprise x64 Edition"
                            : "Standard x64 Edition";
    }
    if (HasSuite(version, VER_SUITE_COMPUTE_SERVER)) {
        return "Compute Cluster Edition";
    }
    return datacenter                           ? "Datacenter Edition"
           : enterprise                         ? "Enterprise Edition"
           : HasSuite(version, VER_SUITE_BLADE) ? "Web Edition"
                                                : "Standard Edition";
}

// The base name of version 5.2. The last one ends in a separator. It is intended that workstations,
// which get no edition after it, keep this separator.
std::string_view Server2003BaseName(const OSVERSIONINFOEXA& version, WORD architecture) {
    if (GetSystemMetrics(SM_SERVERR2) != 0) {
        return "Windows Server 2003 R2";
    }
    if (version.wSuiteMask == VER_SUITE_STORAGE_SERVER) {
        return "Windows Storage Server 2003";
    }
    if (IsWorkstation(version) && architecture == PROCESSOR_ARCHITECTURE_AMD64) {
        return "Windows XP Professional x64 Edition";
    }
    return "Windows Server 2003, ";
}

void AppendServer2003Name(CText& name, const OSVERSIONINFOEXA& version, WORD architecture) {
    constexpr std::string_view kSeparator = ", ";
    std::string_view base = Server2003BaseName(version, architecture);
    if (IsWorkstation(version)) {
        name << base;
        return;
    }
    if (base.ends_with(kSeparator)) {
        base.remove_suffix(kSeparator.size());
    }
    name << base;
    const std::string_view edition = Server2003Edition(version, architecture);
    if (!edition.empty()) {
        name << kSeparator << edition;
    }
}

void AppendVersion5Name(CText& name, const OSVERSIONINFOEXA& version, WORD architecture) {
    switch (version.dwMinorVersion) {
        case 0:
            name << Windows2000Name(version);
            break;
        case 1:
            name << (HasSuite(version, VER_SUITE_PERSONAL) ? "Windows XP Home Edition"
                                                           : "Windows XP Professional");
            break;
        case 2:
            AppendServer2003Name(name, version, architecture);
            break;
        default:
            break;
    }
}

}  // namespace

void AppendReleaseName(CText& name, const OSVERSIONINFOEXA& version, WORD architecture) {
    switch (version.dwMajorVersion) {
        case 10:
            name << Version10Name(version);
            break;
        case 6:
            name << Version6Name(version);
            break;
        case 5:
            AppendVersion5Name(name, version, architecture);
            break;
        default:
            break;
    }
}

std::string_view WordSize(const OSVERSIONINFOEXA& version, WORD architecture) {
    const DWORD major = version.dwMajorVersion;
    if (major != 5 && major != 6 && major != 10) {
        return "";
    }
    switch (architecture) {
        case PROCESSOR_ARCHITECTURE_AMD64:
            return "64-bit";
        case PROCESSOR_ARCHITECTURE_INTEL:
            return "32-bit";
        default:
            return "";
    }
}

}  // namespace qb_support
