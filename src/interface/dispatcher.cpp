// Runs the section that an information kind selects.
#include "core/collector.h"
#include "qbsupport/qbsupport.h"
#include "qbsupport/sections.hpp"

namespace qb_support {

namespace {

bool RunSection(CQbSupport& collector, int kind, CText& result, CText& argument) {
    if (kind < 1 || kind > qbsupport::kLastKind) {
        return false;
    }
    switch (static_cast<QbSupportKind>(kind)) {  // no default: the compiler names what is missing
        case QbSupportBanner:
            return collector.GetBannerInfo(result);
        case QbSupportDateTime:
            return collector.GetDateTimeInfo(result);
        case QbSupportOperatingSystem:
            return collector.GetOperatingSystemInfo(result);
        case QbSupportUname:
            return collector.GetUnameInfo(result);
        case QbSupportUserName:
            return collector.GetUserNameInfo(result);
        case QbSupportLocale:
            return collector.GetLocaleSectionInfo(result);
        case QbSupportHardware:
            return collector.GetHardwareInfo(result);
        case QbSupportMemory:
            return collector.GetMemoryInfo(result);
        case QbSupportSystemDirectories:
            return collector.GetSystemDirectoriesInfo(result);
        case QbSupportAppDirectory:
            return collector.GetAppDirectoryInfo(result, argument);
        case QbSupportRegistry:
            return collector.GetRegistryInfo(result, argument);
        case QbSupportUserAppKey:
            return collector.GetUserAppKeyInfo(result, argument);
        case QbSupportMachineAppKey:
            return collector.GetMachineAppKeyInfo(result, argument);
        case QbSupportApplication:
            return collector.GetApplicationInfo(result, argument);
        case QbSupportEnvironment:
            return collector.GetEnvironmentInfo(result, argument);
        case QbSupportModules:
            return collector.GetModulesInfo(result, argument);
        case QbSupportModule:
            return collector.GetModuleInfo(result, argument);
        case QbSupportLimits:
            return collector.GetLimitsInfo(result);
        case QbSupportReserved:
            return collector.GetReservedInfo(result, argument);
        case QbSupportDisplay:
            return collector.GetDisplayInfo(result, argument);
    }
    return false;
}

}  // namespace

bool CQbSupport::GetInfo(int kind, unsigned int flags, CText& result, CText& argument) {
    m_flags = flags;
    if ((flags & QbSupportFlagHeadings) != 0) {
        m_headings = true;
    }
    if ((flags & QbSupportFlagSeparator) != 0) {
        m_separator = true;
    }
    if ((flags & QbSupportFlagIndent) != 0) {
        m_indentOn = true;
        m_indent.Clear();
        m_indent << "   ";
    }

    result.Clear();
    const bool complete = RunSection(*this, kind, result, argument);
    if (m_separator && qbsupport::HasSeparator(kind)) {
        result << "\r\n";
    }
    return complete;
}

}  // namespace qb_support
