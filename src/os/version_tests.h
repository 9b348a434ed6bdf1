// The running Windows version, found by yes/no questions to the platform's version comparison.
//
// The answers are those that the platform gives to this process. From Windows 8.1 on it tells a
// host the newest system that the application manifest names as supported: 6.2 without a manifest,
// 6.3 with one that stops at 8.1.
#ifndef QBSUPPORT_OS_VERSION_TESTS_H
#define QBSUPPORT_OS_VERSION_TESTS_H

#include <cstdint>

#include "platform/windows_api.h"

namespace qb_support {

// Tries the known versions in the table's order. Fills the record and returns true, or returns
// false, with a record of zeros, when the system is none of them.
bool DetectVersionFromTable(OSVERSIONINFOEXA& version);

// Walks the versions 6.3 to 6.5, and 7 to 10 with a minor version of 0 to 5, likewise. A service
// pack other than 1 to 4 is recorded as 0.
bool DetectVersionByScan(OSVERSIONINFOEXA& version);

// VER_NT_WORKSTATION, VER_NT_SERVER or VER_NT_DOMAIN_CONTROLLER; 0 when the system denies all.
std::uint8_t DetectProductType();

// The VER_SUITE_ bits that the system confirms, of the thirteen that are asked for. They are asked
// for by equality, which systems may refuse for suites: none is confirmed then.
std::uint16_t DetectSuiteMask();

// The build number; 0 when it is 1,000,000 or more, or the system confirms none.
std::uint32_t DetectBuildNumber();

}  // namespace qb_support

#endif
