/* The library's load configuration, which the linker finds by its name. */
#include "platform/windows_api.h"

/* The part of IMAGE_LOAD_CONFIG_DIRECTORY64 that Windows 7 knows. It is declared here because not
 * all headers have a member named dependentLoadFlags. */
struct LoadConfiguration {
    DWORD size;
    BYTE unused[0x4A];
    WORD dependentLoadFlags;
    BYTE unusedToo[0x20];
};

/* From Windows 10 1607 on, Windows looks for the libraries that this one imports only in System32.
 * It then does not load a version.dll beside the host. */
_Alignas(8) const struct LoadConfiguration _load_config_used = {
    .size = sizeof(struct LoadConfiguration),
    .dependentLoadFlags = LOAD_LIBRARY_SEARCH_SYSTEM32,
};
