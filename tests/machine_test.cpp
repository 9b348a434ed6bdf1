// Hardware, memory, user name, display, directories, registry keys and modules.
#include <climits>
#include <sstream>

#include "support.h"

using MachineTest = DescribedMachineTest;

TEST_F(MachineTest, HardwareAndMemory) {
    m_machine.localMachine.at("HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0")
        .values["VendorIdentifier"] = {REG_BINARY, std::string("GenuineIntel\0ignored", 20)};
    m_machine.available.getNativeSystemInfo = false;
    m_machine.processors = UINT_MAX;
    EXPECT_EQ(GetInfo(QbSupportHardware, 7),
              "Hardware\r\n--------\r\n"
              "   CPU Architecture:  Intel(R) Core(TM) i7-9700 CPU @ 3.00GHz\n"
              "   CPU Type:          Intel64 Family 6 Model 158 Stepping 13\n"
              "   CPU Level:         GenuineIntel\n   Number of CPUs:    -1\n\n\r\n");
    m_machine.memory.ullTotalPhys = ULLONG_MAX;
    m_machine.memory.ullAvailPhys = 1023;
    m_machine.memory.ullAvailPageFile = 1048575;
    EXPECT_EQ(GetInfo(QbSupportMemory, 7),
              "Memory:\r\n-------\r\n   Physical:         18,014,398,509,481,983 KB\r\n"
              "   Avail. Physical:  0 KB\r\n   Avail. Page File: 1,023 KB\r\n"
              "   Virtual:          137,438,953,344 KB\r\n"
              "   Avail. Virtual:   137,434,718,208 KB\r\n\n"
              "   Process working set:      40,960 KB\r\n   Process peak working set: 49,152 KB\r\n"
              "   Process pagefile usage:   32,768 KB\r\n   Process peak pf. usage:   36,864 KB\r\n"
              "   Process page faults:      12,345\r\n\n\r\n");
}

TEST_F(MachineTest, UserNameAndDisplay) {
    EXPECT_EQ(GetInfo(QbSupportUserName, 7),
              "User Name\r\n---------\r\n   User name:         [WORKSTATION\\ann]\n"
              "   User display name: [Ann Example]\n\n\r\n");
    m_machine.monitors = {{{0, 0, 1920, 1080}, true},
                          {{-1280, 56, 0, 1080}},
                          {{1, 2, 3, 4}, true, false},
                          {{INT_MIN, INT_MAX, INT_MAX, INT_MIN}}};
    m_machine.systemMetrics = {{SM_CXVIRTUALSCREEN, 3200}, {SM_CYVIRTUALSCREEN, 1080}};
    m_machine.deviceCaps = {{LOGPIXELSX, -100}, {LOGPIXELSY, 120}};
    EXPECT_EQ(GetInfo(QbSupportDisplay, 7, "an argument"),
              "Display\r\n-------\r\n"
              "            ID   Left    Top  Right Bottom  Width Height Position\r\n"
              "           --- ------ ------ ------ ------ ------ ------ --------\r\n"
              "   Desktop          0      0   3200   1080   3200   1080            \r\n"
              "   Monitor   1      0      0   1920   1080   1920   1080  Primary\r\n"
              "   Monitor   2  -1280     56      0   1080   1280   1024  \r\n"
              "   Monitor   3      0      0      0      0      0      0  \r\n"
              "   Monitor   4 -2147483648 2147483647 2147483647 -2147483648     -1      1  \r\n"
              "   Pixels Per Inch: -100 (-104%)\r\n   Pixels Per Inch y: 120\r\n"
              "   Pixels Per Inch x: -100\r\n\r\n\r\n");
}

