// Loaded modules, their product versions, and the warnings about them.
#include <tuple>

#include "qbsupport/qbsupport.h"
#include "stand_in/calls.h"
#include "support.h"

using stand_in::ProductVersion;

namespace {

class ModulesTest : public DescribedMachineTest {
protected:
    // The Modules section; checks what it writes to standard output.
    static std::optional<std::string> GetModules(unsigned flags, const char* process,
                                                 const std::string& warning) {
        testing::internal::CaptureStdout();
        auto text = GetInfo(QbSupportModules, flags, process);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), warning);
        return text;
    }

    stand_in::Process& Host() { return m_machine.processes.at(3); }

    const std::string m_snapshotFailed =
        "\n  WARNING: CreateToolhelp32Snapshot (of modules) failed with error ";
};

TEST_F(ModulesTest, OfTheHostAndOfAnotherProcess) {
    m_machine.versionResources.erase("msvcrt.dll");
    EXPECT_EQ(GetModules(7, nullptr, ""),
              "Modules\r\n-------\r\n   C:/Tools/Viewer/viewer.exe  [3.2.1.0]\r\n"
              "   C:/Windows/SYSTEM32/ntdll.dll  [10.0.19041.1288]\r\n"
              "   C:/Windows/System32/KERNEL32.DLL  [10.0.19041.1288]\r\n"
              "   C:/Windows/System32/USER32.dll  [10.0.19041.1202]\r\n"
              "   C:/Windows/System32/msvcrt.dll  [Modul or version info not found!]\r\n\r\n\r\n");
    m_machine.processes.push_back({77, "explorer.exe", {{"second.exe", "C:\\second.exe"}}});
    EXPECT_EQ(GetModules(1, "explorer.exe", ""),
              "Modules (explorer.exe)\r\n-------\r\nC:/Windows/Explorer.EXE  [10.0.19041.1288]\r\n"
              "C:/Windows/SYSTEM32/ntdll.dll  [10.0.19041.1288]\r\n\r\n");
    for (const char* const unknown : {"Explorer.exe", "explorer", "explorer.exe "}) {
        EXPECT_EQ(GetModules(7, unknown, ""), std::nullopt) << unknown;
    }
}

TEST_F(ModulesTest, TriesAgainWhileTheProcessLoadsModules) {
    Host().modules = {{"viewer.exe", "viewer.exe"}};
    m_machine.badLengthAnswers = 99;
    EXPECT_EQ(GetModules(0, nullptr, ""), "viewer.exe  [3.2.1.0]\r\n\r\n");
    EXPECT_EQ(stand_in::CallsMade("CreateToolhelp32Snapshot"), 100U);
}

TEST_F(ModulesTest, WarningTexts) {
    const std::pair<std::string, std::string> rows[] = {
        {"Zugriff verweigert \xFC\xFF.\r\n", "Zugriff verweigert \xFC\xFF"},
        {"With\ta tab. . \t.\x01rest", "With\ta tab"},
        {std::string(255, 'x'), std::string(255, 'x')},
    };
    Host().snapshotError = static_cast<LONG>(0x80070005);
    for (const auto& [message, shown] : rows) {
        m_machine.messages[0x80070005] = message;
        GetModules(0, nullptr, m_snapshotFailed + "-2147024891 (" + shown + ")");
    }
}

TEST_F(ModulesTest, SingleModuleAndVersionResources) {
    m_machine.versionResources["C:\\Tools\\a.dll"] = ProductVersion("1.2.3.4 beta");
    EXPECT_EQ(GetInfo(QbSupportModule, 7, "C:\\Tools\\a.dll"),
              "   C:\\Tools\\a.dll  [1.2.3.4 beta]\r\n");
    EXPECT_EQ(GetInfo(QbSupportModule, 4), "     [Modul or version info not found!]\r\n");
    using Values = std::vector<stand_in::VersionValue>;
    const std::string table = "\\VarFileInfo\\Translation";
    const std::string english("\x09\x04\xB0\x04", 4);
    const std::string german("\x07\x04\xE4\x04", 4);
    const std::string version = "\\StringFileInfo\\040904b0\\ProductVersion";
    const std::string germanVersion = "\\StringFileInfo\\040704e4\\ProductVersion";
    const std::string zero(1, '\0');
    const std::pair<Values, std::string> rows[] = {
        {ProductVersion("7.0", 0x0007, 0x0000).values, "7.0"},
        {{{table, english.substr(0, 3)}, {version, "1.0" + zero}}, ""},
        {{{table, english + german}, {germanVersion, "2.0"}, {version, "1.0" + zero}}, "1.0"},
        // Two bytes for each of its first two characters, of which the platform counts six.
        {{{table, english}, {version, "\x93\xFA\x96\x7B 1.0" + zero, 6}}, "\x93\xFA\x96\x7B 1.0"},
    };
    for (const auto& [values, shown] : rows) {
        m_machine.versionResources["a.dll"] = {true, values};
        EXPECT_EQ(GetInfo(QbSupportModule, 0, "a.dll"), "a.dll  [" + shown + "]\r\n");
    }
}

}  // namespace
