// Paths, file attributes and registry keys.
#include <tuple>

#include "directories/paths.h"
#include "directories/registry_key_access.h"
#include "platform/stand_in/calls.h"
#include "qbsupport/qbsupport.h"
#include "support.h"

using qb_support::Text;

namespace {

class DirectoriesTest : public MachineTest {};

TEST_F(DirectoriesTest, SystemDirectoriesWithEveryFlag) {
    EXPECT_EQ(GetInfo(QbSupportSystemDirectories, 7),
              "System directories\r\n------------------\r\n"
              "   System:      [C:/Windows/system32] (DIR:RW)\n"
              "   Windows:     [C:/Windows] (DIR:RW)\n"
              "   Temp:        [C:/Users/ann/AppData/Local/Temp/] (DIR:RW)\n"
              "   Exe:         [C:/Tools/Viewer/viewer.exe] (ARCH:RW)\n"
              "\n"
              "   AppData:     [C:\\Users\\ann\\Documents] (DIR:RW)\n"
              "\r\n");
}

TEST_F(DirectoriesTest, PathsUpToTheirBuffers) {
    using stand_in::Machine;
    const std::tuple<std::string Machine::*, Text (*)(), std::size_t> rows[] = {
        {&Machine::systemDirectory, qb_support::GetSystemDirectoryPath, 1022},
        {&Machine::windowsDirectory, qb_support::GetWindowsDirectoryPath, 1022},
        {&Machine::tempDirectory, qb_support::GetTempDirectoryPath, 1022},
        {&Machine::currentDirectory, qb_support::GetCurrentDirectoryPath, 259},
    };
    for (const auto& [path, query, longest] : rows) {
        m_machine.*path = std::string(longest, 'x');
        EXPECT_EQ(query().View(), std::string(longest, 'x'));
        m_machine.*path += 'x';
        EXPECT_EQ(query().View(), "");
    }
    // The platform cuts this one to what it was offered.
    m_machine.executablePath = std::string(5000, '\\');
    EXPECT_EQ(qb_support::GetExecutablePath().View(), std::string(1022, '/'));
}

TEST_F(DirectoriesTest, ApplicationDirectory) {
    const std::pair<const char*, std::string_view> rows[] = {
        {"C:\\Tools\\Viewer", "   App:         [C:/Tools/Viewer] (DIR:RW)\n"},
        {"C:/Tools/Viewer", "   App:         [C:/Tools/Viewer] (DIR:RW)\n"},
        {"\\\\server\\share\\", "   App:         [//server/share/] (N/A)\n"},
        {"", "   App:         [] (N/A)\n"},
    };
    for (const auto& [argument, line] : rows) {
        EXPECT_EQ(GetInfo(QbSupportAppDirectory, 7, argument), line);
    }
}

TEST_F(DirectoriesTest, AttributesInTheirOrder) {
    const std::pair<DWORD, std::string_view> rows[] = {
        {0x0, "RW"},
        {0x1, "RO"},
        {0x2, "HID:RW"},
        {0x4, "SYS:RW"},
        {0x10, "DIR:RW"},
        {0x20, "ARCH:RW"},
        {0x40, "DEV:RW"},
        {0x80, "NOR:RW"},
        {0x100, "TEMP:RW"},
        {0x200, "SPA:RW"},
        {0x400, "REP:RW"},
        {0x800, "COMP:RW"},
        {0x1000, "OFL:RW"},
        {0x2000, "IDX:RW"},
        {0x4000, "ENC:RW"},
        {0xFFFF8008, "RW"},
        {0x17, "DIR:HID:SYS:RO"},
        {0xFFFFFFFF, "N/A"},
    };
    for (const auto& [attributes, text] : rows) {
        m_machine.attributes["C:/file"] = attributes;
        EXPECT_EQ(qb_support::FileAttributesText(Text("C:/file")).View(), text) << attributes;
    }
    m_machine.attributes["C:/file"] = 0xFFFFFFFE;
    EXPECT_EQ(qb_support::FileAttributesText(Text("C:/file")).View(),
              "DIR:ARCH:COMP:DEV:ENC:HID:NOR:IDX:OFL:REP:SPA:SYS:TEMP:RW");
}

class RegistryKeysTest : public MachineTest {};

TEST_F(RegistryKeysTest, LinesUnderTheirRoots) {
    const char key[] = "Software\\Example\\Viewer";
    m_machine.currentUser[key] = {};
    m_machine.localMachine[key] = {KEY_READ};
    EXPECT_EQ(GetInfo(QbSupportRegistry, 7, key),
              "Registry:\r\n---------\r\n"
              "   User root:    [HKEY_CURRENT_USER\\Software\\Example\\Viewer] (RWA)\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportUserAppKey, 7, key),
              "   App:          [HKEY_CURRENT_USER\\Software\\Example\\Viewer] (RWA)\n");
    EXPECT_EQ(GetInfo(QbSupportMachineAppKey, 7, key),
              "   App:          [HKEY_LOCAL_MACHINE\\Software\\Example\\Viewer] (RO)\n");
    // Without an argument the root itself is tested.
    EXPECT_EQ(GetInfo(QbSupportRegistry, 0), "User root:    [HKEY_CURRENT_USER\\] (RWA)\n");
    EXPECT_EQ(GetInfo(QbSupportMachineAppKey, 0), "App:          [HKEY_LOCAL_MACHINE\\] (RO)\n");
}

TEST_F(RegistryKeysTest, WidestAccess) {
    const std::pair<REGSAM, std::string_view> rows[] = {
        {KEY_ALL_ACCESS, "(RWA)"}, {KEY_READ | KEY_WRITE, "(RW)"}, {KEY_READ, "(RO)"},
        {KEY_WRITE, "(N/A)"},      {KEY_QUERY_VALUE, "(N/A)"},
    };
    for (const auto& [access, text] : rows) {
        m_machine.currentUser["Key"] = {access};
        stand_in::ResetCalls();
        EXPECT_EQ(qb_support::RegistryKeyAccessText(HKEY_CURRENT_USER, Text("Key")).View(), text);
        EXPECT_EQ(stand_in::CallsMade(stand_in::PlatformCall::RegOpenKeyExA), 3U) << text;
    }
}

}  // namespace
