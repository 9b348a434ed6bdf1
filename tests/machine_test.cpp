// The machine: hardware, memory, display and user name.
#include <tuple>

#include "machine/digit_grouping.h"
#include "machine/processor_description.h"
#include "qbsupport/qbsupport.h"
#include "support.h"

using qb_support::Text;

namespace {

constexpr char kProcessorKey[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

class HardwareTest : public MachineTest {
protected:
    auto& Values() { return m_machine.localMachine.at(kProcessorKey).values; }
};

TEST_F(HardwareTest, WithEveryFlag) {
    Values()["VendorIdentifier"] = {REG_BINARY, std::string("GenuineIntel\0ignored", 20)};
    m_machine.available.getNativeSystemInfo = false;
    m_machine.processors = 12;
    EXPECT_EQ(GetInfo(QbSupportHardware, 7),
              "Hardware\r\n--------\r\n"
              "   CPU Architecture:  Intel(R) Core(TM) i7-9700 CPU @ 3.00GHz\n"
              "   CPU Type:          Intel64 Family 6 Model 158 Stepping 13\n"
              "   CPU Level:         GenuineIntel\n"
              "   Number of CPUs:    12\n"
              "\n\r\n");
}

TEST_F(HardwareTest, ReadsTheOtherValuesWhenOneIsMissing) {
    Values().erase("ProcessorNameString");
    const qb_support::RegistryKey key(HKEY_LOCAL_MACHINE, kProcessorKey, KEY_READ);
    Text name("as before");
    Text identifier;
    Text vendor;
    EXPECT_FALSE(qb_support::ReadProcessorDescription(key, name, identifier, vendor));
    EXPECT_EQ(name.View(), "as before");
    EXPECT_EQ(identifier.View(), "Intel64 Family 6 Model 158 Stepping 13");
    EXPECT_EQ(vendor.View(), "GenuineIntel");
}

class MemoryTest : public MachineTest {};

TEST_F(MemoryTest, WithEveryFlag) {
    m_machine.memory.ullAvailPhys = 1023;
    m_machine.memory.ullAvailPageFile = 1048575;
    EXPECT_EQ(GetInfo(QbSupportMemory, 7),
              "Memory:\r\n-------\r\n"
              "   Physical:         16,777,216 KB\r\n"
              "   Avail. Physical:  0 KB\r\n"
              "   Avail. Page File: 1,023 KB\r\n"
              "   Virtual:          137,438,953,344 KB\r\n"
              "   Avail. Virtual:   137,434,718,208 KB\r\n"
              "\n"
              "   Process working set:      40,960 KB\r\n"
              "   Process peak working set: 49,152 KB\r\n"
              "   Process pagefile usage:   32,768 KB\r\n"
              "   Process peak pf. usage:   36,864 KB\r\n"
              "   Process page faults:      12,345\r\n"
              "\n\r\n");
}

TEST_F(MemoryTest, DigitGrouping) {
    const std::tuple<std::string_view, std::string_view, std::uint64_t, std::string_view> rows[] = {
        {"3;0", ",", 0, "0"},
        {"3;0", ",", 999, "999"},
        {"3;0", ",", 1000, "1,000"},
        {"3;0", ",", 999999, "999,999"},
        {"3;0", ",", 18446744073709551615U, "18,446,744,073,709,551,615"},
        {"3;0", "<->", 1234567, "1<->234<->567"},
        {"3;0", "", 1234567, "1234567"},
        {"3;2;0", ",", 1234567890, "1,23,45,67,890"},
        {"3;2", ",", 1234567890, "12345,67,890"},
        {"3", ",", 1234567890, "1234567,890"},
        {"12;0", " ", 1234567890123, "1 234567890123"},
        {"0", ",", 1234567890, "1234567890"},
        {"0;0", ",", 1234567890, "1234567890"},
        {"", ",", 1234567890, "1234567890"},
        {"x", ",", 1234567890, "1234567890"},
        {"99999999999999999999;0", ",", 1234567890, "1234567890"},
    };
    for (const auto& [sizes, separator, number, expected] : rows) {
        Text text;
        qb_support::DigitGrouping(Text(sizes), Text(separator)).Append(text, number);
        EXPECT_EQ(text.View(), expected) << sizes;
    }
}

class DisplayTest : public MachineTest {};

TEST_F(DisplayTest, WithEveryFlag) {
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
              "   Pixels Per Inch: 100 (104%)\r\n"
              "   Pixels Per Inch y: 120\r\n"
              "   Pixels Per Inch x: 100\r\n"
              "\r\n\r\n");
}

TEST_F(DisplayTest, ManyWideUnreadableMonitorsAndAnOddResolution) {
    m_machine.monitors.assign(10, {{-1234567, 0, 1234567, 7}, false});
    m_machine.monitors[8].readable = false;
    m_machine.deviceCaps = {{LOGPIXELSX, -100}, {LOGPIXELSY, 96}};
    const std::string text = GetInfo(QbSupportDisplay, 0).value_or("");
    EXPECT_EQ(text.substr(text.find("Monitor   8")),
              "Monitor   8 -1234567      0 1234567      7 2469134      7  \r\n"
              "Monitor   9      0      0      0      0      0      0  \r\n"
              "Monitor  10 -1234567      0 1234567      7 2469134      7  \r\n"
              "Pixels Per Inch: -100 (-104%)\r\n"
              "Pixels Per Inch y: 96\r\nPixels Per Inch x: -100\r\n\r\n");
}

class UserNameTest : public MachineTest {};

TEST_F(UserNameTest, WithEveryFlag) {
    EXPECT_EQ(GetInfo(QbSupportUserName, 7),
              "User Name\r\n---------\r\n"
              "   User name:         [WORKSTATION\\ann]\n"
              "   User display name: [Ann Example]\n"
              "\n\r\n");
}

TEST_F(UserNameTest, OneNameDoesNotAffectTheOther) {
    m_machine.userNames = {{2, std::string(1024, 'x')}, {3, std::string(1023, 'x')}};
    EXPECT_EQ(GetInfo(QbSupportUserName, 0),
              "User name:         [ERROR]\nUser display name: [" + std::string(1023, 'x') + "]\n");
    m_machine.userNames = {{2, ""}};
    EXPECT_EQ(GetInfo(QbSupportUserName, 0), "User name:         []\nUser display name: [ERROR]\n");
}

}  // namespace
