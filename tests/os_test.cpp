// The Operating System section, the release names and the registry readers.
#include <tuple>

#include "os/os_name.h"
#include "os/registry_values.h"
#include "qbsupport/qbsupport.h"
#include "support.h"

using qb_support::Text;
using stand_in::RegistryNumber;
using stand_in::RegistryText;
using stand_in::RegistryValue;

namespace {

class OsTest : public MachineTest {
protected:
    auto& Values() { return m_machine.localMachine.at(qb_support::kCurrentVersionKey).values; }
};

TEST_F(OsTest, SectionWithEveryFlag) {
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 7),
              "Operating System\r\n----------------\r\n"
              "   Microsoft Windows 10, 64-bit\n"
              "   Enterprise Edition\n"
              "   10.0 Build 19044\n"
              "   [21H2 -- 19044.1288]\n"
              "   \n"
              "   [OS ID: Windows 10 Enterprise]\n"
              "   [Edition ID: Enterprise]\n"
              "\r\n");
}

TEST_F(OsTest, SectionWithNothingInTheRegistry) {
    m_machine.version = {6, 1, 7601, 1, 0, 0, VER_NT_WORKSTATION};
    m_machine.localMachine.clear();
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
              "Microsoft Windows 7, 64-bit\nEnterprise Edition\n6.1 Build 7601\nService Pack 1\n"
              "\n[OS ID: ]\n[Edition ID: ]\n");
    m_machine.available.getProductInfo = false;
    m_machine.version.servicePackMajor = 0;
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
              "Microsoft Windows 7, 64-bit\n6.1 Build 7601\n\n[OS ID: ]\n");
}

TEST_F(OsTest, SectionFailsForAVersionThatNoSearchFinds) {
    m_machine.version.major = 11;
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 7), std::nullopt);
}

TEST_F(OsTest, SectionOfAVersionThatOnlyTheScanFinds) {
    m_machine.version = {10, 1, 20000, 2, 0, 0, VER_NT_SERVER};
    m_machine.localMachine.clear();
    m_machine.productInfo = 0;
    EXPECT_EQ(GetInfo(QbSupportOperatingSystem, 0),
              "Microsoft Windows Server 2016+, 64-bit\n10.1 Build 20000\nService Pack 2\n"
              "\n[OS ID: ]\n");
}

