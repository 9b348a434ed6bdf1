// The Registry section: the keys that the host names, with how far the user can open them.
#include "core/collector.h"
#include "directories/registry_key_access.h"

namespace qb_support {

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
