// The text type, the exported functions, the dispatcher, the collector classes, and the sections of
// src/core.
#include <climits>

#include "core/collector.h"
#include "stand_in/calls.h"
#include "support.h"

using namespace qb_support;

namespace {

TEST(TextTest, WritesNumbersReplacesMovesAndFails) {
    CText text;
    text << 0 << ' ' << INT64_MIN << ' ' << UINT64_MAX << Padded{7, 3} << Padded{-7, 3}
         << Padded{123, 3} << Padded{-1234, 3} << Padded{0, 0};
    EXPECT_EQ(text.View(), "0 -9223372036854775808 18446744073709551615  7 -7123-12340");
    text = CText("aba aa");
    ReplaceAll(text, "a", "aa");
    EXPECT_EQ(text.View(), "aabaa aaaa");
    ReplaceAll(text, "aa", "");
    EXPECT_EQ(text.View(), "b ");
    for (const std::string& content : {std::string("short"), std::string(5000, 'x')}) {
        CText first(content);
        CText second(std::move(first));
        CText third("something else");
        third = std::move(second);
        second = CText("used again");
        third << '!';
        EXPECT_EQ(third.View(), content + '!');
        EXPECT_EQ(second.View(), "used again");
    }
    // A failed text stays failed, and so does a text that it is appended to.
    text.Fill(' ', SIZE_MAX);
    text << "ignored" << 1 << 'c';
    EXPECT_EQ(text.View(), "b ");
    EXPECT_TRUE((CText() << text).Failed());
    text.Clear();
    EXPECT_TRUE(CText(std::move(text)).Failed());
}

using CoreTest = DescribedMachineTest;

TEST_F(CoreTest, BannerAndDateTime) {
    EXPECT_EQ(GetInfo(QbSupportBanner, 7),
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
              "========================================================================\r\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportDateTime, 7),
              "Date and Time\r\n-------------\r\n   Wed Jan 05 09:07:03 2022\n"
              "   Time zone GMT/UTC bias:  -1:0h [-3600s]\n"
              "   Time zone:               -1:0h\n   Time zone DST effective: No\n\r\n");
    const std::tuple<LONG, LONG, LONG, DWORD, std::string, std::string, std::string> rows[] = {
        {-60, 0, -60, TIME_ZONE_ID_DAYLIGHT, "-2:0h [-7200s]", "-1:0h", "Yes [-1:0h]"},
        {-330, 0, 0, TIME_ZONE_ID_UNKNOWN, "-5:30h [-19800s]", "-5:30h", "No"},
        {-30, 0, 0, TIME_ZONE_ID_STANDARD, "0:30h [-1800s]", "0:30h", "No"},
        {60, 15, -60, TIME_ZONE_ID_STANDARD, "1:15h [4500s]", "1:0h", "No"},
        {-60, 15, -60, TIME_ZONE_ID_INVALID, "0:0h [0s]", "0:0h", "No"},
        {INT_MIN, 0, 1, TIME_ZONE_ID_UNKNOWN, "0:0h [0s]", "-35791394:8h", "No"},
        {INT_MAX, 0, INT_MAX, 2, "0:2h [-120s]", "35791394:7h", "Yes [35791394:7h]"},
    };
    for (const auto& [bias, standard, daylight, season, now, base, isDaylight] : rows) {
        m_machine.timeZone = {bias, {}, {}, standard, {}, {}, daylight};
        m_machine.timeZoneId = season;
        const auto text = GetInfo(QbSupportDateTime, 0).value_or("\n");
        EXPECT_EQ(text.substr(text.find('\n')),
                  "\nTime zone GMT/UTC bias:  " + now + "\nTime zone:               " + base +
                      "\nTime zone DST effective: " + isDaylight + '\n');
    }
}

TEST_F(CoreTest, LocaleApplicationAndEnvironment) {
    m_machine.runtimeLocale[LC_CTYPE] = "German_Germany.1252";
    m_machine.runtimeLocale[LC_ALL] = "LC_COLLATE=C;LC_CTYPE=German_Germany.1252";
    m_machine.runtimeLocale.erase(LC_TIME);
    m_machine.language = 0x0C07;
    m_machine.languageName = "Deutsch (\xD6sterreich)";
    EXPECT_EQ(GetInfo(QbSupportLocale, 7),
              "Locale\r\n------\r\n   APP [LC_COLLATE]:      [C]\r\n"
              "   APP [LC_CTYPE]:        [German_Germany.1252]\r\n   APP [LC_MONETARY]:     [C]\r\n"
              "   APP [LC_NUMERIC]:      [C]\r\n   APP [LC_TIME]:         [Unknown]\r\n"
              "   APP [LC_ALL]:          [LC_COLLATE=C;LC_CTYPE=German_Germany.1252]\r\n\r\n"
              "   Windows language:      Deutsch (\xD6sterreich)\n   User locale ID:        0409\n"
              "   User locale name:      English\n   User locale abbr name: ENU\n\n\r\n");
    m_machine.environment["home"] = "C:\\Users\\ann with spaces ";
    m_machine.environment["PACKET"] = "";
    EXPECT_EQ(
        GetInfo(QbSupportApplication, 7, "SystemRoot"),
        "Application\r\n-----------\r\n   Application: [C:/Tools/Viewer/viewer.exe]\n"
        "   Environment: [QB_ROOT_PATH] = Not set!\n   Environment: [PRODUCT] = Not set!\n"
        "   Environment: [PACKET] = []\n   Environment: [HOME] = [C:\\Users\\ann with spaces ]"
        "\n   Environment: [TMPDIR] = Not set!\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportEnvironment, 7, "systemroot"),
              "   Environment: [systemroot] = [C:\\Windows]\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportEnvironment, 0), "Environment: [] = Not set!\n");
}

TEST_F(CoreTest, OtherKindsAndEmptySections) {
    for (const int kind : {0, kLastKind + 1, -1, 100, INT_MIN, INT_MAX}) {
        EXPECT_EQ(GetInfo(kind, 7), std::nullopt) << kind;
    }
    EXPECT_EQ(stand_in::CallsMade(), 0U);
    EXPECT_TRUE(QbSupportReleaseBuffer(nullptr));
    EXPECT_EQ(GetInfo(QbSupportUname, 7), "Uname\r\n-----\r\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportLimits, 7), "Limits:\r\n-------\r\n\r\n");
}

TEST_F(CoreTest, BaseWritesHeadingsOrNothing) {
    CText text("stale");
    CText argument("an argument");
    EXPECT_TRUE(CQbSupport().GetInfo(QbSupportModule, 5, text, argument));
    EXPECT_EQ(text.View(), "Module:\r\n-------\r\n");
    for (int kind = 1; kind <= kLastKind; ++kind) {
        const bool writes = kind <= QbSupportDateTime || kind == QbSupportLocale;
        EXPECT_EQ(CQbSupport().GetInfo(kind, 4, text, argument), kind != QbSupportReserved) << kind;
        EXPECT_EQ(text.Empty(), !writes) << kind;
    }
    EXPECT_TRUE(CQbSupport().AppendEnvironmentNotSet("> ", "HOME", text));
    EXPECT_TRUE(CQbSupport().AppendEnvironmentBegin("HOME", text));
    EXPECT_TRUE(CQbSupport().AppendEnvironmentEnd("> ", "HOME", text));
    EXPECT_EQ(text.View(), "> [Environment 'HOME' not set]\n]\n");
    EXPECT_FALSE(CQbSupportWindows().GetInfo(QbSupportReserved, 7, text, argument));
    EXPECT_EQ(text.View(), "\r\n");
}

// A derived collector with two operations of its own.
class OtherCollector : public CQbSupportWindows {
public:
    bool GetEnvironmentInfo(CText& result, CText& argument) override {
        result << (m_indentOn ? '>' : '$') << argument << '\n';
        return false;
    }
    bool GetTimeZone(std::int32_t& /*biasSeconds*/, bool& /*isDaylight*/, CText& /*biasText*/,
                     std::int32_t& /*biasMinutes*/, std::int32_t& /*daylightBias*/) override {
        return m_flags != 0;
    }
};

TEST_F(CoreTest, SectionsOfADerivedCollector) {
    OtherCollector collector;
    CText text;
    CText argument("HOME");
    EXPECT_TRUE(collector.GetDateTimeInfo(text));
    EXPECT_FALSE(collector.GetEnvironmentInfo(text, argument));
    EXPECT_EQ(text.View(), "Wed Jan 05 09:07:03 2022\n$HOME\n");
    EXPECT_TRUE(collector.GetInfo(QbSupportDateTime, 0xFFFFFFFF, text, argument));
    EXPECT_EQ(text.View(),
              "Date and Time\r\n-------------\r\n   Wed Jan 05 09:07:03 2022\n   Time zone GMT/UTC "
              "bias:  0:0h [0s]\n   Time zone DST effective: No\n\r\n");
    // What a call turns on stays on in later calls of the same collector.
    EXPECT_TRUE(collector.GetInfo(QbSupportApplication, QbSupportFlagIndent, text, argument));
    EXPECT_EQ(text.View(),
              "Application\r\n-----------\r\n   Application: [C:/Tools/Viewer/viewer.exe]\n"
              ">QB_ROOT_PATH\n>PRODUCT\n>PACKET\n>HOME\n>TMPDIR\n\r\n");
}

}  // namespace
