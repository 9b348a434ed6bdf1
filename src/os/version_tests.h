// The running Windows version, found by yes/no questions to the platform's version comparison.
//
// From Windows 8.1 on, the answers depend on the manifest of the host's program. If the manifest
// names Windows 10, they are true. If it names 8.1 but not 10, they are at most 6.3. If it names
// neither, or if there is no manifest, they are 6.2, even if it names Windows 7.
#ifndef QBSUPPORT_OS_VERSION_TESTS_H
#define QBSUPPORT_OS_VERSION_TESTS_H

#include <cstdint>

#include "platform/windows_api.h"

namespace qb_support {

// Tries the versions of a table. Fills the record and returns true, or returns false, with a record
// of zeros, if the system has none of these versions.
bool DetectVersionFromTable(OSVERSIONINFOEXA& version);

// Tries the versions 6.3 to 6.5, and 7 to 10 with the minor versions 0 to 5, in the same way. A
// service pack other than 1 to 4 is recorded as 0.
bool DetectVersionByScan(OSVERSIONINFOEXA& version);

// VER_NT_WORKSTATION, VER_NT_SERVER or VER_NT_DOMAIN_CONTROLLER; 0 if the system denies
// all three.
std::uint8_t DetectProductType();

// The VER_SUITE_ bits that the system confirms, of the thirteen that are tried. The condition of
// the tests is VER_EQUAL, which Windows does not document for suites. A system that refuses it
// confirms none.
std::uint16_t DetectSuiteMask();

// The build number, or 0 if it is 1,000,000 or more or if the system confirms none.
std::uint32_t DetectBuildNumber();

}  // namespace qb_support

#endif
