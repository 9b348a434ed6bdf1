// The computer that the stand-in pretends to be: an ordinary Windows 10 workstation, of which a
// test changes the fields that it is about. Change it only while no platform call runs.
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

// Whether two names are the same to Windows, which does not distinguish upper and lower case.
bool SameName(std::string_view left, std::string_view right);

/// Ignores upper and lower case.
struct NameOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

/// Ignores upper and lower case, the kind of slash, and slashes at the end.
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

/// Which of the libraries and functions exist that a program looks up by name.
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
/// By the path below the root. The empty path is the root itself. Only listed keys exist: a key
/// does not imply its parent.
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
    /// The path by which it is queried.
    std::string path;
    /// Handed out as they are. A text without its NUL continues into the next value, or ends with
    /// the block if it is the last one.
    std::string bytes;
    /// The length that the query returns, if it is not that of the bytes.
    std::optional<UINT> claimedLength = std::nullopt;
};

struct VersionResource {
    /// If false, the size can be queried, but reading fails.
    bool readable = true;
    /// In the order in which they are in the block.
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

    /// What GetSystemInfo and GetNativeSystemInfo report.
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

    /// The identifier of the calling process. A snapshot of it needs an entry in `processes`.
    DWORD processId = 4312;
    std::vector<Process> processes;
    /// How many of the next module snapshots fail with ERROR_BAD_LENGTH.
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
    /// By the LC_ constant of <clocale>. For a missing category, setlocale returns null.
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

/// Makes a machine the current one for a scope, and resets the calls at its start and end.
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
