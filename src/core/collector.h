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

// The base collector. Its banner and its Date and Time section are complete, and its Locale section
// reports the run-time library's locale. Its other sections write their heading or nothing. A
// collector is built for one call and runs one section.
//
// Every section operation appends to `result`. It returns true if the text is complete, and false
// if there is nothing valid to hand out. Content lines start with m_indent, headings never do. Each
// line ends in CR LF or in LF on purpose, because readers of the report rely on both.
class CQbSupport {
public:
    CQbSupport() = default;
    CQbSupport(const CQbSupport&) = delete;
    CQbSupport& operator=(const CQbSupport&) = delete;

    virtual ~CQbSupport() = default;
    virtual bool GetBannerInfo(CText& result);
    virtual bool GetDateTimeInfo(CText& result);
    virtual bool GetOperatingSystemInfo(CText& result);
    virtual bool GetUnameInfo(CText& result);
    virtual bool GetUserNameInfo(CText& result);
    virtual bool GetLocaleSectionInfo(CText& result);
    virtual bool GetHardwareInfo(CText& result);
    virtual bool GetSystemDirectoriesInfo(CText& result);
    virtual bool GetMemoryInfo(CText& result);
    virtual bool GetLimitsInfo(CText& result);
    virtual bool GetAppDirectoryInfo(CText& result, CText& argument);
    virtual bool GetApplicationInfo(CText& result, CText& argument);
    virtual bool GetEnvironmentInfo(CText& result, CText& argument);
    virtual bool GetModulesInfo(CText& result, CText& argument);
    virtual bool GetModuleInfo(CText& result, CText& argument);
    virtual bool GetRegistryInfo(CText& result, CText& argument);
    virtual bool GetUserAppKeyInfo(CText& result, CText& argument);
    virtual bool GetMachineAppKeyInfo(CText& result, CText& argument);
    virtual bool GetReservedInfo(CText& result, CText& argument);
    virtual bool GetDisplayInfo(CText& result, CText& argument);

    // Helpers for a collector that lists the environment with markers around each variable. No
    // section calls them yet. They always return true.
    virtual bool AppendEnvironmentNotSet(const char* prefix, const char* name, CText& result);
    virtual bool AppendEnvironmentBegin(const char* name, CText& result);
    virtual bool AppendEnvironmentEnd(const char* prefix, const char* name, CText& result);

    // Gets the current time zone for the Date and Time section. UTC = local time + bias. Returns
    // true here, with zeros if the platform fails. If a derived collector returns false, the
    // section shows the time only.
    //   biasSeconds    the current bias in seconds, including the standard or daylight part
    //   isDaylight     whether daylight saving time is in effect
    //   biasText       the base bias, without either part, as hours:minutes and "h"
    //   biasMinutes    the base bias in minutes
    //   daylightBias   the daylight part in minutes, also while it is not in effect
    virtual bool GetTimeZone(std::int32_t& biasSeconds, bool& isDaylight, CText& biasText,
                             std::int32_t& biasMinutes, std::int32_t& daylightBias);

    // Empties `result`, runs the section that `kind` selects, and appends the separator if `flags`
    // asks for it (both as in the public header). Returns what the section returned, or false for
    // an unknown kind.
    bool GetInfo(int kind, unsigned int flags, CText& result, CText& argument);

    // Collectors live on the stack. The compiler needs an operator delete nevertheless, because the
    // destructor is virtual, and the C++ run-time library with its own is not linked.
    static void* operator new(std::size_t size) = delete;
    static void operator delete(void* block) { std::free(block); }

protected:
    // Writes the title and its underline when headings are on.
    void AppendHeading(CText& result, std::string_view title) const;

    std::uint32_t m_flags = 0;  // the call's option flags, unchanged
    bool m_headings = false;    // sections write their heading
    bool m_separator = false;   // an empty line ends the section
    bool m_indentOn = false;    // content lines are indented
    CText m_indent;             // what content lines start with: nothing, or three spaces
};

// The collector for Windows.
class CQbSupportWindows : public CQbSupport {
public:
    bool GetOperatingSystemInfo(CText& result) override;
    bool GetUserNameInfo(CText& result) override;
    bool GetLocaleSectionInfo(CText& result) override;
    bool GetHardwareInfo(CText& result) override;
    bool GetSystemDirectoriesInfo(CText& result) override;
    bool GetMemoryInfo(CText& result) override;
    bool GetAppDirectoryInfo(CText& result, CText& argument) override;
    bool GetApplicationInfo(CText& result, CText& argument) override;
    bool GetEnvironmentInfo(CText& result, CText& argument) override;
    bool GetModulesInfo(CText& result, CText& argument) override;
    bool GetModuleInfo(CText& result, CText& argument) override;
    bool GetRegistryInfo(CText& result, CText& argument) override;
    bool GetUserAppKeyInfo(CText& result, CText& argument) override;
    bool GetMachineAppKeyInfo(CText& result, CText& argument) override;
    bool GetDisplayInfo(CText& result, CText& argument) override;

private:
    // Appends a line for each module of the process and returns 1. If the modules cannot be listed,
    // writes a warning to standard output and returns 0.
    int ListProcessModules(DWORD processId, CText& result);

    // Adds a monitor to the collector that `collector` points to. Stops the enumeration if memory
    // runs out.
    static BOOL CALLBACK EnumMonitorCallback(HMONITOR monitor, HDC deviceContext, RECT* rectangle,
                                             LPARAM collector);

    CGrowableArray<HMONITOR, 8> m_monitors;  // in the platform's order
};

}  // namespace qb_support

#endif
