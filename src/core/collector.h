// The collectors: one virtual operation for each section of the report.
#ifndef QBSUPPORT_CORE_COLLECTOR_H
#define QBSUPPORT_CORE_COLLECTOR_H

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/growable_array.h"
#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

// The portable base. Its sections write their heading or nothing; those that need no platform
// facility are complete. A collector is built for one call and runs one section.
//
// Every section operation appends to `result` and returns true when the text is complete, false
// when there is nothing valid to hand out. Content lines start with m_indent, headings never do.
// Line ends are CR LF or LF, line by line; readers of the report rely on both.
class CQbSupport {
public:
    CQbSupport() = default;
    CQbSupport(const CQbSupport&) = delete;
    CQbSupport& operator=(const CQbSupport&) = delete;

    virtual ~CQbSupport() = default;
    virtual bool GetBannerInfo(Text& result);
    virtual bool GetDateTimeInfo(Text& result);
    virtual bool GetOperatingSystemInfo(Text& result);
    virtual bool GetUnameInfo(Text& result);
    virtual bool GetUserNameInfo(Text& result);
    virtual bool GetLocaleSectionInfo(Text& result);
    virtual bool GetHardwareInfo(Text& result);
    virtual bool GetSystemDirectoriesInfo(Text& result);
    virtual bool GetMemoryInfo(Text& result);
    virtual bool GetLimitsInfo(Text& result);
    virtual bool GetAppDirectoryInfo(Text& result, Text& argument);
    virtual bool GetApplicationInfo(Text& result, Text& argument);
    virtual bool GetEnvironmentInfo(Text& result, Text& argument);
    virtual bool GetModulesInfo(Text& result, Text& argument);
    virtual bool GetModuleInfo(Text& result, Text& argument);
    virtual bool GetRegistryInfo(Text& result, Text& argument);
    virtual bool GetUserAppKeyInfo(Text& result, Text& argument);
    virtual bool GetMachineAppKeyInfo(Text& result, Text& argument);
    virtual bool GetReservedInfo(Text& result, Text& argument);
    virtual bool GetDisplayInfo(Text& result, Text& argument);

    // Helpers for a collector on a system whose environment is listed with markers around it.
    virtual bool AppendEnvironmentNotSet(const char* prefix, const char* name, Text& result);
    virtual bool AppendEnvironmentBegin(const char* name, Text& result);
    virtual bool AppendEnvironmentEnd(const char* prefix, const char* name, Text& result);

    // The time zone in force. UTC = local time + bias.
    //   biasSeconds    the bias now, the standard or daylight part included, in seconds
    //   isDaylight     whether daylight saving time is in force
    //   biasText       the base bias, without either part, as hours:minutes and "h"
    //   biasMinutes    the base bias in minutes
    //   daylightBias   the daylight part in minutes, in force or not
    virtual bool GetTimeZone(std::int32_t& biasSeconds, bool& isDaylight, Text& biasText,
                             std::int32_t& biasMinutes, std::int32_t& daylightBias);

    // Runs the section that `kind` selects under `flags` (both as in the public header) on an
    // emptied `result`, then writes the separator when that was asked for. Returns what the section
    // returned, false for an unknown kind.
    bool GetInfo(int kind, unsigned int flags, Text& result, Text& argument);

    // Collectors live on the stack; the virtual destructor still names a way to free one.
    static void* operator new(std::size_t size) = delete;
    static void operator delete(void* block) { std::free(block); }

protected:
    // Writes the title and its underline when headings are on.
    void AppendHeading(Text& result, std::string_view title) const;

    std::uint32_t m_flags = 0;  // the call's option flags, unchanged
    bool m_headings = false;    // sections write their heading
    bool m_separator = false;   // an empty line ends the section
    bool m_indentOn = false;    // content lines are indented
    Text m_indent;              // what content lines start with: nothing, or three spaces

private:
    bool RunSection(int kind, Text& result, Text& argument);
};

// The collector for Windows.
class CQbSupportWindows : public CQbSupport {
public:
    bool GetOperatingSystemInfo(Text& result) override;
    bool GetUserNameInfo(Text& result) override;
    bool GetLocaleSectionInfo(Text& result) override;
    bool GetHardwareInfo(Text& result) override;
    bool GetSystemDirectoriesInfo(Text& result) override;
    bool GetMemoryInfo(Text& result) override;
    bool GetAppDirectoryInfo(Text& result, Text& argument) override;
    bool GetApplicationInfo(Text& result, Text& argument) override;
    bool GetEnvironmentInfo(Text& result, Text& argument) override;
    bool GetModulesInfo(Text& result, Text& argument) override;
    bool GetModuleInfo(Text& result, Text& argument) override;
    bool GetRegistryInfo(Text& result, Text& argument) override;
    bool GetUserAppKeyInfo(Text& result, Text& argument) override;
    bool GetMachineAppKeyInfo(Text& result, Text& argument) override;
    bool GetDisplayInfo(Text& result, Text& argument) override;

private:
    // One line for each module of the process: 1 after a complete walk, 0 when the modules could
    // not be had (a warning then stands on standard output).
    int ListProcessModules(DWORD processId, Text& result);

    // Adds a monitor to the collector that `collector` points to; stops the enumeration when there
    // is no memory for it.
    static BOOL CALLBACK EnumMonitorCallback(HMONITOR monitor, HDC deviceContext, RECT* rectangle,
                                             LPARAM collector);

    GrowableArray<HMONITOR, 8> m_monitors;  // in the platform's order
};

}  // namespace qb_support

#endif
