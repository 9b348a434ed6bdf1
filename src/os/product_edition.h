// The product edition of the running Windows.
#ifndef QBSUPPORT_OS_PRODUCT_EDITION_H
#define QBSUPPORT_OS_PRODUCT_EDITION_H

#include <cstdint>

#include "core/text.h"

namespace qb_support {

// Gets the edition of the running Windows, whose version is `majorVersion`.`minorVersion`.
// `editionId` is its identifier in the registry. `editionText` is the text for the product type
// that the system reports, or that identifier if the product type has no text here. Either may be
// empty. Always returns true.
bool GetOsEdition(std::uint32_t majorVersion, std::uint32_t minorVersion, CText& editionText,
                  CText& editionId);

}  // namespace qb_support

#endif
