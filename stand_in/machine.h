// The computer that the stand-in platform describes. A test changes the fields that it is about;
// the rest stays a plain Windows 10 workstation. Change it only while no platform call runs.
#ifndef QBSUPPORT_STAND_IN_MACHINE_H
#define QBSUPPORT_STAND_IN_MACHINE_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows_api.h"

namespace stand_in {

// How Windows compares names and paths.
bool SameName(std::string_view left, std::string_view right);

/// Without regard to case.
struct NameOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

/// Without regard to case, the kind of slash and slashes at the end.
struct PathOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

struct Version {
    DWORD major = 10;
    DWORD minor = 0;
    DWORD build = 19044;
    WORD servicePackMajor = 0;
    WORD servicePackMinor = 0;
    WORD suiteMask = VER_SUITE_SINGLEUSERTS;
    BYTE productType = VER_NT_WORKSTATION;
};

/// The libraries and functions that a program must look up by name.
struct Available {
    bool getNativeSystemInfo = true;
    bool getProductInfo = true;
    bool psapi = true;
    bool getProcessMemoryInfo = true;
    bool secur32 = true;
    bool getUserNameEx = true;
};

struct RegistryValue {
    DWORD type = REG_NONE;
    std::string bytes;
};
RegistryValue RegistryText(std::string text);
RegistryValue RegistryNumber(DWORD number);

struct RegistryKey {
    REGSAM access = KEY_ALL_ACCESS;
    std::map<std::string, RegistryValue, NameOrder> values{};
};
/// By the path below the root; the empty path is the root itself. A key exists only when listed,
/// so that a parent is not implied.
using RegistryKeys = std::map<std::string, RegistryKey, NameOrder>;

struct Module {
    std::string name;
    std::string path;
};

struct Process {
    DWORD id = 0;
    std::string name;
    std::vector<Module> modules{};
    /// The error of a module snapshot, ERROR_SUCCESS for none.
    LONG snapshotError = ERROR_SUCCESS;
};

struct VersionValue {
    /// The query path.
    std::string path;
    /// Handed out as they are: a text without its NUL reaches into the next value or, as the last
    /// one, to the end of the block.
    std::string bytes;
    /// The length that the query claims, when not that of the bytes.
    std::optional<UINT> claimedLength = std::nullopt;
};

struct VersionResource {
    /// When false, the size is found and reading fails.
    bool readable = true;
    /// In the order in which they lie in the block.
    std::vector<VersionValue> values{};
};
VersionResource ProductVersion(const std::string& version, WORD language = 0x0409,
                               WORD codePage = 0x04B0);

struct Monitor {
    RECT area{};
    bool primary = false;
    bool readable = true;
};

struct Machine {
    Machine();

    Version version;
    /// What GetProductInfo reports.
    DWORD productInfo = 0x04;
    Available available;

    RegistryKeys currentUser;
    RegistryKeys localMachine;

    /// What GetSystemInfo tells the process, and what GetNativeSystemInfo does.
    WORD architecture = PROCESSOR_ARCHITECTURE_AMD64;
    WORD nativeArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
    DWORD processors = 8;
    MEMORYSTATUSEX memory{};
    PROCESS_MEMORY_COUNTERS processMemory{};

    std::string systemDirectory = "C:\\Windows\\system32";
    std::string windowsDirectory = "C:\\Windows";
    std::string tempDirectory = "C:\\Users\\ann\\AppData\\Local\\Temp\\";
    std::string executablePath = "C:\\Tools\\Viewer\\viewer.exe";
    std::string currentDirectory = "C:\\Users\\ann\\Documents";
    std::map<std::string, DWORD, PathOrder> attributes;

    /// The identifier of the calling process, which must be among the processes for a snapshot.
    DWORD processId = 4312;
    std::vector<Process> processes;
    /// The module snapshots that still fail with ERROR_BAD_LENGTH; each one counts it down.
    int badLengthAnswers = 0;
    /// By the file's name or path.
    std::map<std::string, VersionResource, PathOrder> versionResources;

    std::vector<Monitor> monitors;
    std::map<int, int> systemMetrics;
    std::map<int, int> deviceCaps;
    bool screenContext = true;

    /// By EXTENDED_NAME_FORMAT: 2 the account, 3 the display name.
    std::map<int, std::string> userNames;

    LANGID language = 0x0409;
    std::string languageName = "English (United States)";
    std::map<LCTYPE, std::string> locale;
    /// By the LC_ constant of <clocale>; a missing category cannot be reported.
    std::map<int, std::string> runtimeLocale;

    /// Seconds since 1970, UTC: 5 January 2022, 09:07:03 local time with the default zone.
    std::int64_t clock = 1641370023;
    TIME_ZONE_INFORMATION timeZone{};
    DWORD timeZoneId = TIME_ZONE_ID_STANDARD;

    std::map<std::string, std::string, NameOrder> environment;
    std::map<DWORD, std::string> messages;
};

Machine& CurrentMachine();

int OpenRegistryKeys();
int OpenSnapshots();
int OpenDeviceContexts();

/// Makes a machine the current one for a scope and starts and leaves it with the calls reset.
class ScopedMachine {
public:
    explicit ScopedMachine(Machine machine = {});
    ~ScopedMachine();
    ScopedMachine(const ScopedMachine&) = delete;
    ScopedMachine& operator=(const ScopedMachine&) = delete;

private:
    Machine m_previous;
};

}  // namespace stand_in

#endif
