// The exported functions, the way from a kind to its section, and the collector classes.
#include <limits>
#include <utility>

#include "core/collector.h"
#include "platform/stand_in/calls.h"
#include "qbsupport/qbsupport.h"
#include "support.h"

using qb_support::CQbSupport;
using qb_support::CQbSupportWindows;
using qb_support::Text;

namespace {

class InterfaceTest : public MachineTest {};
class CollectorTest : public MachineTest {};

TEST_F(InterfaceTest, UnknownAndReservedKindsGiveNothingAndAskNothing) {
    using Limits = std::numeric_limits<int>;
    for (const int kind : {0, 21, -1, 19, 100, Limits::min(), Limits::max()}) {
        for (unsigned flags = 0; flags < 8; ++flags) {
            EXPECT_EQ(GetInfo(kind, flags), std::nullopt) << kind;
        }
    }
    EXPECT_EQ(stand_in::CallsMade(), 0U);
    EXPECT_TRUE(QbSupportReleaseBuffer(nullptr));
}

TEST_F(InterfaceTest, EveryKindsFlagsAndArgument) {
    for (int kind = QbSupportBanner; kind <= QbSupportDisplay; ++kind) {
        EXPECT_EQ(GetInfo(kind, 7, nullptr), GetInfo(kind, 7, "")) << kind;
        const auto bare = GetInfo(kind, 0);
        EXPECT_EQ(GetInfo(kind, 0xFFFFFFF8), bare) << kind;
        if (kind != QbSupportReserved) {
            const bool isLine = kind == 10 || kind == 12 || kind == 13 || kind == 17;
            const bool hasLineFeed = kind == 5 || kind == 6 || kind == 7;
            EXPECT_EQ(GetInfo(kind, QbSupportSeparator), bare.value() + (hasLineFeed ? "\n\r\n"
                                                                         : isLine    ? ""
                                                                                     : "\r\n"))
                << kind;
        }
    }
}

TEST_F(InterfaceTest, LeavesTheCallersArgumentAlone) {
    char argument[] = "C:\\Tools";
    EXPECT_EQ(GetInfo(QbSupportAppDirectory, 0, argument), "App:         [C:/Tools] (N/A)\n");
    EXPECT_STREQ(argument, "C:\\Tools");
}

TEST_F(InterfaceTest, SectionsOfAHeadingAlone) {
    EXPECT_EQ(GetInfo(QbSupportUname, 4), "");
    EXPECT_EQ(GetInfo(QbSupportUname, 7), "Uname\r\n-----\r\n\r\n");
    EXPECT_EQ(GetInfo(QbSupportLimits, 4), "");
    EXPECT_EQ(GetInfo(QbSupportLimits, QbSupportHeadings), "Limits:\r\n-------\r\n");
}

TEST_F(CollectorTest, BaseWritesHeadingsOrNothing) {
    const std::pair<int, std::string_view> rows[] = {
        {3, "Operating System\r\n----------------\r\n"},
        {4, "Uname\r\n-----\r\n"},
        {5, "User Name\r\n---------\r\n"},
        {7, "Hardware\r\n--------\r\n"},
        {8, "Memory:\r\n-------\r\n"},
        {9, "System directories\r\n------------------\r\n"},
        {10, ""},
        {11, "Registry:\r\n---------\r\n"},
        {12, ""},
        {13, ""},
        {14, "Application\r\n-----------\r\n"},
        {15, ""},
        {16, "Modules (an argument)\r\n-------\r\n"},
        {17, "Module:\r\n-------\r\n"},
        {18, "Limits:\r\n-------\r\n"},
        {20, "Display\r\n-------\r\n"},
    };
    Text text("stale");
    Text argument("an argument");
    for (const auto& [kind, headings] : rows) {
        EXPECT_TRUE(CQbSupport().GetInfo(kind, 5, text, argument)) << kind;
        EXPECT_EQ(text.View(), headings) << kind;
        EXPECT_TRUE(CQbSupport().GetInfo(kind, 4, text, argument)) << kind;
        EXPECT_EQ(text.View(), "") << kind;
    }
    EXPECT_TRUE(CQbSupport().GetInfo(QbSupportLocale, 4, text, argument));
    EXPECT_EQ(text.View(),
              "   APP [LC_COLLATE]:      [C]\r\n   APP [LC_CTYPE]:        [C]\r\n"
              "   APP [LC_MONETARY]:     [C]\r\n   APP [LC_NUMERIC]:      [C]\r\n"
              "   APP [LC_TIME]:         [C]\r\n   APP [LC_ALL]:          [C]\r\n\r\n");
}

TEST_F(CollectorTest, AFailedCallStillEmptiesTheTextAndEndsIt) {
    for (const int kind : {19, 0, 21, -1}) {
        Text text("stale");
        Text argument;
        EXPECT_FALSE(CQbSupportWindows().GetInfo(kind, 7, text, argument));
        EXPECT_EQ(text.View(), "\r\n") << kind;
    }
}

// Opens the fields to the test.
class OpenCollector : public CQbSupport {
public:
    using CQbSupport::m_flags;
    using CQbSupport::m_headings;
    using CQbSupport::m_indent;
    using CQbSupport::m_indentOn;
    using CQbSupport::m_separator;
};

TEST_F(CollectorTest, FlagsSetFieldsAndNeverClearThem) {
    OpenCollector collector;
    EXPECT_EQ(collector.m_flags, 0U);
    EXPECT_FALSE(collector.m_headings || collector.m_separator || collector.m_indentOn);
    EXPECT_TRUE(collector.m_indent.Empty());
    Text text;
    Text argument;
    collector.GetInfo(QbSupportUname, 0xFFFFFFFF, text, argument);
    EXPECT_EQ(collector.m_flags, 0xFFFFFFFF);
    collector.GetInfo(QbSupportUname, 8, text, argument);
    EXPECT_EQ(collector.m_flags, 8U);
    EXPECT_TRUE(collector.m_headings && collector.m_separator && collector.m_indentOn);
    EXPECT_EQ(collector.m_indent.View(), "   ");
    EXPECT_EQ(text.View(), "Uname\r\n-----\r\n\r\n");
}

TEST_F(CollectorTest, EnvironmentHelpers) {
    Text text;
    EXPECT_TRUE(CQbSupport().AppendEnvironmentNotSet("> ", "HOME", text));
    EXPECT_TRUE(CQbSupport().AppendEnvironmentBegin("HOME", text));
    EXPECT_EQ(text.View(), "> [Environment 'HOME' not set]\n");
    EXPECT_TRUE(CQbSupport().AppendEnvironmentEnd("> ", "HOME", text));
    EXPECT_EQ(text.View(), "> [Environment 'HOME' not set]\n]\n");
}

// A collector for another kind of host.
class OtherCollector : public CQbSupportWindows {
public:
    bool GetEnvironmentInfo(Text& result, Text& argument) override {
        result << m_indent << '$' << argument << '\n';
        return false;
    }
    bool GetTimeZone(std::int32_t& biasSeconds, bool& isDaylight, Text& /*biasText*/,
                     std::int32_t& /*biasMinutes*/, std::int32_t& daylightBias) override {
        biasSeconds = -9000;
        isDaylight = true;
        daylightBias = -95;
        return knowsTimeZone;
    }
    bool knowsTimeZone = true;
};

TEST_F(CollectorTest, SectionsCallTheOverridesOfADerivedClass) {
    OtherCollector collector;
    Text text;
    Text argument;
    EXPECT_TRUE(collector.GetInfo(QbSupportApplication, 4, text, argument));
    EXPECT_EQ(text.View(),
              "   Application: [C:/Tools/Viewer/viewer.exe]\n"
              "   $QB_ROOT_PATH\n   $PRODUCT\n   $PACKET\n   $HOME\n   $TMPDIR\n");
    EXPECT_TRUE(collector.GetInfo(QbSupportDateTime, 0, text, argument));
    EXPECT_EQ(text.View(),
              "   Wed Jan 05 09:07:03 2022\n"
              "   Time zone GMT/UTC bias:  -2:30h [-9000s]\n"
              "   Time zone DST effective: Yes [-1:35h]\n");
    collector.knowsTimeZone = false;
    EXPECT_TRUE(collector.GetInfo(QbSupportDateTime, 0, text, argument));
    EXPECT_EQ(text.View(), "   Wed Jan 05 09:07:03 2022\n");
}

}  // namespace