TEST_F(OsTest, RegistryNamesAreShownWhereTheyDiffer) {
    const std::tuple<DWORD, const char*, const char*, std::string_view> rows[] = {
        {0x30, "Windows 10 Professional", "Professional", ""},
        {0x30, "Windows 10 Pro", "Professional", "\n[OS ID: Windows 10 Pro]\n"},
        {0x04, "Windows 10 Enterprise Edition", "Enterprise", "\n[Edition ID: Enterprise]\n"},
        {0x04, "Windows 10 Enterprise Edition", "Enterprise Edition ",
         "\n[Edition ID: Enterprise Edition ]\n"},
        {0x04, "windows 10 Enterprise Edition", "",
         "\n[OS ID: windows 10 Enterprise Edition]\n[Edition ID: ]\n"},
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
    const RegistryValue absent{REG_NONE, ""};
    const std::tuple<RegistryValue, RegistryValue, std::string> rows[] = {
        {RegistryText("23H2"), RegistryNumber(0), "[23H2 -- 22631.0]\n"},
        {RegistryText("23H2"), RegistryNumber(4294967294), "[23H2 -- 22631.4294967294]\n"},
        {RegistryText("23H2"), RegistryNumber(4294967295), "[23H2]\n"},
        {RegistryText("23H2"), absent, "[23H2]\n"},
        {RegistryText(""), RegistryNumber(7), ""},
        {absent, RegistryNumber(7), ""},
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

class OsNameTest : public MachineTest {
protected:
    // The section's first line, nothing when the version has no name.
    std::optional<std::string> Name(DWORD major, DWORD minor, DWORD build, BYTE productType,
                                    WORD suites = 0, DWORD platform = VER_PLATFORM_WIN32_NT) {
        const OSVERSIONINFOEXA version{156, major, minor,  build,       platform, {},
                                       0,   0,     suites, productType, 0};
        Text name("stale");
        Text wordSize("stale");
        Text edition;
        Text product;
        Text editionId;
        Text label;
        Text revision;
        const bool hasName =
            ComposeOsName(version, name, edition, product, editionId, wordSize, label, revision);
        EXPECT_EQ(product.View(), "Windows 10 Enterprise");
        EXPECT_EQ(editionId.View(), "Enterprise");
        EXPECT_EQ(label.View(), "21H2");
        EXPECT_EQ(revision.View(), "1288");
        EXPECT_EQ(hasName, !name.Empty());
        name << ", " << wordSize;
        return hasName ? std::optional(std::string(name.View())) : std::nullopt;
    }
};

TEST_F(OsNameTest, Releases) {
    const std::tuple<DWORD, DWORD, DWORD, BYTE, std::string> rows[] = {
        {10, 0, 22000, 1, "Windows 11, 64-bit"},
        {10, 3, 22000, 1, "Windows 11, 64-bit"},
        {10, 0, 22000, 3, "Windows Server 2022, 64-bit"},
        {10, 1, 30000, 0, "Windows Server 2022, 64-bit"},
        {10, 0, 21999, 1, "Windows 10, 64-bit"},
        {10, 0, 14393, 1, "Windows 10, 64-bit"},
        {10, 0, 14393, 3, "Windows Server 2016, 64-bit"},
        {10, 0, 17763, 2, "Windows Server 2019, 64-bit"},
        {10, 0, 20348, 3, ", 64-bit"},
        {10, 1, 21999, 1, "Windows 10+, 64-bit"},
        {10, 1, 14393, 3, "Windows Server 2016+, 64-bit"},
        {6, 0, 0, 1, "Windows Vista, 64-bit"},
        {6, 0, 0, 3, "Windows Server 2008, 64-bit"},
        {6, 1, 0, 1, "Windows 7, 64-bit"},
        {6, 1, 0, 2, "Windows Server 2008 R2, 64-bit"},
        {6, 2, 0, 1, "Windows 8, 64-bit"},
        {6, 2, 0, 3, "Windows Server 2012, 64-bit"},
        {6, 3, 22000, 1, "Windows 8.1, 64-bit"},
        {6, 3, 0, 0, "Windows Server 2012 R2, 64-bit"},
        {6, 4, 0, 1, "Windows 8.1+, 64-bit"},
        {6, 5, 0, 3, "Windows Server 2012 R2+, 64-bit"},
        {5, 3, 0, 1, ", 64-bit"},
        {7, 0, 22000, 1, ", "},
        {11, 0, 22000, 3, ", "},
    };
    for (const auto& [major, minor, build, productType, name] : rows) {
        EXPECT_EQ(Name(major, minor, build, productType), "Microsoft " + name);
    }
    EXPECT_EQ(Name(4, 0, 1381, 1), std::nullopt);
    EXPECT_EQ(Name(10, 0, 19044, 1, 0, 1), std::nullopt);
}

TEST_F(OsNameTest, ReleasesOfVersion5) {
    constexpr WORD kAmd64 = PROCESSOR_ARCHITECTURE_AMD64;
    constexpr WORD kIntel = PROCESSOR_ARCHITECTURE_INTEL;
    constexpr WORD kItanium = PROCESSOR_ARCHITECTURE_IA64;
    const std::tuple<DWORD, BYTE, WORD, WORD, int, std::string> rows[] = {
        {0, 1, 0x82, kIntel, 0, "Windows 2000 Professional, 32-bit"},
        {0, 3, 0x82, kIntel, 0, "Windows 2000 Datacenter Server, 32-bit"},
        {0, 2, 0x02, kIntel, 0, "Windows 2000 Advanced Server, 32-bit"},
        {0, 0, 0x10, kIntel, 0, "Windows 2000 Server, 32-bit"},
        {1, 1, 0x300, kIntel, 0, "Windows XP Home Edition, 32-bit"},
        {1, 1, 0x100, kIntel, 1, "Windows XP Professional, 32-bit"},
        {2, 1, 0, kAmd64, 0, "Windows XP Professional x64 Edition, 64-bit"},
        {2, 1, 0, kIntel, 0, "Windows Server 2003, , 32-bit"},
        {2, 1, 0, kAmd64, 1, "Windows Server 2003 R2, 64-bit"},
        {2, 1, 0x2000, kAmd64, 0, "Windows Storage Server 2003, 64-bit"},
        {2, 3, 0x2000, kIntel, 0, "Windows Storage Server 2003, Standard Edition, 32-bit"},
        {2, 3, 0x2002, kIntel, 0, "Windows Server 2003, Enterprise Edition, 32-bit"},
        {2, 3, 0x2000, kIntel, 1, "Windows Server 2003 R2, Standard Edition, 32-bit"},
        {2, 3, 0x82, kItanium, 0,
         "Windows Server 2003, Datacenter Edition for Itanium-based Systems, "},
        {2, 3, 0x02, kItanium, 0,
         "Windows Server 2003, Enterprise Edition for Itanium-based Systems, "},
        {2, 3, 0x4400, kItanium, 0, "Windows Server 2003, "},
        {2, 3, 0x82, kAmd64, 0, "Windows Server 2003, Datacenter x64 Edition, 64-bit"},
        {2, 2, 0x02, kAmd64, 0, "Windows Server 2003, Enterprise x64 Edition, 64-bit"},
        {2, 0, 0x4400, kAmd64, 1, "Windows Server 2003 R2, Standard x64 Edition, 64-bit"},
        {2, 3, 0x4482, kIntel, 0, "Windows Server 2003, Compute Cluster Edition, 32-bit"},
        {2, 3, 0x482, kIntel, 0, "Windows Server 2003, Datacenter Edition, 32-bit"},
        {2, 3, 0x402, kIntel, 0, "Windows Server 2003, Enterprise Edition, 32-bit"},
        {2, 3, 0x400, PROCESSOR_ARCHITECTURE_ARM64, 0, "Windows Server 2003, Web Edition, "},
    };
    for (const auto& [minor, productType, suites, architecture, isR2, name] : rows) {
        m_machine.nativeArchitecture = architecture;
        m_machine.systemMetrics[SM_SERVERR2] = isR2;
        EXPECT_EQ(Name(5, minor, 0, productType, suites), "Microsoft " + name);
    }
}

TEST_F(OsNameTest, WordSizeIsTheMachinesAndNotTheProcesss) {
    m_machine.architecture = PROCESSOR_ARCHITECTURE_INTEL;
    EXPECT_EQ(Name(10, 0, 19044, 1), "Microsoft Windows 10, 64-bit");
    m_machine.available.getNativeSystemInfo = false;
    EXPECT_EQ(Name(10, 0, 22631, 1), "Microsoft Windows 11, 32-bit");
}

class RegistryValuesTest : public MachineTest {
protected:
    // What a read gives, "none" when it fails.
    static std::string Read(const char* key, const char* name) {
        Text text("stale");
        const bool isRead = qb_support::ReadRegistryString(key, name, text);
        EXPECT_TRUE(isRead || text.Empty());
        return isRead ? std::string(text.View()) : "none";
    }
    static std::optional<std::uint32_t> ReadNumber(const char* key, const char* name) {
        std::uint32_t number = 1;
        const bool isRead = qb_support::ReadRegistryDword(key, name, number);
        EXPECT_TRUE(isRead || number == 0xFFFFFFFF);
        return isRead ? std::optional(number) : std::nullopt;
    }
};

TEST_F(RegistryValuesTest, Values) {
    const std::string longest(254, 'x');
    m_machine.localMachine["Key"] = {KEY_READ,
                                     {{"longest", RegistryText(longest)},
                                      {"longer", RegistryText(longest + 'x')},
                                      {"cut", {REG_SZ, std::string("a\0b", 3)}},
                                      {"empty", {REG_SZ, ""}},
                                      {"list", {REG_MULTI_SZ, "text"}},
                                      {"number", RegistryNumber(0x87654321)},
                                      {"bytes", {REG_BINARY, "abcd"}}}};
    EXPECT_EQ(Read("Key", "longest"), longest);
    EXPECT_EQ(Read("Key", "cut"), "a");
    EXPECT_EQ(Read("Key", "empty"), "");
    EXPECT_EQ(ReadNumber("Key", "number"), 0x87654321);
    for (const char* const name : {"longer", "list", "number", "bytes", "missing"}) {
        EXPECT_EQ(Read("Key", name), "none") << name;
    }
    for (const char* const name : {"longest", "empty", "bytes", "missing"}) {
        EXPECT_EQ(ReadNumber("Key", name), std::nullopt) << name;
    }
    m_machine.localMachine["Key"].access = KEY_QUERY_VALUE;  // less than reading asks for
    EXPECT_EQ(Read("Key", "cut"), "none");
    EXPECT_EQ(ReadNumber("Key", "number"), std::nullopt);
    EXPECT_EQ(Read("Missing", "cut"), "none");
    EXPECT_EQ(ReadNumber("Missing", "number"), std::nullopt);
}

}  // namespace
