// Hardware, memory, display, user name, paths, file attributes and registry keys.
#include <tuple>

#include "directories/paths.h"
#include "machine/digit_grouping.h"
#include "qbsupport/qbsupport.h"
#include "stand_in/calls.h"
#include "support.h"

using qb_support::CText;

namespace {

class MachineTest : public DescribedMachineTest {};

TEST_F(MachineTest, HardwareAndMemory) {
    m_machine.localMachine.at("HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0")
        .values["VendorIdentifier"] = {REG_BINARY, std::string("GenuineIntel\0ignored", 20)};
    m_machine.available.getNativeSystemInfo = false;
    m_machine.processors = 12;
    EXPECT_EQ(GetInfo(QbSupportHardware, 7),
              "Hardware\r\n--------\r\n"
              "   CPU Architecture:  Intel(R) Core(TM) i7-9700 CPU @ 3.00GHz\n"
              "   CPU Type:          Intel64 Family 6 Model 158 Stepping 13\n"
              "   CPU Level:         GenuineIntel\n   Number of CPUs:    12\n\n\r\n");
    m_machine.memory.ullAvailPhys = 1023;
    m_machine.memory.ullAvailPageFile = 1048575;
    EXPECT_EQ(GetInfo(QbSupportMemory, 7),
              "Memory:\r\n-------\r\n   Physical:         16,777,216 KB\r\n"
              "   Avail. Physical:  0 KB\r\n   Avail. Page File: 1,023 KB\r\n"
              "   Virtual:          137,438,953,344 KB\r\n"
              "   Avail. Virtual:   137,434,718,208 KB\r\n\n"
              "   Process working set:      40,960 KB\r\n   Process peak working set: 49,152 KB\r\n"
              "   Process pagefile usage:   32,768 KB\r\n   Process peak pf. usage:   36,864 KB\r\n"
              "   Process page faults:      12,345\r\n\n\r\n");
}

TEST(DigitGroupingTest, Sizes) {
    const std::tuple<std::string_view, std::string_view, std::uint64_t, std::string_view> rows[] = {
        {"3;0", ",", 0, "0"},
        {"3;0", ",", 999999, "999,999"},
        {"3;0", ",", 18446744073709551615U, "18,446,744,073,709,551,615"},
        {"3;2;0", ",", 1234567890, "1,23,45,67,890"},
        {"3;2", ",", 1234567890, "12345,67,890"},
        {"3", ",", 1234567890, "1234567,890"},
        {"0", ",", 1234567890, "1234567890"},
        {"", ",", 1234567890, "1234567890"},
    };
    for (const auto& [sizes, separator, number, expected] : rows) {
        CText text;
        qb_support::CDigitGrouping(CText(sizes), CText(separator)).Append(text, number);
        EXPECT_EQ(text.View(), expected) << sizes;
    }
}

TEST_F(MachineTest, Display) {
    m_machine.monitors = {{{0, 0, 1920, 1080}, true}, {{-1280, 56, 0, 1080}}};
    m_machine.systemMetrics = {{SM_CXVIRTUALSCREEN, 3200}, {SM_CYVIRTUALSCREEN, 1080}};
    m_machine.deviceCaps = {{LOGPIXELSX, 100}, {LOGPIXELSY, 120}};
    EXPECT_EQ(GetInfo(QbSupportDisplay, 7, "an argument"),
              "Display\r\n-------\r\n"
              "            ID   Left    Top  Right Bottom  Width Height Position\r\n"
              "           --- ------ ------ ------ ------ ------ ------ --------\r\n"
              "   Desktop          0      0   3200   1080   3200   1080            \r\n"
              "   Monitor   1      0      0   1920   1080   1920   1080  Primary\r\n"
              "   Monitor   2  -1280     56      0   1080   1280   1024  \r\n"
              "   Pixels Per Inch: 100 (104%)\r\n   Pixels Per Inch y: 120\r\n"
              "   Pixels Per Inch x: 100\r\n\r\n\r\n");
    m_machine.monitors.assign(10, {{-1234567, 0, 1234567, 7}, false});
    m_machine.monitors[8].readable = false;
    m_machine.deviceCaps = {{LOGPIXELSX, -100}, {LOGPIXELSY, 96}};
    const std::string text = GetInfo(QbSupportDisplay, 0).value_or("");
    EXPECT_EQ(text.substr(text.find("Monitor   8")),
              "Monitor   8 -1234567      0 1234567      7 2469134      7  \r\n"
              "Monitor   9      0      0      0      0      0      0  \r\n"
              "Monitor  10 -1234567      0 1234567      7 2469134      7  \r\n"
              "Pixels Per Inch: -100 (-104%)\r\nPixels Per Inch y: 96\r\n"
              "Pixels Per Inch x: -100\r\n\r\n");
}

TEST_F(MachineTest, UserName) {
    EXPECT_EQ(GetInfo(QbSupportUserName, 7),
              "User Name\r\n---------\r\n   User name:         [WORKSTATION\\ann]\n"
              "   User display name: [Ann Example]\n\n\r\n");
    // One name does not affect the other.
    m_machine.userNames = {{2, std::string(1024, 'x')}, {3, std::string(1023, 'x')}};
    EXPECT_EQ(GetInfo(QbSupportUserName, 0),
              "User name:         [ERROR]\nUser display name: [" + std::string(1023, 'x') + "]\n");
}

TEST_F(MachineTest, SystemDirectories) {
    EXPECT_EQ(GetInfo(QbSupportSystemDirectories, 7),
              "System directories\r\n------------------\r\n"
              "   System:      [C:/Windows/system32] (DIR:RW)\n"
              "   Windows:     [C:/Windows] (DIR:RW)\n"
              "   Temp:        [C:/Users/ann/AppData/Local/Temp/] (DIR:RW)\n"
              "   Exe:         [C:/Tools/Viewer/viewer.exe] (ARCH:RW)\n\n"
              "   AppData:     [C:\\Users\\ann\\Documents] (DIR:RW)\n\r\n");
    // Paths up to their buffers.
    using stand_in::Machine;
    const std::tuple<std::string Machine::*, CText (*)(), std::size_t> rows[] = {
        {&Machine::systemDirectory, qb_support::GetSystemDirectoryPath, 1022},
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

TEST_F(MachineTest, ApplicationDirectoryAndAttributes) {
    char argument[] = "C:\\Tools\\Viewer";
    EXPECT_EQ(GetInfo(QbSupportAppDirectory, 7, argument),
              "   App:         [C:/Tools/Viewer] (DIR:RW)\n");
    EXPECT_STREQ(argument, "C:\\Tools\\Viewer");
    EXPECT_EQ(GetInfo(QbSupportAppDirectory, 0), "App:         [] (N/A)\n");
    const auto textOf = [this](DWORD attributes) {
        m_machine.attributes["C:/file"] = attributes;
        const std::string line = GetInfo(QbSupportAppDirectory, 0, "C:/file").value_or("(\n");
        return line.substr(line.find('(') + 1, line.size() - line.find('(') - 3);
    };
    const char* const bits[] = {"RO",     "HID:RW", "SYS:RW",  "RW",     "DIR:RW", "ARCH:RW",
                                "DEV:RW", "NOR:RW", "TEMP:RW", "SPA:RW", "REP:RW", "COMP:RW",
                                "OFL:RW", "IDX:RW", "ENC:RW",  "RW"};
    for (unsigned bit = 0; bit < std::size(bits); ++bit) {
        EXPECT_EQ(textOf(1U << bit), bits[bit]);
    }
    EXPECT_EQ(textOf(0xFFFF8008), "RW");
    EXPECT_EQ(textOf(0x17), "DIR:HID:SYS:RO");
    EXPECT_EQ(textOf(0xFFFFFFFE), "DIR:ARCH:COMP:DEV:ENC:HID:NOR:IDX:OFL:REP:SPA:SYS:TEMP:RW");
    EXPECT_EQ(textOf(0xFFFFFFFF), "N/A");
}

TEST_F(MachineTest, RegistryKeysAndTheirWidestAccess) {
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
    const std::pair<REGSAM, std::string_view> rows[] = {
        {KEY_ALL_ACCESS, "(RWA)"}, {KEY_READ | KEY_WRITE, "(RW)"}, {KEY_READ, "(RO)"},
        {KEY_WRITE, "(N/A)"},      {KEY_QUERY_VALUE, "(N/A)"},
    };
    for (const auto& [access, text] : rows) {
        m_machine.currentUser["Key"] = {access};
        stand_in::ResetCalls();
        EXPECT_EQ(GetInfo(QbSupportUserAppKey, 0, "Key"),
                  "App:          [HKEY_CURRENT_USER\\Key] " + std::string(text) + '\n');
        EXPECT_EQ(stand_in::CallsMade("RegOpenKeyExA"), 3U) << text;
    }
}

}  // namespace
