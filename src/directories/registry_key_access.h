// How far the calling user can open a registry key.
#ifndef QBSUPPORT_DIRECTORIES_REGISTRY_KEY_ACCESS_H
#define QBSUPPORT_DIRECTORIES_REGISTRY_KEY_ACCESS_H

#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

// "(RO)", "(RW)" or "(RWA)" for the widest of reading, reading and writing, and all access with
// which the key `path` under the predefined key `root` opens; "(N/A)" when it opens with none.
Text RegistryKeyAccessText(HKEY root, const Text& path);

}  // namespace qb_support

#endif
