// The Operating System section, the release names, and the searches for the Windows version, with
// what they find and how often they ask.
#include <algorithm>

#include "os/os_name.h"
#include "os/product_edition.h"
#include "os/registry_values.h"
#include "os/version_tests.h"
#include "stand_in/calls.h"
#include "support.h"

using namespace qb_support;
using namespace stand_in;

namespace {

class OsTest : public DescribedMachineTest {
protected:
    auto& Values() { return m_machine.localMachine.at(kCurrentVersionKey).values; }

    // The section's first line, or "none" if the version has no name.
    static std::string Name(DWORD major, DWORD minor, DWORD build, BYTE productType,
                            WORD suites = 0, DWORD platform = VER_PLATFORM_WIN32_NT) {
        CText texts[7];
        std::ranges::for_each(texts, [](CText& text) { text << "stale"; });
        const bool hasName =
            ComposeOsName({156, major, minor, build, platform, {}, 0, 0, suites, productType, 0},
                          texts[0], texts[1], texts[2], texts[3], texts[4], texts[5], texts[6]);
        EXPECT_TRUE(std::ranges::none_of(
            texts, [](const CText& text) { return text.View().starts_with("stale"); }));
        texts[0] << ", " << texts[4];
        return hasName ? std::string(texts[0].View()) : "none";
    }
};

TEST_F(OsTest, SectionRegistryNamesAndFeatureUpdate) {
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 7),
              "Operating System\r\n----------------\r\n   Microsoft Windows 10, 64-bit\n"
              "   Enterprise Edition\n   10.0 Build 19044\n   [21H2 -- 19044.1288]\n   \n"
              "   [OS ID: Windows 10 Enterprise]\n   [Edition ID: Enterprise]\n\r\n");
    const std::tuple<DWORD, const char*, const char*, const char*, DWORD, const char*> rows[] = {
        {0x65, "Windows 10 Core", "Core", "21H2", ~1U, "[21H2 -- 19044.4294967294]\n"},
        {0x65, "Windows 10 Pro", "Core", "23H2", ~0U, "[23H2]\n\n[OS ID: Windows 10 Pro]\n"},
        {0x65, "Windows 10 Core", "Core ", "", 7, "\n[Edition ID: Core ]\n"},
        {0x65, "windows 10 Core", "", "", 7, "\n[OS ID: windows 10 Core]\n[Edition ID: ]\n"},
        {0x00, "Windows 10 ", "", "", 7, ""},
    };
    for (const auto& [productType, productName, editionId, update, revision, end] : rows) {
        m_machine.productInfo = productType;
        Values()["ProductName"] = RegistryText(productName);
        Values()["EditionID"] = RegistryText(editionId);
        Values()["DisplayVersion"] = RegistryText(update);
        Values()["UBR"] = RegistryNumber(revision);
        const std::string text = GetInfo(QbSupportOperatingSystem, 0).value_or("19044\n");
        EXPECT_EQ(text.substr(text.find("19044\n") + 6), end);
    }
}

// Support staff search for these texts. After an intended change of one, enter the new sum.
TEST_F(OsTest, EditionsAddUp) {
    std::uint32_t sum = 0;
    for (m_machine.productInfo = 0; m_machine.productInfo < 0x110; ++m_machine.productInfo) {
        CText edition;
        CText identifier;
        qb_support::GetOsEdition(10, 0, edition, identifier);
        for (const char character : std::string(edition.View()) + '\n') {
            sum = (sum ^ static_cast<std::uint32_t>(character)) * 16777619U;
        }
    }
    EXPECT_EQ(sum, 3119033665U);
}

