// An open registry key.
#ifndef QBSUPPORT_PLATFORM_REGISTRY_KEY_H
#define QBSUPPORT_PLATFORM_REGISTRY_KEY_H

#include "platform/windows_api.h"

namespace qb_support {

// Opens a key, and closes it at the end of its life. It asks for no registry view, so that it reads
// the process's own.
class CRegistryKey {
public:
    // The size of the longest value that is read as a text, including its terminator.
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

    // Reads a value of at most 255 bytes into `text`, and its type. A terminator is added, because
    // the registry stores any bytes, with or without one. Returns false, with an empty text, if the
    // value is missing or longer.
    bool QueryText(const char* valueName, TextBuffer& text, DWORD& type) const;

    // Reads a value of at most 4 bytes, and its type. If it has fewer bytes, the others are zero.
    // Returns false if the value is missing or longer.
    bool QueryNumber(const char* valueName, DWORD& number, DWORD& type) const;

private:
    HKEY m_key = nullptr;
    bool m_open;
};

}  // namespace qb_support

#endif
