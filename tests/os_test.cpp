// The Operating System section, the release names, the registry readers, and the searches for the
// Windows version: what they find and what they ask.
#include <map>
#include <tuple>

#include "os/os_name.h"
#include "os/product_edition.h"
#include "os/registry_values.h"
#include "os/version_tests.h"
#include "qbsupport/qbsupport.h"
#include "stand_in/calls.h"
#include "support.h"

using qb_support::CText;
using stand_in::RegistryNumber;
using stand_in::RegistryText;
using stand_in::RegistryValue;

namespace {

class OsTest : public DescribedMachineTest {
protected:
    auto& Values() { return m_machine.localMachine.at(qb_support::kCurrentVersionKey).values; }

    // The section's first line, nothing when the version has no name.
    static std::optional<std::string> Name(DWORD major, DWORD minor, DWORD build, BYTE productType,
                                           WORD suites = 0,
                                           DWORD platform = VER_PLATFORM_WIN32_NT) {
        const OSVERSIONINFOEXA version{156, major, minor,  build,       platform, {},
                                       0,   0,     suites, productType, 0};
        CText name("stale");
        CText wordSize("stale");
        CText other[5];
        const bool hasName = ComposeOsName(version, name, other[0], other[1], other[2], wordSize,
                                           other[3], other[4]);
        name << ", " << wordSize;
        return hasName ? std::optional(std::string(name.View())) : std::nullopt;
    }
};

TEST_F(OsTest, Sections) {
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 7),
              "Operating System\r\n----------------\r\n   Microsoft Windows 10, 64-bit\n"
              "   Enterprise Edition\n   10.0 Build 19044\n   [21H2 -- 19044.1288]\n   \n"
              "   [OS ID: Windows 10 Enterprise]\n   [Edition ID: Enterprise]\n\r\n");
    // Nothing in the registry.
    m_machine.version = {6, 1, 7601, 1, 0, 0, VER_NT_WORKSTATION};
    m_machine.localMachine.clear();
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
              "Microsoft Windows 7, 64-bit\nEnterprise Edition\n6.1 Build 7601\nService Pack 1\n"
              "\n[OS ID: ]\n[Edition ID: ]\n");
    m_machine.available.getProductInfo = false;
    m_machine.version.servicePackMajor = 0;
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
              "Microsoft Windows 7, 64-bit\n6.1 Build 7601\n\n[OS ID: ]\n");
    // A version that only the scan finds, and one that no search finds.
    m_machine.version = {10, 1, 20000, 2, 0, 0, VER_NT_SERVER};
    m_machine.localMachine.clear();
    m_machine.productInfo = 0;
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
              "Microsoft Windows Server 2016+, 64-bit\n10.1 Build 20000\nService Pack 2\n"
              "\n[OS ID: ]\n");
    m_machine.version.major = 11;
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 7), std::nullopt);
}

TEST_F(OsTest, RegistryNamesAreShownWhereTheyDiffer) {
    const std::tuple<DWORD, const char*, const char*, std::string_view> rows[] = {
        {0x30, "Windows 10 Professional", "Professional", ""},
        {0x30, "Windows 10 Pro", "Professional", "\n[OS ID: Windows 10 Pro]\n"},
        {0x30, "Windows 10 Professional", "Professional ", "\n[Edition ID: Professional ]\n"},
        {0x65, "windows 10 Core", "", "\n[OS ID: windows 10 Core]\n[Edition ID: ]\n"},
        {0x00, "Windows 10 ", "", ""},
    };
    for (const auto& [productType, productName, editionId, end] : rows) {
        m_machine.productInfo = productType;
        Values()["ProductName"] = RegistryText(productName);
        Values()["EditionID"] = RegistryText(editionId);
        const std::string text = GetInfo(QbSupportOperatingSystem, 0).value_or("]\n");
        EXPECT_EQ(text.substr(text.find("]\n") + 2), end);
    }
}

TEST_F(OsTest, FeatureUpdateLine) {
    const std::tuple<RegistryValue, RegistryValue, std::string> rows[] = {
        {RegistryText("23H2"), RegistryNumber(4294967294), "[23H2 -- 22631.4294967294]\n"},
        {RegistryText("23H2"), RegistryNumber(4294967295), "[23H2]\n"},
        {RegistryValue(), RegistryNumber(7), ""},
    };
    m_machine.version.build = 22631;
    m_machine.productInfo = 0x30;
    for (const auto& [displayVersion, updateRevision, line] : rows) {
        Values() = {{"ProductName", RegistryText("Windows 11 Professional")},
                    {"EditionID", RegistryText("Professional")},
                    {"DisplayVersion", displayVersion},
                    {"UBR", updateRevision}};
        EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
                  "Microsoft Windows 11, 64-bit\nProfessional\n10.0 Build 22631\n" + line);
    }
}

