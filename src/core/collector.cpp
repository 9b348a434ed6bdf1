// What the base collector writes where a system has nothing to add: headings.
#include "core/collector.h"

namespace qb_support {

void CQbSupport::AppendHeading(Text& result, std::string_view title) const {
    if (m_headings) {
        result << title << "\r\n";
        result.Fill('-', title.size());
        result << "\r\n";
    }
}

bool CQbSupport::GetOperatingSystemInfo(Text& result) {
    AppendHeading(result, "Operating System");
    return true;
}

bool CQbSupport::GetUnameInfo(Text& result) {
    AppendHeading(result, "Uname");
    return true;
}

bool CQbSupport::GetUserNameInfo(Text& result) {
    AppendHeading(result, "User Name");
    return true;
}

bool CQbSupport::GetHardwareInfo(Text& result) {
    AppendHeading(result, "Hardware");
    return true;
}

bool CQbSupport::GetSystemDirectoriesInfo(Text& result) {
    AppendHeading(result, "System directories");
    return true;
}

bool CQbSupport::GetMemoryInfo(Text& result) {
    AppendHeading(result, "Memory:");
    return true;
}

bool CQbSupport::GetLimitsInfo(Text& result) {
    AppendHeading(result, "Limits:");
    return true;
}

bool CQbSupport::GetAppDirectoryInfo(Text& /*result*/, Text& /*argument*/) {
    return true;
}

bool CQbSupport::GetApplicationInfo(Text& result, Text& /*argument*/) {
    AppendHeading(result, "Application");
    return true;
}

bool CQbSupport::GetEnvironmentInfo(Text& /*result*/, Text& /*argument*/) {
    return true;
}

bool CQbSupport::GetModulesInfo(Text& result, Text& argument) {
    if (m_headings) {
        result << "Modules";
        if (!argument.Empty()) {
            result << " (" << argument << ')';
        }
        // The underline covers the bare title, whatever the argument added to it.
        result << "\r\n-------\r\n";
    }
    return true;
}

bool CQbSupport::GetModuleInfo(Text& result, Text& /*argument*/) {
    AppendHeading(result, "Module:");
    return true;
}

bool CQbSupport::GetRegistryInfo(Text& result, Text& /*argument*/) {
    AppendHeading(result, "Registry:");
    return true;
}

bool CQbSupport::GetUserAppKeyInfo(Text& /*result*/, Text& /*argument*/) {
    return true;
}

bool CQbSupport::GetMachineAppKeyInfo(Text& /*result*/, Text& /*argument*/) {
    return true;
}

bool CQbSupport::GetReservedInfo(Text& /*result*/, Text& /*argument*/) {
    return false;
}

bool CQbSupport::GetDisplayInfo(Text& result, Text& /*argument*/) {
    AppendHeading(result, "Display");
    return true;
}

bool CQbSupport::AppendEnvironmentNotSet(const char* prefix, const char* name, Text& result) {
    result << prefix << "[Environment '" << name << "' not set]\n";
    return true;
}

bool CQbSupport::AppendEnvironmentBegin(const char* /*name*/, Text& result) {
    result << "";  // the list of variables needs no opening mark
    return true;
}

bool CQbSupport::AppendEnvironmentEnd(const char* /*prefix*/, const char* /*name*/, Text& result) {
    result << "]\n";
    return true;
}

}  // namespace qb_support
