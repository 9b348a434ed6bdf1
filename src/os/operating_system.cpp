// The Operating System section: Windows' release, edition, version and build.
#include "core/collector.h"
#include "os/os_name.h"
#include "os/version_tests.h"

namespace qb_support {

namespace {

void AppendVersion(CText& result, const CText& indent, const OSVERSIONINFOEXA& version,
                   const CText& displayVersion, const CText& updateRevision) {
    result << indent << version.dwMajorVersion << '.' << version.dwMinorVersion << " Build "
           << version.dwBuildNumber << '\n';
    if (!displayVersion.Empty()) {
        result << indent << '[' << displayVersion;
        if (!updateRevision.Empty()) {
            result << " -- " << version.dwBuildNumber << '.' << updateRevision;
        }
        result << "]\n";
    }
    if (version.wServicePackMajor > 0) {
        result << indent << BufferText(version.szCSDVersion) << '\n';
    }
}

// Appends those of the registry's names that differ from the composed ones, below an empty line.
void AppendRegistryNames(CText& result, const CText& indent, const CText& displayName,
                         const CText& editionText, const CText& productName,
                         const CText& editionId) {
    CText composedName;
    composedName << displayName << ' ' << editionText;
    CText registryName;
    registryName << "Microsoft " << productName;
    if (composedName.Failed() || registryName.Failed()) {
        result.Fail();  // then it is unknown whether they differ
        return;
    }

    const bool nameDiffers = composedName.View() != registryName.View();
    const bool editionDiffers = editionText.View() != editionId.View();
    if (nameDiffers || editionDiffers) {
        result << indent << '\n';
    }
    if (nameDiffers) {
        result << indent << "[OS ID: " << productName << "]\n";
    }
    if (editionDiffers) {
        result << indent << "[Edition ID: " << editionId << "]\n";
    }
}

}  // namespace

bool CQbSupportWindows::GetOperatingSystemInfo(CText& result) {
    CQbSupport::GetOperatingSystemInfo(result);

    OSVERSIONINFOEXA version{};
    if (!DetectVersionFromTable(version) && !DetectVersionByScan(version)) {
        return false;
    }

    CText displayName;
    CText editionText;
    CText productName;
    CText editionId;
    CText wordSize;
    CText displayVersion;
    CText updateRevision;
    if (ComposeOsName(version, displayName, editionText, productName, editionId, wordSize,
                      displayVersion, updateRevision)) {
        result << m_indent << displayName << ", " << wordSize << '\n';
        if (!editionText.Empty()) {
            result << m_indent << editionText << '\n';
        }
    } else {
        result << m_indent << "Failed to get the Operating system name\n";
    }
    AppendVersion(result, m_indent, version, displayVersion, updateRevision);
    AppendRegistryNames(result, m_indent, displayName, editionText, productName, editionId);
    return true;
}

}  // namespace qb_support