TEST_F(OsTest, Releases) {
    // The build, the name of a workstation, and that of every server.
    const std::tuple<DWORD, DWORD, DWORD, std::string, std::string> rows[] = {
        {10, 0, 22000, "Windows 11", "Windows Server 2022"},
        {10, 1, 30000, "Windows 11", "Windows Server 2022"},
        {10, 0, 21999, "Windows 10", ""},
        {10, 0, 17763, "Windows 10", "Windows Server 2019"},
        {10, 0, 14393, "Windows 10", "Windows Server 2016"},
        {10, 1, 14393, "Windows 10+", "Windows Server 2016+"},
        {6, 0, 0, "Windows Vista", "Windows Server 2008"},
        {6, 1, 0, "Windows 7", "Windows Server 2008 R2"},
        {6, 2, 0, "Windows 8", "Windows Server 2012"},
        {6, 3, 22000, "Windows 8.1", "Windows Server 2012 R2"},
        {6, 4, 0, "Windows 8.1+", "Windows Server 2012 R2+"},
        {5, 3, 0, "", ""},
    };
    for (const auto& [major, minor, build, workstation, server] : rows) {
        EXPECT_EQ(Name(major, minor, build, 1), "Microsoft " + workstation + ", 64-bit");
        for (const BYTE productType : std::initializer_list<BYTE>{0, 2, 3}) {
            EXPECT_EQ(Name(major, minor, build, productType), "Microsoft " + server + ", 64-bit");
        }
    }
    EXPECT_EQ(Name(7, 0, 22000, 1), "Microsoft , ");
    EXPECT_EQ(Name(4, 0, 1381, 1), std::nullopt);
    EXPECT_EQ(Name(10, 0, 19044, 1, 0, 1), std::nullopt);
    // The word size is the machine's and not the process's.
    m_machine.architecture = PROCESSOR_ARCHITECTURE_INTEL;
    EXPECT_EQ(Name(10, 0, 19044, 1), "Microsoft Windows 10, 64-bit");
    m_machine.available.getNativeSystemInfo = false;
    EXPECT_EQ(Name(10, 0, 22631, 1), "Microsoft Windows 11, 32-bit");
}

TEST_F(OsTest, ReleasesOfVersion5) {
    enum : WORD { kIntel, kItanium = PROCESSOR_ARCHITECTURE_IA64, kAmd64 = 9 };
    const std::tuple<DWORD, BYTE, WORD, WORD, int, std::string> rows[] = {
        {0, 1, 0x82, kIntel, 0, "Windows 2000 Professional, 32-bit"},
        {0, 3, 0x82, kIntel, 0, "Windows 2000 Datacenter Server, 32-bit"},
        {0, 2, 0x02, kIntel, 0, "Windows 2000 Advanced Server, 32-bit"},
        {1, 1, 0x300, kIntel, 0, "Windows XP Home Edition, 32-bit"},
        {1, 1, 0x100, kIntel, 1, "Windows XP Professional, 32-bit"},
        {2, 1, 0, kAmd64, 0, "Windows XP Professional x64 Edition, 64-bit"},
        {2, 1, 0x2000, kAmd64, 0, "Windows Storage Server 2003, 64-bit"},
        {2, 3, 0x2000, kIntel, 0, "Windows Storage Server 2003, Standard Edition, 32-bit"},
        {2, 3, 2, kItanium, 0,
         "Windows Server 2003, Enterprise Edition for Itanium-based Systems, "},
        {2, 3, 0x4400, kItanium, 0, "Windows Server 2003, "},
        {2, 3, 0x82, kAmd64, 0, "Windows Server 2003, Datacenter x64 Edition, 64-bit"},
        {2, 2, 0x02, kAmd64, 0, "Windows Server 2003, Enterprise x64 Edition, 64-bit"},
        {2, 0, 0x4400, kAmd64, 1, "Windows Server 2003 R2, Standard x64 Edition, 64-bit"},
        {2, 3, 0x4482, kIntel, 0, "Windows Server 2003, Compute Cluster Edition, 32-bit"},
        {2, 3, 0x400, PROCESSOR_ARCHITECTURE_ARM64, 0, "Windows Server 2003, Web Edition, "},
    };
    for (const auto& [minor, productType, suites, architecture, isR2, name] : rows) {
        m_machine.nativeArchitecture = architecture;
        m_machine.systemMetrics[SM_SERVERR2] = isR2;
        EXPECT_EQ(Name(5, minor, 0, productType, suites), "Microsoft " + name);
    }
}

