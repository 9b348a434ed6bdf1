// The Registry section: the keys that the host names, and the user's access to them.
#include "core/collector.h"
#include "platform/registry_key.h"

namespace qb_support {

namespace {

struct AccessTest {
    REGSAM access;
    const char* annotation;
};

constexpr AccessTest kAccessTests[] = {
    {KEY_READ, "(RO)"},
    {KEY_READ | KEY_WRITE, "(RW)"},
    {KEY_ALL_ACCESS, "(RWA)"},
};

// The widest access with which the key `path` under the predefined key `root` opens: "(RO)" for
// reading, "(RW)" for reading and writing, "(RWA)" for all access, "(N/A)" if it does not open.
CText RegistryKeyAccessText(HKEY root, const CText& path) {
    const char* text = "(N/A)";
    for (const AccessTest& test : kAccessTests) {
        if (CRegistryKey(root, path.CStr(), test.access).IsOpen()) {
            text = test.annotation;
        }
    }
    return CText(text);
}

}  // namespace

bool CQbSupportWindows::GetRegistryInfo(CText& result, CText& argument) {
    CQbSupport::GetRegistryInfo(result, argument);
    result << m_indent << "User root:    [HKEY_CURRENT_USER\\" << argument << "] "
           << RegistryKeyAccessText(HKEY_CURRENT_USER, argument) << '\n';
    return true;
}

bool CQbSupportWindows::GetUserAppKeyInfo(CText& result, CText& argument) {
    result << m_indent << "App:          [HKEY_CURRENT_USER\\" << argument << "] "
           << RegistryKeyAccessText(HKEY_CURRENT_USER, argument) << '\n';
    return true;
}

bool CQbSupportWindows::GetMachineAppKeyInfo(CText& result, CText& argument) {
    result << m_indent << "App:          [HKEY_LOCAL_MACHINE\\" << argument << "] "
           << RegistryKeyAccessText(HKEY_LOCAL_MACHINE, argument) << '\n';
    return true;
}

}  // namespace qb_support