TEST_F(OsTest, Releases) {
    // The version, and its names on a workstation and on a server.
    const std::tuple<DWORD, DWORD, DWORD, std::string, std::string> rows[] = {
        {10, 1, 22000, "11", "2022"},  {10, 0, 17763, "10", "2019"},
        {10, 0, 14393, "10", "2016"},  {10, 1, 14393, "10+", "2016+"},
        {6, 0, 0, "Vista", "2008"},    {6, 1, 0, "7", "2008 R2"},
        {6, 2, 0, "8", "2012"},        {6, 3, 22000, "8.1", "2012 R2"},
        {6, 4, 0, "8.1+", "2012 R2+"},
    };
    for (const auto& [major, minor, build, workstation, server] : rows) {
        EXPECT_EQ(Name(major, minor, build, 1), "Microsoft Windows " + workstation + ", 64-bit");
        EXPECT_EQ(Name(major, minor, build, 2), "Microsoft Windows Server " + server + ", 64-bit");
    }
    EXPECT_EQ(Name(10, 0, 21999, 1), "Microsoft Windows 10, 64-bit");
    EXPECT_EQ(Name(10, 0, 21999, 2), "Microsoft , 64-bit");
    EXPECT_EQ(Name(5, 3, 0, 2), "Microsoft , 64-bit");
    EXPECT_EQ(Name(7, 0, 22000, 1), "Microsoft , ");
    EXPECT_EQ(Name(4, 0, 1381, 1), "none");
    EXPECT_EQ(Name(10, 0, 19044, 1, 0, 1), "none");
    enum : WORD { kIntel = 0, kItanium = 6, kAmd64 = 9 };
    const std::tuple<DWORD, BYTE, WORD, WORD, int, std::string> rowsOfVersion5[] = {
        {0, 1, 0x82, kIntel, 0, "2000 Professional, 32-bit"},
        {0, 3, 0x82, kIntel, 0, "2000 Datacenter Server, 32-bit"},
        {0, 2, 0x02, kIntel, 0, "2000 Advanced Server, 32-bit"},
        {0, 2, 0, kIntel, 0, "2000 Server, 32-bit"},
        {1, 1, 0x300, kIntel, 0, "XP Home Edition, 32-bit"},
        {1, 1, 0x100, kIntel, 1, "XP Professional, 32-bit"},
        {2, 1, 0, kAmd64, 0, "XP Professional x64 Edition, 64-bit"},
        {2, 1, 0x2000, kAmd64, 0, "Storage Server 2003, 64-bit"},
        {2, 3, 0x2000, kIntel, 0, "Storage Server 2003, Standard Edition, 32-bit"},
        {2, 3, 2, kItanium, 0, "Server 2003, Enterprise Edition for Itanium-based Systems, "},
        {2, 3, 0x82, kItanium, 0, "Server 2003, Datacenter Edition for Itanium-based Systems, "},
        {2, 3, 0x4400, kItanium, 0, "Server 2003, "},
        {2, 3, 0x82, kAmd64, 0, "Server 2003, Datacenter x64 Edition, 64-bit"},
        {2, 2, 0x02, kAmd64, 0, "Server 2003, Enterprise x64 Edition, 64-bit"},
        {2, 0, 0x4400, kAmd64, 1, "Server 2003 R2, Standard x64 Edition, 64-bit"},
        {2, 3, 0x4482, kIntel, 0, "Server 2003, Compute Cluster Edition, 32-bit"},
        {2, 3, 0x482, kIntel, 0, "Server 2003, Datacenter Edition, 32-bit"},
        {2, 3, 0x402, kIntel, 0, "Server 2003, Enterprise Edition, 32-bit"},
        {2, 3, 0x400, PROCESSOR_ARCHITECTURE_ARM64, 0, "Server 2003, Web Edition, "},
    };
    for (const auto& [minor, productType, suites, architecture, isR2, name] : rowsOfVersion5) {
        m_machine.nativeArchitecture = architecture;
        m_machine.systemMetrics[SM_SERVERR2] = isR2;
        EXPECT_EQ(Name(5, minor, 0, productType, suites), "Microsoft Windows " + name);
    }
    m_machine.localMachine.clear();
    EXPECT_EQ(Name(10, 0, 22631, 1), "Microsoft Windows 11, ");
}

