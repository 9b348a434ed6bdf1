// The product edition of the running Windows.
#ifndef QBSUPPORT_OS_PRODUCT_EDITION_H
#define QBSUPPORT_OS_PRODUCT_EDITION_H

#include <cstdint>

#include "core/text.h"

namespace qb_support {

// Names the edition of Windows `majorVersion`.`minorVersion`: `editionText` from the product type
// that the system reports, or the registry's identifier for a type that has no text here;
// `editionId` is that identifier itself. Either may be empty. Always returns true.
bool GetOsEdition(std::uint32_t majorVersion, std::uint32_t minorVersion, CText& editionText,
                  CText& editionId);

}  // namespace qb_support

#endif
