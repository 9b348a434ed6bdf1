// The text type and the sections that need no particular facility.
#include <limits>
#include <tuple>
#include <utility>

#include "core/collector.h"
#include "platform/stand_in/calls.h"
#include "qbsupport/qbsupport.h"
#include "support.h"

using qb_support::Padded;
using qb_support::Text;

namespace {

TEST(TextTest, GrowsAndStaysTerminated) {
    Text text;
    std::string expected;
    for (int i = 0; i < 4000; ++i) {
        text << static_cast<char>('a' + i % 26);
        expected += static_cast<char>('a' + i % 26);
        ASSERT_EQ(text.CStr()[text.Size()], '\0') << i;
    }
    text << std::string_view(expected).substr(1);
    EXPECT_EQ(text.View(), expected + expected.substr(1));
    text.Clear();
    EXPECT_TRUE(text.Empty());
    EXPECT_STREQ(text.CStr(), "");
}

TEST(TextTest, WritesNumbersInPlainDecimal) {
    Text text;
    text << 0 << ' ' << -1 << ' ' << std::numeric_limits<std::int64_t>::min() << ' '
         << std::numeric_limits<std::uint64_t>::max() << Padded{7, 3} << Padded{-7, 3}
         << Padded{123, 3} << Padded{-1234, 3} << Padded{0, 0};
    EXPECT_EQ(text.View(), "0 -1 -9223372036854775808 18446744073709551615  7 -7123-12340");
}

TEST(TextTest, MovesShortAndLongTexts) {
    for (const std::string& content : {std::string("short"), std::string(5000, 'x')}) {
        Text first(content);
        Text second(std::move(first));
        Text third("something else");
        third = std::move(second);
        second = Text("used again");
        third << '!';
        EXPECT_EQ(third.View(), content + '!');
        EXPECT_EQ(second.View(), "used again");
    }
}

TEST(TextTest, RemembersFailureAndPassesItOn) {
    Text failed("kept");
    failed.Fill(' ', std::numeric_limits<std::size_t>::max());
    failed << "ignored" << 1 << 'c';
    EXPECT_EQ(failed.View(), "kept");
    Text other;
    EXPECT_FALSE(other.Failed());
    other << failed;
    EXPECT_TRUE(other.Failed());
    failed.Clear();
    EXPECT_TRUE(failed.Failed());
    EXPECT_TRUE(Text(std::move(failed)).Failed());
}

TEST(TextTest, ReplacesEveryOccurrence) {
    const std::tuple<std::string, std::string_view, std::string_view, std::string> rows[] = {
        {"C:\\a\\\\b\\", "\\", "/", "C:/a//b/"},
        {"a/b", "\\", "/", "a/b"},
        {"aaa", "aa", "b", "ba"},
        {"aba", "a", "aa", "aabaa"},
        {"abcabc", "abc", "", ""},
        {std::string(400, '\\'), "\\", "//", std::string(800, '/')},
    };
    for (const auto& [before, from, to, after] : rows) {
        Text text(before);
        ReplaceAll(text, from, to);
        EXPECT_EQ(text.View(), after);
    }
}

class CoreTest : public MachineTest {};

TEST_F(CoreTest, BannerIsTheSameUnderEveryFlagButTheSeparator) {
    const std::string banner =
        "========================================================================\r\n"
        "The following support information is collected in order to help         \r\n"
        "Quenbar support team replicate and troubleshoot technical problems.     \r\n"
        "                                                                        \r\n"
        "Please save this information to a file and e-mail that file to          \r\n"
        "<help@quenbar.example> along with a concise description of the problem. \r\n"
        "                                                                        \r\n"
        "Privacy statement: This information will be kept confidential and will  \r\n"
        "only be used to reproduce the problem you are reporting. The information\r\n"
        "does not include any passwords or other sensitive data.                 \r\n"
        "========================================================================\r\n";
    ASSERT_EQ(banner.size(), 814U);
    EXPECT_EQ(GetInfo(QbSupportBanner, 0), banner);
    EXPECT_EQ(GetInfo(QbSupportBanner, 5, "an argument"), banner);
    EXPECT_EQ(GetInfo(QbSupportBanner, 7), banner + "\r\n");
}

TEST_F(CoreTest, DateTimeWithEveryFlag) {
    EXPECT_EQ(GetInfo(QbSupportDateTime, 7),
              "Date and Time\r\n-------------\r\n"
              "   Wed Jan 05 09:07:03 2022\n"
              "   Time zone GMT/UTC bias:  -1:0h [-3600s]\n"
              "   Time zone:               -1:0h\n"
              "   Time zone DST effective: No\n\r\n");
    EXPECT_EQ(stand_in::CallsMade(stand_in::PlatformCall::Tzset), 1U);
}

TEST_F(CoreTest, TimeZones) {
    constexpr DWORD kUnknown = TIME_ZONE_ID_UNKNOWN;
    constexpr DWORD kStandard = TIME_ZONE_ID_STANDARD;
    constexpr DWORD kDaylight = TIME_ZONE_ID_DAYLIGHT;
    const std::tuple<LONG, LONG, LONG, DWORD, std::string, std::string, std::string> rows[] = {
        {-60, 0, -60, kDaylight, "-2:0h [-7200s]", "-1:0h", "Yes [-1:0h]"},
        {-60, 0, -60, kUnknown, "-1:0h [-3600s]", "-1:0h", "No"},
        {-330, 0, 0, kUnknown, "-5:30h [-19800s]", "-5:30h", "No"},
        {300, 0, -60, kStandard, "5:0h [18000s]", "5:0h", "No"},
        {-30, 0, 0, kStandard, "0:30h [-1800s]", "0:30h", "No"},
        {60, 15, -60, kStandard, "1:15h [4500s]", "1:0h", "No"},
        {60, 15, -60, kUnknown, "1:0h [3600s]", "1:0h", "No"},
        {60, 15, -90, kDaylight, "0:30h [-1800s]", "1:0h", "Yes [-1:30h]"},
        {0, 0, -30, kDaylight, "0:30h [-1800s]", "0:0h", "Yes [0:30h]"},
        {-630, 0, 0, kDaylight, "-10:30h [-37800s]", "-10:30h", "Yes [0:0h]"},
        {-60, 15, -60, TIME_ZONE_ID_INVALID, "0:0h [0s]", "0:0h", "No"},
    };
    for (const auto& [bias, standardBias, daylightBias, season, now, base, daylight] : rows) {
        m_machine.timeZone.Bias = bias;
        m_machine.timeZone.StandardBias = standardBias;
        m_machine.timeZone.DaylightBias = daylightBias;
        m_machine.timeZoneId = season;
        const std::string text = GetInfo(QbSupportDateTime, 0).value_or("");
        Text expected("\nTime zone GMT/UTC bias:  ");
        expected << now << "\nTime zone:               " << base
                 << "\nTime zone DST effective: " << daylight << '\n';
        EXPECT_EQ(text.substr(text.find('\n')), expected.View());
    }
}

TEST_F(CoreTest, TimeZoneFiguresOutsideDaylightTime) {
    std::int32_t biasSeconds = 1;
    bool isDaylight = true;
    Text biasText;
    std::int32_t biasMinutes = 1;
    std::int32_t daylightBias = 1;
    EXPECT_TRUE(qb_support::CQbSupport().GetTimeZone(biasSeconds, isDaylight, biasText, biasMinutes,
                                                     daylightBias));
    EXPECT_EQ(std::tuple(biasSeconds, isDaylight, biasText.View(), biasMinutes, daylightBias),
              std::tuple(-3600, false, std::string_view("-1:0h"), -60, -60));
}

TEST_F(CoreTest, ClockBeyondTheRunTimeLibrarysRangeLeavesTheLineEmpty) {
    m_machine.clock = 32535216000;
    EXPECT_EQ(GetInfo(QbSupportDateTime, 4),
              "   \n   Time zone GMT/UTC bias:  -1:0h [-3600s]\n"
              "   Time zone:               -1:0h\n   Time zone DST effective: No\n");
}

TEST_F(CoreTest, LocaleWithEveryFlag) {
    m_machine.runtimeLocale[LC_CTYPE] = "German_Germany.1252";
    m_machine.runtimeLocale[LC_ALL] = "LC_COLLATE=C;LC_CTYPE=German_Germany.1252";
    m_machine.runtimeLocale.erase(LC_TIME);
    m_machine.languageName = "Deutsch (\xD6sterreich)";
    EXPECT_EQ(GetInfo(QbSupportLocale, 7),
              "Locale\r\n------\r\n"
              "   APP [LC_COLLATE]:      [C]\r\n"
              "   APP [LC_CTYPE]:        [German_Germany.1252]\r\n"
              "   APP [LC_MONETARY]:     [C]\r\n"
              "   APP [LC_NUMERIC]:      [C]\r\n"
              "   APP [LC_TIME]:         [Unknown]\r\n"
              "   APP [LC_ALL]:          [LC_COLLATE=C;LC_CTYPE=German_Germany.1252]\r\n"
              "\r\n"
              "   Windows language:      Deutsch (\xD6sterreich)\n"
              "   User locale ID:        0409\n"
              "   User locale name:      English\n"
              "   User locale abbr name: ENU\n"
              "\n\r\n");
}

TEST_F(CoreTest, Application) {
    m_machine.executablePath = "C:\\Apps\\Host\\host.exe";
    m_machine.environment["home"] = "C:\\Users\\ann with spaces ";
    m_machine.environment["PACKET"] = "";
    const std::string variables =
        "   Environment: [QB_ROOT_PATH] = Not set!\n"
        "   Environment: [PRODUCT] = Not set!\n"
        "   Environment: [PACKET] = []\n"
        "   Environment: [HOME] = [C:\\Users\\ann with spaces ]\n"
        "   Environment: [TMPDIR] = Not set!\n";
    EXPECT_EQ(GetInfo(QbSupportApplication, 7, "SystemRoot"),
              "Application\r\n-----------\r\n   Application: [C:/Apps/Host/host.exe]\n" +
                  variables + "\r\n");
    m_machine.executablePath = "";
    EXPECT_EQ(GetInfo(QbSupportApplication, 4),
              "   Application: Can not get application binary location!\n" + variables);
}

TEST_F(CoreTest, EnvironmentVariable) {
    EXPECT_EQ(GetInfo(QbSupportEnvironment, 7, "systemroot"),
              "   Environment: [systemroot] = [C:\\Windows]\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportEnvironment, 1, "NONE"), "Environment: [NONE] = Not set!\n");
    EXPECT_EQ(GetInfo(QbSupportEnvironment, 0), "Environment: [] = Not set!\n");
    Text name(std::string_view("USERNAME\0x", 10));
    Text text;
    qb_support::CQbSupportWindows().GetEnvironmentInfo(text, name);
    EXPECT_EQ(text.View(), "Environment: [USERNAME] = [ann]\n");
}

}  // namespace
