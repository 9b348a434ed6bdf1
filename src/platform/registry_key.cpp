#include "platform/registry_key.h"

#include <algorithm>
#include <cstring>

namespace qb_support {

bool CRegistryKey::QueryText(const char* valueName, TextBuffer& text, DWORD& type) const {
    std::memset(text, 0, sizeof(text));
    DWORD size = kLongestText;
    const LSTATUS status =
        RegQueryValueExA(m_key, valueName, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
    const bool found = status == ERROR_SUCCESS;
    text[found ? std::min(size, kLongestText) : 0] = '\0';
    return found;
}

bool CRegistryKey::QueryNumber(const char* valueName, DWORD& number, DWORD& type) const {
    number = 0;
    DWORD size = sizeof(number);
    return RegQueryValueExA(m_key, valueName, nullptr, &type, reinterpret_cast<BYTE*>(&number),
                            &size) == ERROR_SUCCESS;
}

}  // namespace qb_support
