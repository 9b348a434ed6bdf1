// The Memory section: memory of the system and of this process.
#include "core/collector.h"
#include "machine/digit_grouping.h"
#include "platform/named_function.h"

namespace qb_support {

namespace {

// Writes lines with numbers whose digits are grouped as in the user's regional settings.
class CMemoryLines {
public:
    CMemoryLines(CText& result, const CText& indent)
        : m_result(result), m_indent(indent), m_grouping(UserDigitGrouping()) {}

    void AppendCount(std::string_view label, std::uint64_t count) {
        AppendNumber(label, count);
        m_result << "\r\n";
    }

    // In whole kilobytes, rounded down.
    void AppendBytes(std::string_view label, std::uint64_t bytes) {
        AppendNumber(label, bytes >> 10);
        m_result << " KB\r\n";
    }

private:
    void AppendNumber(std::string_view label, std::uint64_t number) {
        m_result << m_indent << label;
        m_grouping.Append(m_result, number);
    }

    CText& m_result;
    const CText& m_indent;
    CDigitGrouping m_grouping;
};

void AppendSystemMemory(CMemoryLines& lines) {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof(memory);
    GlobalMemoryStatusEx(&memory);
    lines.AppendBytes("Physical:         ", memory.ullTotalPhys);
    lines.AppendBytes("Avail. Physical:  ", memory.ullAvailPhys);
    lines.AppendBytes("Avail. Page File: ", memory.ullAvailPageFile);
    lines.AppendBytes("Virtual:          ", memory.ullTotalVirtual);
    lines.AppendBytes("Avail. Virtual:   ", memory.ullAvailVirtual);
}

bool QueryProcessMemory(PROCESS_MEMORY_COUNTERS& counters) {
    // psapi.dll is not freed again, so that later calls find it loaded.
    auto* const getProcessMemoryInfo = FindFunction<decltype(GetProcessMemoryInfo)>(
        LoadLibraryA("psapi.dll"), "GetProcessMemoryInfo");
    counters.cb = sizeof(counters);
    return getProcessMemoryInfo != nullptr &&
           getProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) != 0;
}

void AppendProcessMemory(CMemoryLines& lines) {
    PROCESS_MEMORY_COUNTERS counters{};
    if (!QueryProcessMemory(counters)) {
        return;
    }
    lines.AppendBytes("Process working set:      ", counters.WorkingSetSize);
    lines.AppendBytes("Process peak working set: ", counters.PeakWorkingSetSize);
    lines.AppendBytes("Process pagefile usage:   ", counters.PagefileUsage);
    lines.AppendBytes("Process peak pf. usage:   ", counters.PeakPagefileUsage);
    lines.AppendCount("Process page faults:      ", counters.PageFaultCount);
}

}  // namespace

bool CQbSupportWindows::GetMemoryInfo(CText& result) {
    CQbSupport::GetMemoryInfo(result);
    CMemoryLines lines(result, m_indent);
    AppendSystemMemory(lines);
    result << '\n';
    AppendProcessMemory(lines);
    result << '\n';
    return true;
}

}  // namespace qb_support
