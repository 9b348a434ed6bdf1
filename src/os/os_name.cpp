#include "os/os_name.h"

#include <limits>

#include "os/product_edition.h"
#include "os/registry_values.h"
#include "os/release_name.h"
#include "platform/system_info.h"

namespace qb_support {

namespace {

void ReadUpdateRevision(CText& updateRevision) {
    std::uint32_t number = 0;
    if (ReadRegistryDword(kCurrentVersionKey, "UBR", number) &&
        number != std::numeric_limits<std::uint32_t>::max()) {
        updateRevision << number;
    }
}

}  // namespace

bool ComposeOsName(OSVERSIONINFOEXA version, CText& displayName, CText& editionText,
                   CText& productName, CText& editionId, CText& wordSize, CText& displayVersion,
                   CText& updateRevision) {
    displayName.Clear();
    wordSize.Clear();
    updateRevision.Clear();
    GetOsEdition(version.dwMajorVersion, version.dwMinorVersion, editionText, editionId);
    ReadRegistryString(kCurrentVersionKey, "ProductName", productName);
    ReadRegistryString(kCurrentVersionKey, "DisplayVersion", displayVersion);
    ReadUpdateRevision(updateRevision);
    const WORD architecture = QuerySystemInfo().wProcessorArchitecture;

    if (version.dwPlatformId != VER_PLATFORM_WIN32_NT || version.dwMajorVersion <= 4) {
        return false;
    }
    displayName << "Microsoft ";
    AppendReleaseName(displayName, version, architecture);
    wordSize << WordSize(version, architecture);
    return true;
}

}  // namespace qb_support
