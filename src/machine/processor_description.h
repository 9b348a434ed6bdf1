// The processor as the registry describes it.
#ifndef QBSUPPORT_MACHINE_PROCESSOR_DESCRIPTION_H
#define QBSUPPORT_MACHINE_PROCESSOR_DESCRIPTION_H

#include "core/text.h"
#include "platform/registry_key.h"

namespace qb_support {

// Reads the three values of an open processor key. All are attempted; one that is missing or longer
// than 255 bytes leaves its text as it was. Returns true when all three were read.
bool ReadProcessorDescription(const RegistryKey& key, Text& name, Text& identifier, Text& vendor);

}  // namespace qb_support

#endif
