#include "os/registry_values.h"

#include <limits>

#include "platform/registry_key.h"

namespace qb_support {

bool ReadRegistryString(const char* keyPath, const char* valueName, CText& text) {
    text.Clear();
    const CRegistryKey key(HKEY_LOCAL_MACHINE, keyPath, KEY_READ);
    if (!key.IsOpen()) {
        return false;
    }
    CRegistryKey::TextBuffer buffer;
    DWORD type = REG_NONE;
    if (!key.QueryText(valueName, buffer, type) || type != REG_SZ) {
        return false;
    }
    text << buffer;
    return true;
}

bool ReadRegistryDword(const char* keyPath, const char* valueName, std::uint32_t& number) {
    number = std::numeric_limits<std::uint32_t>::max();
    const CRegistryKey key(HKEY_LOCAL_MACHINE, keyPath, KEY_READ);
    if (!key.IsOpen()) {
        return false;
    }
    DWORD value = 0;
    DWORD type = REG_NONE;
    if (!key.QueryNumber(valueName, value, type) || type != REG_DWORD) {
        return false;
    }
    number = value;
    return true;
}

}  // namespace qb_support
