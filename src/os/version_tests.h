// The running Windows version, found by yes/no questions to the platform's version comparison.
//
// The answers are those that the platform gives to this process: a host whose application manifest
// does not name the running system as supported is told 6.2 from Windows 8.1 on.
#ifndef QBSUPPORT_OS_VERSION_TESTS_H
#define QBSUPPORT_OS_VERSION_TESTS_H

#include <cstdint>

#include "platform/windows_api.h"

namespace qb_support {

// Tries the known versions in the table's order. Fills the record and returns true, or returns
// false, with a record of zeros, when the system is none of them.
bool DetectVersionFromTable(OSVERSIONINFOEXA& version);

// Walks the versions 6.3 to 10.5, with any service pack up to 4, likewise.
bool DetectVersionByScan(OSVERSIONINFOEXA& version);

// VER_NT_WORKSTATION, VER_NT_SERVER or VER_NT_DOMAIN_CONTROLLER; 0 when the system denies all.
std::uint8_t DetectProductType();

// The VER_SUITE_ bits that the system confirms, of the thirteen that are asked for.
std::uint16_t DetectSuiteMask();

// The build number; 0 when it is 1,000,000 or more, or the system confirms none.
std::uint32_t DetectBuildNumber();

}  // namespace qb_support

#endif
