// The sections on the real system, against what that system tells in another way.
#include <direct.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "library.h"

namespace {

const Library& TheLibrary() {
    static const Library library;
    return library;
}

std::string Section(int kind, const char* argument = nullptr) {
    return TheLibrary().Report(kind, 0, argument).value_or("nothing");
}

std::string ForwardSlashes(std::string path) {
    std::ranges::replace(path, '\\', '/');
    return path;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// What Linux tells about the machine below Wine.
std::string LinuxFact(const std::string& file, const std::string& name) {
    std::ifstream stream("Z:\\proc\\" + file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(name)) {
            return line.substr(line.find_first_not_of(" \t", line.find(':') + 1));
        }
    }
    return "";
}

std::string Output(const std::string& program, const std::string& arguments) {
    const std::string command = "\"\"" + program + "\" " + arguments + "\"";
    std::string output;
    if (FILE* const pipe = _popen(command.c_str(), "rb")) {
        for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
            output += static_cast<char>(character);
        }
        _pclose(pipe);
    }
    return output;
}

bool IsWine() {
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

// A copy of a host under a name of its own, to which Wine shows a chosen Windows version.
class HostOnVersion {
public:
    HostOnVersion(const std::string& host, const std::string& version)
        : m_name(host + "_" + version + ".exe"),
          m_key("Software\\Wine\\AppDefaults\\" + m_name),
          m_path(ProgramDirectory() + m_name) {
        CopyFileA((ProgramDirectory() + host + ".exe").c_str(), m_path.c_str(), FALSE);
        RegSetKeyValueA(HKEY_CURRENT_USER, m_key.c_str(), "Version", REG_SZ, version.c_str(),
                        static_cast<DWORD>(version.size() + 1));
    }
    HostOnVersion(const HostOnVersion&) = delete;
    HostOnVersion& operator=(const HostOnVersion&) = delete;
    ~HostOnVersion() {
        RegDeleteKeyA(HKEY_CURRENT_USER, m_key.c_str());
        DeleteFileA(m_path.c_str());
    }

    [[nodiscard]] std::string OperatingSystem() const { return Output(m_path, "3 0"); }

private:
    std::string m_name;
    std::string m_key;
    std::string m_path;
};

struct WindowsVersion {
    const char* setting;
    const char* name;
    const char* number;
    const char* servicePack;
};

void ExpectVersion(const char* host, const WindowsVersion& version) {
    const std::string text = HostOnVersion(host, version.setting).OperatingSystem();
    SCOPED_TRACE(std::string(host) + " on " + version.setting + ":\n" + text);
    const std::string line = Lines(text + '\n').at(0);
    EXPECT_TRUE(line.starts_with("Microsoft Windows " + std::string(version.name)) &&
                line.ends_with(std::string(version.name) + ", 64-bit"));
    EXPECT_NE(text.find("\n" + std::string(version.number)), std::string::npos);
    const std::size_t servicePack = text.find("\nService Pack");
    EXPECT_EQ(servicePack == std::string::npos ? "" : text.substr(servicePack + 1, 14),
              version.servicePack);
}

TEST(Facts, OperatingSystemUnderEveryVersionOfWindows) {
    if (!IsWine()) {
        GTEST_SKIP() << "only Wine can pretend to be another version of Windows";
    }
    // Wine confuses its own names of the two systems with version 6.1.
    constexpr WindowsVersion kVersions[] = {
        {"winxp64", "XP Professional x64 Edition", "5.2 Build 3790\n", "Service Pack 2"},
        {"win2003", "Server 2003, Standard x64 Edition", "5.2 Build 3790\n", "Service Pack 2"},
        {"vista", "Vista", "6.0 Build 6002\n", "Service Pack 2"},
        {"win2008", "Server 2008", "6.0 Build 6002\n", "Service Pack 2"},
        {"win7", "", "6.1 Build 7601\n", "Service Pack 1"},
        {"win2008r2", "", "6.1 Build 7601\n", "Service Pack 1"},
        {"win8", "8", "6.2 Build 9200\n", ""},
        {"win81", "8.1", "6.3 Build 9600\n", ""},
        {"win10", "10", "10.0 Build 1", ""},
    };
    for (const WindowsVersion& version : kVersions) {
        ExpectVersion("small_host", version);
    }
    // A host that does not name the systems it knows is told of none after Windows 8.
    constexpr WindowsVersion kWithoutManifest[] = {
        {"vista", "Vista", "6.0 Build 6002\n", "Service Pack 2"},
        {"win81", "8", "6.2 Build 9200\n", ""},
        {"win10", "8", "6.2 Build 9200\n", ""},
    };
    for (const WindowsVersion& version : kWithoutManifest) {
        ExpectVersion("small_host_without_manifest", version);
    }
    std::printf("Tried: %zu Windows versions\n",
                std::size(kVersions) + std::size(kWithoutManifest));
}

TEST(Facts, DateAndTime) {
    SYSTEMTIME local{};
    SYSTEMTIME after{};
    std::string text;
    do {  // again when the minute changed meanwhile
        GetLocalTime(&local);
        text = Section(2);
        GetLocalTime(&after);
    } while (local.wMinute != after.wMinute);
    char time[32];
    std::snprintf(time, sizeof(time), "%02d %02d:%02d:", local.wDay, local.wHour, local.wMinute);
    const std::string line = Lines(text).at(0);
    EXPECT_EQ(line.substr(8, 9), time);
    EXPECT_EQ(line.substr(20), std::to_string(local.wYear));

    FILETIME universal{};
    FILETIME localAsFile{};
    GetSystemTimeAsFileTime(&universal);
    FileTimeToLocalFileTime(&universal, &localAsFile);
    const auto seconds = [](const FILETIME& moment) {
        return static_cast<long long>(
            ULARGE_INTEGER{{moment.dwLowDateTime, moment.dwHighDateTime}}.QuadPart / 10000000);
    };
    const std::string bias = std::to_string(seconds(universal) - seconds(localAsFile));
    EXPECT_TRUE(Lines(text).at(1).ends_with("h [" + bias + "s]")) << text << bias;
}

TEST(Facts, UserAndLocale) {
    char computer[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = sizeof(computer);
    GetComputerNameA(computer, &size);
    EXPECT_TRUE(Section(5).starts_with("User name:         [" + std::string(computer) + "\\" +
                                       std::getenv("USERNAME") + "]\nUser display name: ["));

    std::string locale;
    for (const LCTYPE type : {LOCALE_ILANGUAGE, LOCALE_SENGLANGUAGE, LOCALE_SABBREVLANGNAME}) {
        wchar_t value[100] = {};
        GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, type, value, 100);
        constexpr const char* kLabels[] = {"ID:        ", "name:      ", "abbr name: "};
        locale += std::string("User locale ") + kLabels[type == LOCALE_ILANGUAGE      ? 0
                                                        : type == LOCALE_SENGLANGUAGE ? 1
                                                                                      : 2];
        for (const wchar_t* letter = value; *letter != 0; ++letter) {
            locale += static_cast<char>(*letter);
        }
        locale += '\n';
    }
    const std::string text = Section(6);
    EXPECT_TRUE(text.starts_with("APP [LC_COLLATE]:      [C]\r\n")) << text;
    EXPECT_TRUE(text.ends_with(locale)) << text;
}

TEST(Facts, HardwareAndMemory) {
    const std::vector<std::string> hardware = Lines(Section(7));
    ASSERT_EQ(hardware.size(), 4U);
    EXPECT_EQ(hardware[3],
              "Number of CPUs:    " + std::string(std::getenv("NUMBER_OF_PROCESSORS")));
    std::string memory = Lines(Section(8)).at(0);
    EXPECT_TRUE(memory.starts_with("Physical:         ") && memory.ends_with(" KB\r")) << memory;
    if (IsWine()) {
        EXPECT_EQ(hardware[0], "CPU Architecture:  " + LinuxFact("cpuinfo", "model name"));
        EXPECT_EQ(hardware[2], "CPU Level:         " + LinuxFact("cpuinfo", "vendor_id"));
        std::erase(memory, ',');
        EXPECT_NEAR(std::stod(memory.substr(18)), std::stod(LinuxFact("meminfo", "MemTotal")), 64);
    }
}

TEST(Facts, DirectoriesAndEnvironment) {
    char current[MAX_PATH] = {};
    _getcwd(current, MAX_PATH);
    const std::string windows = ForwardSlashes(std::getenv("windir"));
    const std::string program = ForwardSlashes(ProgramDirectory()) + "facts_test.exe";
    const std::vector<std::string> lines = Lines(Section(9));
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], "System:      [" + windows + "/system32] (DIR:RW)");
    EXPECT_EQ(lines[1], "Windows:     [" + windows + "] (DIR:RW)");
    EXPECT_TRUE(lines[3].starts_with("Exe:         [" + program + "] (")) << lines[3];
    EXPECT_EQ(lines[4], "");
    EXPECT_TRUE(lines[5].starts_with("AppData:     [" + std::string(current) + "] (DIR:"));
    EXPECT_EQ(Section(10, "C:\\no\\such"), "App:         [C:/no/such] (N/A)\n");

    _putenv("QB_ROOT_PATH=C:\\some where");
    EXPECT_EQ(Section(15, "Qb_Root_Path"), "Environment: [Qb_Root_Path] = [C:\\some where]\n");
    EXPECT_TRUE(Section(14).starts_with("Application: [" + program +
                                        "]\nEnvironment: [QB_ROOT_PATH] = [C:\\some where]\n"));
    _putenv("QB_ROOT_PATH=");
    EXPECT_EQ(Section(15, "QB_ROOT_PATH"), "Environment: [QB_ROOT_PATH] = Not set!\n");
}

