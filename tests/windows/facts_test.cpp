// The sections on the real system, against what that system tells in another way.
#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "library.h"

namespace {

std::string Section(int kind, const char* argument = nullptr) {
    static const Library library;
    return library.Report(kind, 0, argument).value_or("nothing");
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

bool IsWine() {
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

// A copy of the host under a name of its own, to which Wine shows a chosen Windows version.
void ExpectVersion(const std::string& host, const std::string& version, const std::string& name,
                   const std::string& number) {
    const std::string copy = host + "_" + version + ".exe";
    const std::string path = ProgramDirectory() + copy;
    const std::string key = "Software\\Wine\\AppDefaults\\" + copy;
    CopyFileA((ProgramDirectory() + host + ".exe").c_str(), path.c_str(), FALSE);
    RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), "Version", REG_SZ, version.c_str(),
                    static_cast<DWORD>(version.size() + 1));
    const std::string text = Output(copy, "3 0");
    RegDeleteKeyA(HKEY_CURRENT_USER, key.c_str());
    DeleteFileA(path.c_str());

    SCOPED_TRACE(copy + ":\n" + text);
    const std::string line = Lines(text + '\n').at(0);
    EXPECT_TRUE(line.starts_with("Microsoft Windows " + name) && line.ends_with(name + ", 64-bit"));
    EXPECT_NE(text.find("\n" + number), std::string::npos);
    EXPECT_EQ(text.find("\nService Pack") != std::string::npos, number < "6.2" && number[0] != '1');
}

TEST(Facts, OperatingSystemUnderSeveralVersionsOfWindows) {
    if (!IsWine()) {
        GTEST_SKIP() << "only Wine can pretend to be another version of Windows";
    }
    ExpectVersion("small_host", "winxp64", "XP Professional x64 Edition", "5.2 Build 3790\n");
    ExpectVersion("small_host", "win2008", "Server 2008", "6.0 Build 6002\n");
    ExpectVersion("small_host", "win7", "", "6.1 Build 7601\n");  // Wine confuses its name
    ExpectVersion("small_host", "win81", "8.1", "6.3 Build 9600\n");
    ExpectVersion("small_host", "win10", "10", "10.0 Build 1");
    // A host that does not name the systems it knows is told of none after Windows 8.
    ExpectVersion("small_host_without_manifest", "vista", "Vista", "6.0 Build 6002\n");
    ExpectVersion("small_host_without_manifest", "win10", "8", "6.2 Build 9200\n");
}

TEST(Facts, UserName) {
    EXPECT_NE(Section(QbSupportUserName).find("\\" + std::string(std::getenv("USERNAME")) + "]\n"),
              std::string::npos);
}

TEST(Facts, HardwareMemoryAndDisplay) {
    EXPECT_EQ(Lines(Section(QbSupportHardware)).at(3),
              "Number of CPUs:    " + std::string(std::getenv("NUMBER_OF_PROCESSORS")));
    ULONGLONG installed = 0;
    std::string memory = Lines(Section(QbSupportMemory)).at(0);
    EXPECT_TRUE(memory.starts_with("Physical:         ") && memory.ends_with(" KB\r")) << memory;
    std::erase_if(memory, [](char letter) { return letter < '0' || letter > '9'; });
    std::ifstream file("Z:\\proc\\meminfo");  // what Linux tells about the machine below Wine
    if (std::string label; file >> label >> installed) {
        EXPECT_NEAR(std::stod(memory), static_cast<double>(installed), 64);
    }
    EXPECT_EQ(Lines(Section(QbSupportDisplay)).size(),
              7 + static_cast<std::size_t>(GetSystemMetrics(SM_CMONITORS)));
}

TEST(Facts, DirectoriesAndEnvironment) {
    const std::string windows = ForwardSlashes(std::getenv("windir"));
    const std::string program = ForwardSlashes(ProgramDirectory()) + "facts_test.exe";
    const std::vector<std::string> lines = Lines(Section(QbSupportSystemDirectories));
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], "System:      [" + windows + "/system32] (DIR:RW)");
    EXPECT_EQ(lines[1], "Windows:     [" + windows + "] (DIR:RW)");
    EXPECT_TRUE(lines[3].starts_with("Exe:         [" + program + "] (")) << lines[3];
    EXPECT_EQ(Section(QbSupportAppDirectory, "C:\\no\\such"), "App:         [C:/no/such] (N/A)\n");
    _putenv("QB_ROOT_PATH=C:\\some where");
    EXPECT_TRUE(Section(QbSupportApplication)
                    .starts_with("Application: [" + program +
                                 "]\nEnvironment: [QB_ROOT_PATH] = [C:\\some where]\n"));
    EXPECT_EQ(Section(QbSupportEnvironment, "Qb_Root_Path"),
              "Environment: [Qb_Root_Path] = [C:\\some where]\n");
}

TEST(Facts, RegistryKeys) {
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, "Software\\QbSupportTest", &key);
    RegCloseKey(key);
    const std::string line = "[HKEY_CURRENT_USER\\Software\\QbSupportTest] ";
    EXPECT_EQ(Section(QbSupportRegistry, "Software\\QbSupportTest"),
              "User root:    " + line + "(RWA)\n");
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\QbSupportTest");
    EXPECT_EQ(Section(QbSupportUserAppKey, "Software\\QbSupportTest"),
              "App:          " + line + "(N/A)\n");
}

TEST(Facts, Modules) {
    const std::string own = Section(QbSupportModules);
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
    EXPECT_EQ(Section(QbSupportModules, "facts_test.exe"), own);
    EXPECT_EQ(Section(QbSupportModule, "QBSUPPORT.dll"),
              "QBSUPPORT.dll  [" PROJECT_VERSION "]\r\n");
}

}  // namespace
