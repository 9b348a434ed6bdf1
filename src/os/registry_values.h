// The values that Windows records about itself in the registry.
#ifndef QBSUPPORT_OS_REGISTRY_VALUES_H
#define QBSUPPORT_OS_REGISTRY_VALUES_H

#include <cstdint>

#include "core/text.h"

namespace qb_support {

// The key under HKEY_LOCAL_MACHINE that describes the installed Windows.
inline constexpr char kCurrentVersionKey[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";

// Reads the text value `valueName` of the key `keyPath` under HKEY_LOCAL_MACHINE into `text`.
// Returns false, with an empty text, if it is missing, not of the type REG_SZ, or longer than 255
// bytes including its terminator.
bool ReadRegistryString(const char* keyPath, const char* valueName, CText& text);

// Reads the 32-bit value in the same way. Returns false, with 0xFFFFFFFF, if it is missing, not of
// the type REG_DWORD, or longer than 4 bytes.
bool ReadRegistryDword(const char* keyPath, const char* valueName, std::uint32_t& number);

}  // namespace qb_support

#endif
