// The System directories section and the application directory line below it.
#include "core/collector.h"
#include "directories/paths.h"

namespace qb_support {

namespace {

// `label` ends in an opening bracket, in the same column for every line.
void AppendDirectory(Text& result, const Text& indent, std::string_view label, const Text& path) {
    result << indent << label << path << "] (" << FileAttributesText(path) << ")\n";
}

}  // namespace

bool CQbSupportWindows::GetSystemDirectoriesInfo(Text& result) {
    CQbSupport::GetSystemDirectoriesInfo(result);
    AppendDirectory(result, m_indent, "System:      [", GetSystemDirectoryPath());
    AppendDirectory(result, m_indent, "Windows:     [", GetWindowsDirectoryPath());
    AppendDirectory(result, m_indent, "Temp:        [", GetTempDirectoryPath());
    AppendDirectory(result, m_indent, "Exe:         [", GetExecutablePath());
    result << '\n';
    AppendDirectory(result, m_indent, "AppData:     [", GetCurrentDirectoryPath());
    return true;
}

bool CQbSupportWindows::GetAppDirectoryInfo(Text& result, Text& argument) {
    ReplaceAll(argument, "\\", "/");
    AppendDirectory(result, m_indent, "App:         [", argument);
    return true;
}

}  // namespace qb_support
