// The way from an information kind to its section.
#include "core/collector.h"
#include "qbsupport/qbsupport.h"

namespace qb_support {

namespace {

// The single lines that a host strings together below another section.
bool IsSingleLine(int kind) {
    return kind == QbSupportAppDirectory || kind == QbSupportUserAppKey ||
           kind == QbSupportMachineAppKey || kind == QbSupportModule;
}

}  // namespace

bool CQbSupport::GetInfo(int kind, unsigned int flags, Text& result, Text& argument) {
    m_flags = flags;
    if ((flags & QbSupportHeadings) != 0) {
        m_headings = true;
    }
    if ((flags & QbSupportSeparator) != 0) {
        m_separator = true;
    }
    if ((flags & QbSupportIndent) != 0) {
        m_indentOn = true;
        m_indent.Clear();
        m_indent << "   ";
    }

    result.Clear();
    const bool complete = RunSection(kind, result, argument);
    if (m_separator && !IsSingleLine(kind)) {
        result << "\r\n";
    }
    return complete;
}

bool CQbSupport::RunSection(int kind, Text& result, Text& argument) {
    switch (kind) {
        case QbSupportBanner:
            return GetBannerInfo(result);
        case QbSupportDateTime:
            return GetDateTimeInfo(result);
        case QbSupportOperatingSystem:
            return GetOperatingSystemInfo(result);
        case QbSupportUname:
            return GetUnameInfo(result);
        case QbSupportUserName:
            return GetUserNameInfo(result);
        case QbSupportLocale:
            return GetLocaleSectionInfo(result);
        case QbSupportHardware:
            return GetHardwareInfo(result);
        case QbSupportMemory:
            return GetMemoryInfo(result);
        case QbSupportSystemDirectories:
            return GetSystemDirectoriesInfo(result);
        case QbSupportAppDirectory:
            return GetAppDirectoryInfo(result, argument);
        case QbSupportRegistry:
            return GetRegistryInfo(result, argument);
        case QbSupportUserAppKey:
            return GetUserAppKeyInfo(result, argument);
        case QbSupportMachineAppKey:
            return GetMachineAppKeyInfo(result, argument);
        case QbSupportApplication:
            return GetApplicationInfo(result, argument);
        case QbSupportEnvironment:
            return GetEnvironmentInfo(result, argument);
        case QbSupportModules:
            return GetModulesInfo(result, argument);
        case QbSupportModule:
            return GetModuleInfo(result, argument);
        case QbSupportLimits:
            return GetLimitsInfo(result);
        case QbSupportReserved:
            return GetReservedInfo(result, argument);
        case QbSupportDisplay:
            return GetDisplayInfo(result, argument);
        default:
            return false;
    }
}

}  // namespace qb_support
