// The Hardware section: the first processor as the registry describes it, and how many there are.
#include "core/collector.h"
#include "platform/registry_key.h"
#include "platform/system_info.h"

namespace qb_support {

namespace {

constexpr char kProcessorKey[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

// Whatever the value's type, its bytes up to the first NUL are taken as text.
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

// Attempts all three values of an open processor key. One that is missing or longer than 255 bytes
// leaves its text as it was. True when all three were read.
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

    // The labels name other things than the values beside them; support staff know them so.
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
