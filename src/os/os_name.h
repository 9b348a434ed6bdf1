// The texts that name the running Windows.
#ifndef QBSUPPORT_OS_OS_NAME_H
#define QBSUPPORT_OS_OS_NAME_H

#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

// Composes the names of the Windows that `version` describes:
//   displayName      "Microsoft " and the release name, which may be empty
//   editionText      the product edition (see GetOsEdition)
//   productName      the registry's own name for the product
//   editionId        the registry's own identifier of the edition
//   wordSize         "64-bit", "32-bit" or empty
//   displayVersion   the registry's label of the feature update
//   updateRevision   the registry's revision number of the latest update
// A text from the registry is empty if the registry does not have it. Returns false, with an empty
// display name and word size, for a system that is older than 5.0 or not of the NT family.
bool ComposeOsName(OSVERSIONINFOEXA version, CText& displayName, CText& editionText,
                   CText& productName, CText& editionId, CText& wordSize, CText& displayVersion,
                   CText& updateRevision);

}  // namespace qb_support

#endif
