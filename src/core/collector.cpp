// The sections of the base collector that write a heading or nothing.
#include "core/collector.h"

namespace qb_support {

void CQbSupport::AppendHeading(CText& result, std::string_view title) const {
    if (m_headings) {
        result << title << "\r\n";
        result.Fill('-', title.size());
        result << "\r\n";
    }
}

bool CQbSupport::GetOperatingSystemInfo(CText& result) {
    AppendHeading(result, "Operating System");
    return true;
}

bool CQbSupport::GetUnameInfo(CText& result) {
    AppendHeading(result, "Uname");
    return true;
}

bool CQbSupport::GetUserNameInfo(CText& result) {
    AppendHeading(result, "User Name");
    return true;
}

bool CQbSupport::GetHardwareInfo(CText& result) {
    AppendHeading(result, "Hardware");
    return true;
}

bool CQbSupport::GetSystemDirectoriesInfo(CText& result) {
    AppendHeading(result, "System directories");
    return true;
}

bool CQbSupport::GetMemoryInfo(CText& result) {
    AppendHeading(result, "Memory:");
    return true;
}

bool CQbSupport::GetLimitsInfo(CText& result) {
    AppendHeading(result, "Limits:");
    return true;
}

bool CQbSupport::GetAppDirectoryInfo(CText& /*result*/, CText& /*argument*/) {
    return true;
}

bool CQbSupport::GetApplicationInfo(CText& result, CText& /*argument*/) {
    AppendHeading(result, "Application");
    return true;
}

bool CQbSupport::GetEnvironmentInfo(CText& /*result*/, CText& /*argument*/) {
    return true;
}

bool CQbSupport::GetModulesInfo(CText& result, CText& argument) {
    if (m_headings) {
        result << "Modules";
        if (!argument.Empty()) {
            result << " (" << argument << ')';
        }
        // The underline is as long as the title without the argument.
        result << "\r\n-------\r\n";
    }
    return true;
}

bool CQbSupport::GetModuleInfo(CText& result, CText& /*argument*/) {
    AppendHeading(result, "Module:");
    return true;
}

bool CQbSupport::GetRegistryInfo(CText& result, CText& /*argument*/) {
    AppendHeading(result, "Registry:");
    return true;
}

bool CQbSupport::GetUserAppKeyInfo(CText& /*result*/, CText& /*argument*/) {
    return true;
}

bool CQbSupport::GetMachineAppKeyInfo(CText& /*result*/, CText& /*argument*/) {
    return true;
}

bool CQbSupport::GetReservedInfo(CText& /*result*/, CText& /*argument*/) {
    return false;
}

bool CQbSupport::GetDisplayInfo(CText& result, CText& /*argument*/) {
    AppendHeading(result, "Display");
    return true;
}

bool CQbSupport::AppendEnvironmentNotSet(const char* prefix, const char* name, CText& result) {
    result << prefix << "[Environment '" << name << "' not set]\n";
    return true;
}

bool CQbSupport::AppendEnvironmentBegin(const char* /*name*/, CText& /*result*/) {
    return true;
}

bool CQbSupport::AppendEnvironmentEnd(const char* /*prefix*/, const char* /*name*/, CText& result) {
    result << "]\n";
    return true;
}

}  // namespace qb_support