TEST(Facts, RegistryKeys) {
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, "Software\\QbSupportTest", &key);
    RegCloseKey(key);
    const std::string line = "[HKEY_CURRENT_USER\\Software\\QbSupportTest] ";
    EXPECT_EQ(Section(11, "Software\\QbSupportTest"), "User root:    " + line + "(RWA)\n");
    EXPECT_EQ(Section(12, "Software\\QbSupportTest"), "App:          " + line + "(RWA)\n");
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\QbSupportTest");
    EXPECT_EQ(Section(12, "Software\\QbSupportTest"), "App:          " + line + "(N/A)\n");
    EXPECT_EQ(Section(13, "Software\\QbSupportTest"),
              "App:          [HKEY_LOCAL_MACHINE\\Software\\QbSupportTest] (N/A)\n");
}

TEST(Facts, Modules) {
    const std::string own = Section(16);
    HMODULE modules[200] = {};
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), modules, sizeof(modules), &size);
    const std::size_t count = size / sizeof(modules[0]);
    for (std::size_t i = 0; i < count; ++i) {
        char path[MAX_PATH] = {};
        GetModuleFileNameA(modules[i], path, MAX_PATH);
        EXPECT_NE(own.find(ForwardSlashes(path) + "  ["), std::string::npos) << path;
    }
    EXPECT_EQ(Lines(own).size(), count + 1) << own;
    EXPECT_NE(own.find("QBSUPPORT.dll  [" PROJECT_VERSION "]\r\n"), std::string::npos) << own;
    EXPECT_EQ(Section(16, "facts_test.exe"), own);
    EXPECT_FALSE(TheLibrary().Report(16, 0, "FACTS_TEST.exe"));
    EXPECT_EQ(Section(17, "QBSUPPORT.dll"), "QBSUPPORT.dll  [" PROJECT_VERSION "]\r\n");
}

TEST(Facts, Display) {
    const std::vector<std::string> lines = Lines(Section(20));
    const auto monitors = static_cast<std::size_t>(GetSystemMetrics(SM_CMONITORS));
    ASSERT_EQ(lines.size(), 3 + monitors + 4);
    char desktop[80];
    const int width = GetSystemMetrics(SM_CXVIRTUALSCREEN);
    const int height = GetSystemMetrics(SM_CYVIRTUALSCREEN);
    std::snprintf(desktop, sizeof(desktop),
                  "Desktop          0      0 %6d %6d %6d %6d            \r", width, height, width,
                  height);
    EXPECT_EQ(lines[2], desktop);
    EXPECT_TRUE(lines[3].ends_with("  Primary\r")) << lines[3];
}

}  // namespace
