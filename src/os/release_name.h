// The marketing name of a Windows release.
#ifndef QBSUPPORT_OS_RELEASE_NAME_H
#define QBSUPPORT_OS_RELEASE_NAME_H

#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

// Appends the name of the release that `version` describes, without "Microsoft", to `name`, or
// nothing if the release has no name here. `architecture` is a PROCESSOR_ARCHITECTURE_ value.
void AppendReleaseName(CText& name, const OSVERSIONINFOEXA& version, WORD architecture);

// "64-bit" or "32-bit"; empty for another architecture or a major version without names.
std::string_view WordSize(const OSVERSIONINFOEXA& version, WORD architecture);

}  // namespace qb_support

#endif