TEST_F(OsTest, Editions) {
    std::map<DWORD, std::string_view> editions = {
        {0x01, "Ultimate Edition"},
        {0x13, "Windows Storage Server 2008 R2 Essentials"},
        {0x22, "Windows Home Server 2011"},
        {0x26, "Server Enterprise without Hyper-V  (full installation)"},
        {0x37, "Server For SB Solutions EM"},
        {0x67, "Professional with Media Center"},
    };
    for (const DWORD productType : {0x00U, 0x39U, 0x41U, 0x50U, 0x66U, 0x68U, 0x101U}) {
        editions[productType] = "Enterprise";  // as the registry says
    }
    CText text("stale");
    CText identifier("stale");
    for (const auto& [productType, edition] : editions) {
        m_machine.productInfo = productType;
        EXPECT_TRUE(qb_support::GetOsEdition(10, 0, text, identifier));
        EXPECT_EQ(text.View(), edition) << productType;
        EXPECT_EQ(identifier.View(), "Enterprise");
    }
    m_machine.available.getProductInfo = false;
    Values().erase("EditionID");
    EXPECT_TRUE(qb_support::GetOsEdition(10, 0, text, identifier));
    EXPECT_TRUE(text.Empty() && identifier.Empty());
}

TEST_F(OsTest, RegistryValues) {
    const std::string longest(254, 'x');
    m_machine.localMachine["Key"] = {KEY_READ,
                                     {{"longest", RegistryText(longest)},
                                      {"cut", {REG_SZ, std::string("a\0b", 3)}},
                                      {"longer", RegistryText(longest + 'x')},
                                      {"expanded", {REG_EXPAND_SZ, "text"}},
                                      {"number", RegistryNumber(0x87654321)},
                                      {"short", {REG_DWORD, "ab"}},
                                      {"bytes", {REG_BINARY, "abcd"}}}};
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    const std::tuple<const char*, std::optional<std::string>, std::uint32_t> rows[] = {
        {"longest", longest, kNone}, {"cut", "a", kNone},        {"longer", {}, kNone},
        {"expanded", {}, kNone},     {"number", {}, 0x87654321}, {"bytes", {}, kNone},
        {"short", {}, 0x6261},       {"missing", {}, kNone},
    };
    for (const auto& [name, string, number] : rows) {
        CText text("stale");
        std::uint32_t actual = 1;
        EXPECT_EQ(qb_support::ReadRegistryString("Key", name, text), string.has_value()) << name;
        EXPECT_EQ(text.View(), string.value_or("")) << name;
        EXPECT_EQ(qb_support::ReadRegistryDword("Key", name, actual), number != kNone) << name;
        EXPECT_EQ(actual, number) << name;
    }
    m_machine.localMachine["Key"].access = KEY_QUERY_VALUE;  // less than reading asks for
    CText text;
    std::uint32_t number = 1;
    EXPECT_FALSE(qb_support::ReadRegistryString("Key", "cut", text));
    EXPECT_FALSE(qb_support::ReadRegistryDword("Key", "number", number));
    EXPECT_FALSE(qb_support::ReadRegistryString("Missing", "cut", text));
}

class VersionTestsTest : public DescribedMachineTest {
protected:
    static std::uint64_t QuestionsAsked() {
        const std::uint64_t questions = stand_in::CallsMade("VerifyVersionInfoA");
        EXPECT_EQ(stand_in::CallsMade(), 2 * questions);  // each with a condition mask of its own
        stand_in::ResetCalls();
        return questions;
    }

    // What a search makes of a record that is not empty before it.
    static std::string Find(bool (*search)(OSVERSIONINFOEXA&)) {
        OSVERSIONINFOEXA version;
        stand_in::FillWithGarbage(&version, sizeof version);
        CText text(search(version) ? "found " : "none ");
        text << version.dwMajorVersion << '.' << version.dwMinorVersion << '.'
             << version.dwBuildNumber << " pack " << version.wServicePackMajor << '.'
             << version.wServicePackMinor << " platform " << version.dwPlatformId << " type "
             << int{version.wProductType} << " suites " << version.wSuiteMask << ' '
             << qb_support::BufferText(version.szCSDVersion);
        return std::string(text.View());
    }
};

