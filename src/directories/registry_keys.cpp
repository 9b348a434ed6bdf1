// The Registry section: the keys that the host names, with how far the user can open them.
#include "core/collector.h"
#include "directories/registry_key_access.h"
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

}  // namespace

Text RegistryKeyAccessText(HKEY root, const Text& path) {
    const char* text = "(N/A)";
    for (const AccessTest& test : kAccessTests) {
        if (RegistryKey(root, path.CStr(), test.access).IsOpen()) {
            text = test.annotation;
        }
    }
    return Text(text);
}

bool CQbSupportWindows::GetRegistryInfo(Text& result, Text& argument) {
    CQbSupport::GetRegistryInfo(result, argument);
    result << m_indent << "User root:    [HKEY_CURRENT_USER\\" << argument << "] "
           << RegistryKeyAccessText(HKEY_CURRENT_USER, argument) << '\n';
    return true;
}

bool CQbSupportWindows::GetUserAppKeyInfo(Text& result, Text& argument) {
    result << m_indent << "App:          [HKEY_CURRENT_USER\\" << argument << "] "
           << RegistryKeyAccessText(HKEY_CURRENT_USER, argument) << '\n';
    return true;
}

bool CQbSupportWindows::GetMachineAppKeyInfo(Text& result, Text& argument) {
    result << m_indent << "App:          [HKEY_LOCAL_MACHINE\\" << argument << "] "
           << RegistryKeyAccessText(HKEY_LOCAL_MACHINE, argument) << '\n';
    return true;
}

}  // namespace qb_support
