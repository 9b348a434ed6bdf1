// The searches for the Windows version: what they find and what they ask.
#include "os/version_tests.h"

#include <tuple>

#include "core/text.h"
#include "platform/stand_in/calls.h"
#include "support.h"

namespace {

class VersionTestsTest : public MachineTest {
protected:
    static std::uint64_t QuestionsAsked() {
        const std::uint64_t questions =
            stand_in::CallsMade(stand_in::PlatformCall::VerifyVersionInfoA);
        EXPECT_EQ(stand_in::CallsMade(), 2 * questions);  // each with a condition mask of its own
        stand_in::ResetCalls();
        return questions;
    }

    // What a search makes of a record that is not empty before it.
    static std::string Find(bool (*search)(OSVERSIONINFOEXA&)) {
        OSVERSIONINFOEXA version;
        stand_in::FillWithGarbage(&version, sizeof version);
        qb_support::Text text(search(version) ? "found " : "none ");
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
        EXPECT_EQ(Find(qb_support::DetectVersionFromTable),
                  "found " + std::to_string(major) + '.' + std::to_string(minor) + ".0 pack " +
                      packText + ".0 platform 2 type 1 suites 512 " +
                      (pack != 0 ? "Service Pack " + packText : ""));
        // And one for the product type, 13 for the suites, 9 for the build number.
        EXPECT_EQ(QuestionsAsked(), questions + 23) << major << '.' << minor << ' ' << pack;
    }
}

TEST_F(VersionTestsTest, ScanFindsWhatTheTableLacks) {
    const std::tuple<DWORD, DWORD, WORD, unsigned, std::string> rows[] = {
        {6, 3, 1, 26, "found 6.3.0 pack 1.0 platform 2 type 1 suites 512 Service Pack 1"},
        {6, 5, 0, 31, "found 6.5.0 pack 0.0 platform 2 type 1 suites 512 "},
        {7, 0, 4, 30, "found 7.0.0 pack 4.0 platform 2 type 1 suites 512 Service Pack 4"},
        {9, 5, 5, 37, "found 9.5.0 pack 0.0 platform 2 type 1 suites 512 "},
        {10, 1, 2, 32, "found 10.1.0 pack 2.0 platform 2 type 1 suites 512 Service Pack 2"},
    };
    for (const auto& [major, minor, pack, questions, found] : rows) {
        m_machine.version = {major, minor, 0, pack, 7, 0x200, 1};
        EXPECT_EQ(Find(qb_support::DetectVersionByScan), found);
        EXPECT_EQ(QuestionsAsked(), questions) << found;
    }
}

TEST_F(VersionTestsTest, NeitherSearchFindsOthers) {
    const std::tuple<DWORD, DWORD, WORD, unsigned, unsigned> rows[] = {
        {11, 0, 0, 20, 5}, {5, 3, 0, 32, 5},   {6, 2, 1, 28, 8},
        {6, 6, 0, 27, 8},  {10, 6, 0, 21, 11}, {4, 0, 0, 20, 5},
    };
    const std::string none = "none 0.0.0 pack 0.0 platform 0 type 0 suites 0 ";
    for (const auto& [major, minor, pack, tableQuestions, scanQuestions] : rows) {
        m_machine.version = {major, minor, 0, pack, 0, 0, 1};
        EXPECT_EQ(Find(qb_support::DetectVersionFromTable), none);
        EXPECT_EQ(QuestionsAsked(), tableQuestions) << major << '.' << minor;
        EXPECT_EQ(Find(qb_support::DetectVersionByScan), none);
        EXPECT_EQ(QuestionsAsked(), scanQuestions) << major << '.' << minor;
    }
}

TEST_F(VersionTestsTest, ProductTypes) {
    const std::tuple<BYTE, unsigned, unsigned> rows[] = {
        {1, 1, 1}, {3, 3, 2}, {2, 2, 3}, {0, 0, 3}, {4, 0, 3}};
    for (const auto& [running, detected, questions] : rows) {
        m_machine.version.productType = running;
        EXPECT_EQ(qb_support::DetectProductType(), detected);
        EXPECT_EQ(QuestionsAsked(), questions);
    }
}

TEST_F(VersionTestsTest, Suites) {
    for (unsigned bit = 1; bit <= 0x8000; bit <<= 1) {
        m_machine.version.suiteMask = static_cast<WORD>(bit);
        const bool isAsked = bit != 0x8 && bit != 0x800 && bit != 0x1000;
        EXPECT_EQ(qb_support::DetectSuiteMask(), isAsked ? bit : 0) << bit;
        EXPECT_EQ(QuestionsAsked(), 13U);
    }
    m_machine.version.suiteMask = 0xFFFF;
    EXPECT_EQ(qb_support::DetectSuiteMask(), 0xE7F7);
}

TEST_F(VersionTestsTest, BuildNumbers) {
    const std::tuple<DWORD, DWORD, unsigned> rows[] = {
        {0, 0, 9},          {7, 7, 16},          {10, 10, 19},         {11, 11, 11},
        {22631, 22631, 19}, {22000, 22000, 32},  {999999, 999999, 49}, {1000000, 0, 49},
        {1000001, 0, 18},   {4294967295, 0, 12},
    };
    for (const auto& [running, detected, questions] : rows) {
        m_machine.version.build = running;
        EXPECT_EQ(qb_support::DetectBuildNumber(), detected);
        EXPECT_EQ(QuestionsAsked(), questions) << running;
    }
}

TEST_F(VersionTestsTest, BuildNumberOfASystemThatRefusesToAnswer) {
    stand_in::PlanFault(1, stand_in::FaultMode::FromThenOn);
    EXPECT_EQ(qb_support::DetectBuildNumber(), 0U);
    EXPECT_EQ(QuestionsAsked(), 1000008U);
}

}  // namespace
