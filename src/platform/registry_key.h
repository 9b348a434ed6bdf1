// An open registry key.
#ifndef QBSUPPORT_PLATFORM_REGISTRY_KEY_H
#define QBSUPPORT_PLATFORM_REGISTRY_KEY_H

#include "platform/windows_api.h"

namespace qb_support {

// Opens a key and closes it again. No registry view is asked for: the process's own is read.
class CRegistryKey {
public:
    // The longest value that is read, its terminator included, as a registry text.
    static constexpr DWORD kLongestText = 255;
    using TextBuffer = char[kLongestText + 1];

    CRegistryKey(HKEY root, const char* path, REGSAM access)
        : m_open(RegOpenKeyExA(root, path, 0, access, &m_key) == ERROR_SUCCESS) {}
    CRegistryKey(const CRegistryKey&) = delete;
    CRegistryKey& operator=(const CRegistryKey&) = delete;
    ~CRegistryKey() {
        if (m_open) {
            RegCloseKey(m_key);
        }
    }

    [[nodiscard]] bool IsOpen() const { return m_open; }

    // Reads a value of at most 255 bytes, and its type, into `text`. The registry stores whatever
    // bytes it was given, with or without a terminator: one is put behind what came back. Returns
    // false, with an empty text, when the value is missing or longer.
    bool QueryText(const char* valueName, TextBuffer& text, DWORD& type) const;

    // Reads a value of at most 4 bytes, and its type; bytes that it lacks are zero. Returns false
    // when it is missing or longer.
    bool QueryNumber(const char* valueName, DWORD& number, DWORD& type) const;

private:
    HKEY m_key = nullptr;
    bool m_open;
};

}  // namespace qb_support

#endif