TEST_F(VersionTestsTest, TableInItsOrder) {
    const std::tuple<DWORD, DWORD, WORD, unsigned> rows[] = {
        {10, 0, 0, 3}, {6, 3, 0, 4},  {6, 2, 0, 6},  {6, 1, 1, 8},  {6, 1, 0, 11},
        {5, 1, 3, 8},  {5, 1, 2, 11}, {5, 1, 1, 14}, {5, 1, 0, 17}, {6, 0, 2, 16},
        {6, 0, 1, 19}, {6, 0, 0, 22}, {5, 2, 2, 19}, {5, 2, 1, 22}, {5, 2, 0, 25},
        {5, 0, 4, 25}, {5, 0, 3, 28}, {5, 0, 2, 31}, {5, 0, 1, 34}, {5, 0, 0, 37},
    };
    for (const auto& [major, minor, pack, questions] : rows) {
        m_machine.version = {major, minor, 0, pack, 7, 0x200, 1};
        const std::string packText = std::to_string(pack);
        std::string expected = "found " + std::to_string(major) + '.' + std::to_string(minor) +
                               ".0 pack " + packText + ".0 platform 2 type 1 suites 512 " +
                               (pack != 0 ? "Service Pack " + packText : "");
        EXPECT_EQ(Find(qb_support::DetectVersionFromTable), expected);
        // And one for the product type, 13 for the suites, 9 for the build number.
        EXPECT_EQ(QuestionsAsked(), questions + 23) << major << '.' << minor << ' ' << pack;
    }
}

TEST_F(VersionTestsTest, WhatTheTableLacks) {
    const std::string none = "none 0.0.0 pack 0.0 platform 0 type 0 suites 0 ";
    const std::tuple<DWORD, DWORD, WORD, unsigned, unsigned, std::string> rows[] = {
        {6, 3, 1, 28, 26, "found 6.3.0 pack 1.0 platform 2 type 1 suites 512 Service Pack 1"},
        {9, 5, 5, 20, 37, "found 9.5.0 pack 0.0 platform 2 type 1 suites 512 "},
        {10, 1, 2, 21, 32, "found 10.1.0 pack 2.0 platform 2 type 1 suites 512 Service Pack 2"},
        {11, 0, 0, 20, 5, none},
        {6, 6, 0, 27, 8, none},
        {10, 6, 0, 21, 11, none},
    };
    for (const auto& [major, minor, pack, tableQuestions, scanQuestions, found] : rows) {
        m_machine.version = {major, minor, 0, pack, 7, 0x200, 1};
        EXPECT_EQ(Find(qb_support::DetectVersionFromTable), none);
        EXPECT_EQ(QuestionsAsked(), tableQuestions) << major << '.' << minor;
        EXPECT_EQ(Find(qb_support::DetectVersionByScan), found);
        EXPECT_EQ(QuestionsAsked(), scanQuestions) << major << '.' << minor;
    }
}

TEST_F(VersionTestsTest, ProductTypesAndSuites) {
    const std::tuple<BYTE, unsigned, unsigned> rows[] = {
        {1, 1, 1}, {3, 3, 2}, {2, 2, 3}, {4, 0, 3}};
    for (const auto& [running, detected, questions] : rows) {
        m_machine.version.productType = running;
        EXPECT_EQ(qb_support::DetectProductType(), detected);
        EXPECT_EQ(QuestionsAsked(), questions);
    }
    for (unsigned bit = 1; bit <= 0x8000; bit <<= 1) {
        m_machine.version.suiteMask = static_cast<WORD>(bit);
        const bool isAsked = bit != 0x8 && bit != 0x800 && bit != 0x1000;
        EXPECT_EQ(qb_support::DetectSuiteMask(), isAsked ? bit : 0) << bit;
        EXPECT_EQ(QuestionsAsked(), 13U);
    }
}

TEST_F(VersionTestsTest, BuildNumbers) {
    const std::tuple<DWORD, DWORD, unsigned> rows[] = {
        {0, 0, 9},          {7, 7, 16},           {11, 11, 11},     {22000, 22000, 32},
        {22631, 22631, 19}, {999999, 999999, 49}, {1000000, 0, 49}, {4294967295, 0, 12},
    };
    for (const auto& [running, detected, questions] : rows) {
        m_machine.version.build = running;
        EXPECT_EQ(qb_support::DetectBuildNumber(), detected);
        EXPECT_EQ(QuestionsAsked(), questions) << running;
    }
    // A system that refuses to answer.
    stand_in::PlanFault(1, stand_in::FaultMode::FromThenOn);
    EXPECT_EQ(qb_support::DetectBuildNumber(), 0U);
    EXPECT_EQ(QuestionsAsked(), 1000008U);
}

}  // namespace
