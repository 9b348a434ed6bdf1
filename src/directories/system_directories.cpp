// The System directories section, and the line of the application's directory.
#include "core/collector.h"
#include "directories/paths.h"

namespace qb_support {

namespace {

struct Label {
    DWORD bit;
    const char* text;
};

constexpr Label kLabels[] = {
    {FILE_ATTRIBUTE_DIRECTORY, "DIR:"},   {FILE_ATTRIBUTE_ARCHIVE, "ARCH:"},
    {FILE_ATTRIBUTE_COMPRESSED, "COMP:"}, {FILE_ATTRIBUTE_DEVICE, "DEV:"},
    {FILE_ATTRIBUTE_ENCRYPTED, "ENC:"},   {FILE_ATTRIBUTE_HIDDEN, "HID:"},
    {FILE_ATTRIBUTE_NORMAL, "NOR:"},      {FILE_ATTRIBUTE_NOT_CONTENT_INDEXED, "IDX:"},
    {FILE_ATTRIBUTE_OFFLINE, "OFL:"},     {FILE_ATTRIBUTE_REPARSE_POINT, "REP:"},
    {FILE_ATTRIBUTE_SPARSE_FILE, "SPA:"}, {FILE_ATTRIBUTE_SYSTEM, "SYS:"},
    {FILE_ATTRIBUTE_TEMPORARY, "TEMP:"},
};

// The labels of the file attributes of `path`, such as "DIR:HID:RW", or "N/A" if the attributes
// cannot be read. "RO" or "RW" at the end shows the read-only attribute, not the user's access.
CText FileAttributesText(const CText& path) {
    const DWORD attributes = GetFileAttributesA(path.CStr());
    // The failure value has every bit set, which would look like a file with all attributes.
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return CText("N/A");
    }
    CText text;
    for (const Label& label : kLabels) {
        if ((attributes & label.bit) != 0) {
            text << label.text;
        }
    }
    text << ((attributes & FILE_ATTRIBUTE_READONLY) != 0 ? "RO" : "RW");
    return text;
}

// `label` ends in an opening bracket, which is in the same column in every line.
void AppendDirectory(CText& result, const CText& indent, std::string_view label,
                     const CText& path) {
    result << indent << label << path << "] (" << FileAttributesText(path) << ")\n";
}

}  // namespace

bool CQbSupportWindows::GetSystemDirectoriesInfo(CText& result) {
    CQbSupport::GetSystemDirectoriesInfo(result);
    AppendDirectory(result, m_indent, "System:      [", GetSystemDirectoryPath());
    AppendDirectory(result, m_indent, "Windows:     [", GetWindowsDirectoryPath());
    AppendDirectory(result, m_indent, "Temp:        [", GetTempDirectoryPath());
    AppendDirectory(result, m_indent, "Exe:         [", GetExecutablePath());
    result << '\n';
    AppendDirectory(result, m_indent, "AppData:     [", GetCurrentDirectoryPath());
    return true;
}

bool CQbSupportWindows::GetAppDirectoryInfo(CText& result, CText& argument) {
    ReplaceAll(argument, "\\", "/");
    AppendDirectory(result, m_indent, "App:         [", argument);
    return true;
}

}  // namespace qb_support