TEST_F(MachineTest, Directories) {
    EXPECT_EQ(GetInfo(QbSupportSystemDirectories, 7),
              "System directories\r\n------------------\r\n   System:      [C:/Windows/system32] "
              "(DIR:RW)\n   Windows:     [C:/Windows] (DIR:RW)\n"
              "   Temp:        [C:/Users/ann/AppData/Local/Temp/] (DIR:RW)\n"
              "   Exe:         [C:/Tools/Viewer/viewer.exe] (ARCH:RW)\n\n"
              "   AppData:     [C:\\Users\\ann\\Documents] (DIR:RW)\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportAppDirectory, 7, "C:\\Tools\\Viewer"),
              "   App:         [C:/Tools/Viewer] (DIR:RW)\n");
    // What each bit shows, then all bits, which mean an error, then all bits but the lowest.
    std::istringstream texts(
        "RO HID:RW SYS:RW RW DIR:RW ARCH:RW DEV:RW NOR:RW TEMP:RW SPA:RW REP:RW COMP:RW OFL:RW "
        "IDX:RW ENC:RW RW N/A DIR:ARCH:COMP:DEV:ENC:HID:NOR:IDX:OFL:REP:SPA:SYS:TEMP:RW");
    std::string text;
    for (unsigned row = 0; texts >> text; ++row) {
        m_machine.attributes["C:/file"] = row < 16 ? 1U << row : ~(row - 16);
        EXPECT_EQ(GetInfo(QbSupportAppDirectory, 0, "C:/file"),
                  "App:         [C:/file] (" + text + ")\n");
    }
}

TEST_F(MachineTest, RegistryKeys) {
    m_machine.currentUser["Software\\Viewer"] = {};
    EXPECT_EQ(GetInfo(QbSupportRegistry, 7, "Software\\Viewer"),
              "Registry:\r\n---------\r\n"
              "   User root:    [HKEY_CURRENT_USER\\Software\\Viewer] (RWA)\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportUserAppKey, 7, "Software\\Viewer"),
              "   App:          [HKEY_CURRENT_USER\\Software\\Viewer] (RWA)\n");
    EXPECT_EQ(GetInfo(QbSupportMachineAppKey, 7, "Software\\Viewer"),
              "   App:          [HKEY_LOCAL_MACHINE\\Software\\Viewer] (N/A)\n");
    // Without an argument, the access to the root key itself is tested.
    EXPECT_EQ(GetInfo(QbSupportRegistry, 0), "User root:    [HKEY_CURRENT_USER\\] (RWA)\n");
    EXPECT_EQ(GetInfo(QbSupportMachineAppKey, 0), "App:          [HKEY_LOCAL_MACHINE\\] (RO)\n");
}

TEST_F(MachineTest, ModulesOfTheHostAndOfAnotherProcess) {
    m_machine.versionResources.erase("msvcrt.dll");
    EXPECT_EQ(GetInfo(QbSupportModules, 7),
              "Modules\r\n-------\r\n   C:/Tools/Viewer/viewer.exe  [3.2.1.0]\r\n"
              "   C:/Windows/SYSTEM32/ntdll.dll  [10.0.19041.1288]\r\n"
              "   C:/Windows/System32/KERNEL32.DLL  [10.0.19041.1288]\r\n"
              "   C:/Windows/System32/USER32.dll  [10.0.19041.1202]\r\n"
              "   C:/Windows/System32/msvcrt.dll  [Modul or version info not found!]\r\n\r\n\r\n");
    m_machine.processes.push_back({77, "explorer.exe", {{"second.exe", "C:\\second.exe"}}});
    EXPECT_EQ(GetInfo(QbSupportModules, 1, "explorer.exe"),
              "Modules (explorer.exe)\r\n-------\r\nC:/Windows/Explorer.EXE  [10.0.19041.1288]\r\n"
              "C:/Windows/SYSTEM32/ntdll.dll  [10.0.19041.1288]\r\n\r\n");
    for (const char* const unknown : {"Explorer.exe", "explorer", "explorer.exe "}) {
        EXPECT_EQ(GetInfo(QbSupportModules, 7, unknown), std::nullopt) << unknown;
    }
    EXPECT_EQ(GetInfo(QbSupportModule, 7, "C:\\a.dll"),
              "   C:\\a.dll  [Modul or version info not found!]\r\n");
}
