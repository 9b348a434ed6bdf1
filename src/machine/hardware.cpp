// The Hardware section: the first processor as the registry describes it, and how many there are.
#include "core/collector.h"
#include "platform/registry_key.h"
#include "platform/system_info.h"

namespace qb_support {

namespace {

constexpr char kProcessorKey[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

// Reads the bytes of a value up to the first NUL as text, whatever the type of the value.
bool ReadValue(const CRegistryKey& key, const char* name, CText& text) {
    CRegistryKey::TextBuffer buffer;
    DWORD type = REG_NONE;
    if (!key.QueryText(name, buffer, type)) {
        return false;
    }
    text.Clear();
    text << buffer;
    return true;
}

// Tries to read all three values of an open processor key. Returns false if one of them is missing
// or longer than 255 bytes.
bool ReadProcessorDescription(const CRegistryKey& key, CText& name, CText& identifier,
                              CText& vendor) {
    const bool hasName = ReadValue(key, "ProcessorNameString", name);
    const bool hasIdentifier = ReadValue(key, "Identifier", identifier);
    const bool hasVendor = ReadValue(key, "VendorIdentifier", vendor);
    return hasName && hasIdentifier && hasVendor;
}

}  // namespace

bool CQbSupportWindows::GetHardwareInfo(CText& result) {
    const SYSTEM_INFO system = QuerySystemInfo();
    CQbSupport::GetHardwareInfo(result);

    CText name;
    CText identifier;
    CText vendor;
    {
        const CRegistryKey key(HKEY_LOCAL_MACHINE, kProcessorKey, KEY_READ);
        if (key.IsOpen() && !ReadProcessorDescription(key, name, identifier, vendor)) {
            return false;
        }
    }

    // The first three labels do not describe their values. This is intended, because support staff
    // know the report this way.
    result << m_indent << "CPU Architecture:  " << name << '\n'
           << m_indent << "CPU Type:          " << identifier << '\n'
           << m_indent << "CPU Level:         " << vendor << '\n'
           << m_indent
           << "Number of CPUs:    " << static_cast<std::int32_t>(system.dwNumberOfProcessors)
           << '\n';
    if (m_separator) {
        result << '\n';
    }
    return true;
}

}  // namespace qb_support
