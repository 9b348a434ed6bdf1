#include "directories/paths.h"
#include "platform/windows_api.h"

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

}  // namespace

Text FileAttributesText(const Text& path) {
    const DWORD attributes = GetFileAttributesA(path.CStr());
    // The failure value has every bit set and would read as a file with all attributes at once.
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return Text("N/A");
    }
    Text text;
    for (const Label& label : kLabels) {
        if ((attributes & label.bit) != 0) {
            text << label.text;
        }
    }
    text << ((attributes & FILE_ATTRIBUTE_READONLY) != 0 ? "RO" : "RW");
    return text;
}

}  // namespace qb_support
