/* The library's load configuration, which the linker finds by its name. */
#include "platform/windows_api.h"

/* An IMAGE_LOAD_CONFIG_DIRECTORY64 as Windows 7 knows it. Not all headers have this member of it
 * under its name. */
struct LoadConfiguration {
    DWORD size;
    BYTE unused[0x4A];
    WORD dependentLoadFlags;
    BYTE unusedToo[0x20];
};

/* Windows 10 1607 and later looks for the libraries that this one imports in System32 alone: a
 * version.dll beside the host is not meant. */
const struct LoadConfiguration _load_config_used = {
    .size = sizeof(struct LoadConfiguration),
    .dependentLoadFlags = LOAD_LIBRARY_SEARCH_SYSTEM32,
};