// Each row has a version and the number of questions until it is found, or until the search ends.
// The last six versions are not in the library's table. Its scan ends with version 10, minor
// version 5 and service pack 4.
TEST_F(OsTest, VersionSearches) {
    const std::tuple<DWORD, DWORD, WORD, unsigned> rows[] = {
        {10, 0, 0, 26}, {6, 3, 0, 27}, {6, 2, 0, 29},  {6, 1, 1, 31},  {6, 1, 0, 34},
        {5, 1, 3, 31},  {5, 1, 2, 34}, {5, 1, 1, 37},  {5, 1, 0, 40},  {6, 0, 2, 39},
        {6, 0, 1, 42},  {6, 0, 0, 45}, {5, 2, 2, 42},  {5, 2, 1, 45},  {5, 2, 0, 48},
        {5, 0, 4, 48},  {5, 0, 3, 51}, {5, 0, 2, 54},  {5, 0, 1, 57},  {5, 0, 0, 60},
        {6, 3, 1, 54},  {9, 5, 5, 57}, {10, 1, 2, 53}, {11, 0, 0, 25}, {6, 6, 0, 35},
        {10, 6, 0, 32},
    };
    m_machine.localMachine.clear();
    m_machine.available.getProductInfo = false;
    for (const auto& [major, minor, pack, questions] : rows) {
        m_machine.version = {major, minor, 0, pack, 7, VER_SUITE_SINGLEUSERTS, VER_NT_WORKSTATION};
        ResetCalls();
        const auto text = GetInfo(QbSupportOperatingSystem, 0);
        const std::string version = std::to_string(major) + '.' + std::to_string(minor);
        const std::string known = "Service Pack " + std::to_string(pack) + '\n';
        const std::string lines =
            '\n' + version + " Build 0\n" + (pack >= 1 && pack <= 4 ? known : "") + "\n[OS ID: ]\n";
        EXPECT_EQ(CallsMade("VerifyVersionInfoA"), questions) << version;
        EXPECT_EQ(text.has_value(), major <= 10 && minor <= 5);
        EXPECT_EQ(text ? text->substr(text->find('\n')) : lines, lines);
        EXPECT_EQ(text.value_or("").find("Server"), std::string::npos);
    }
}

TEST_F(OsTest, ProductTypesSuitesAndBuildNumbers) {
    for (const BYTE running : {BYTE{1}, BYTE{2}, BYTE{3}, BYTE{4}}) {
        m_machine.version.productType = running;
        EXPECT_EQ(DetectProductType(), running % 4);
    }
    for (unsigned bit = 1; bit <= 0x8000; bit <<= 1) {
        m_machine.version.suiteMask = static_cast<WORD>(bit);
        const bool isAsked = bit != 0x8 && bit != 0x800 && bit != 0x1000;
        EXPECT_EQ(DetectSuiteMask(), isAsked ? bit : 0) << bit;
    }
    const std::tuple<DWORD, DWORD, unsigned> rows[] = {
        {0, 0, 9},          {7, 7, 16},           {11, 11, 11},     {22000, 22000, 32},
        {22631, 22631, 19}, {999999, 999999, 49}, {1000000, 0, 49}, {4294967295, 0, 12},
    };
    for (const auto& [running, detected, questions] : rows) {
        m_machine.version.build = running;
        ResetCalls();
        EXPECT_EQ(DetectBuildNumber(), detected);
        EXPECT_EQ(CallsMade("VerifyVersionInfoA"), questions) << running;
    }
    // A system that answers no question.
    PlanFault(1, FaultMode::FromThenOn);
    EXPECT_EQ(DetectBuildNumber(), 0U);
    EXPECT_EQ(CallsMade("VerifyVersionInfoA"), 1000008U);
}

}  // namespace
