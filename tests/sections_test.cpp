// What every kind of section must have in all places, so that no place is forgotten for a new kind.
#include <fstream>
#include <iterator>
#include <regex>

#include "bench/bench.h"
#include "stand_in/calls.h"
#include "support.h"

using namespace qb_support::bench;
using qbsupport::SectionKind;

namespace {

std::string ReadSource(const std::string& file) {
    std::ifstream stream(QBSUPPORT_SOURCE_DIR "/" + file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

using SectionsTest = DescribedMachineTest;

TEST_F(SectionsTest, HaveTextsPagesAndFloors) {
    const std::string header = ReadSource("include/qbsupport/qbsupport.h");
    const std::string tests = ReadSource("tests/core_test.cpp") +
                              ReadSource("tests/machine_test.cpp") +
                              ReadSource("tests/os_test.cpp");
    const std::string hosting = ReadSource("docs/hosting.md");
    const std::string reading = ReadSource("docs/report.md");
    std::size_t kinds = 0;
    const std::regex enumerator("(QbSupport(?!Flag)\\w+) = (\\d+)");
    for (std::sregex_iterator i(header.begin(), header.end(), enumerator), end; i != end; ++i) {
        const std::string name = (*i)[1];
        SCOPED_TRACE(name);
        const SectionKind section = qbsupport::SectionKindOf(std::stoi((*i)[2]));
        ++kinds;
        EXPECT_STRNE(section.name, "") << "has no row in sections.hpp";
        const std::string text = GetInfo(section.kind, QbSupportFlagHeadings).value_or("");
        EXPECT_EQ(text.empty(), !qbsupport::IsInWholeReport(section)) << "is it in dispatcher.cpp?";
        if (!qbsupport::IsInWholeReport(section)) {
            continue;
        }
        EXPECT_NE(tests.find("GetInfo(" + name + ", 7"), std::string::npos)
            << "has no whole section in the tests";
        const std::string row = "\n| " + std::to_string(section.kind) + " |";
        EXPECT_NE(hosting.find(row), std::string::npos) << "has no row in the table of kinds";
        std::smatch title;
        const bool hasTitle = std::regex_search(text, title, std::regex("^([^\r:]*):?\r\n--"));
        const std::string chapter = hasTitle ? title.str(1) : section.name;
        const std::regex heading("\n## [^\n]*\\b" + chapter + "\\b", std::regex::icase);
        EXPECT_TRUE(section.continues != 0 || std::regex_search(reading, heading))
            << "has no chapter in report.md: " << chapter;
        EXPECT_EQ(std::ranges::count(kFloors, section.kind, &Floor::kind), 1) << "has no floor";
    }
    EXPECT_EQ(kinds, std::size_t{kLastKind}) << "the header has fewer kinds than sections.hpp";
}

TEST_F(SectionsTest, AreAsThePagesShowThem) {
    qbsupport::ReportOptions options;
    options.appDirectory = "C:/Tools/Viewer";
    options.userAppKey = options.machineAppKey = "Software\\Microsoft\\Windows NT\\CurrentVersion";
    options.variables = {"OS", "PROCESSOR_ARCHITECTURE", "NUMBER_OF_PROCESSORS"};
    options.modules = {"kernel32.dll", "user32.dll", "QBSUPPORT.dll"};
    std::string report = qbsupport::WholeReport(options).text;
    std::erase(report, '\r');
    const std::string pages = ReadSource("README.md") + ReadSource("docs/report.md");
    const std::regex sample("\n```text\n([^`]+)```");
    ASSERT_TRUE(std::regex_search(pages, sample));
    for (std::sregex_iterator i(pages.begin(), pages.end(), sample), end; i != end; ++i) {
        EXPECT_NE(report.find((*i)[1]), std::string::npos) << "the library does not write\n"
                                                           << (*i)[1];
    }
}

// Other tests show what a section is with all flags.
TEST_F(SectionsTest, EachFlagAddsItsOwnPart) {
    for (int kind = 1; kind <= kLastKind; ++kind) {
        SCOPED_TRACE(kind);
        const auto text = [&](unsigned flags) { return GetInfo(kind, flags, "").value_or(""); };
        const auto unindented = [](const std::string& lines) {
            return std::regex_replace(lines, std::regex("(^|\n) +"), "$1");
        };
        const std::string bare = text(0);
        const std::string indented = text(QbSupportFlagIndent);
        const std::string headed = text(QbSupportFlagHeadings);
        const std::string separated = text(QbSupportFlagSeparator);
        ASSERT_TRUE(headed.ends_with(bare) && separated.starts_with(bare));
        const std::string heading = headed.substr(0, headed.size() - bare.size());
        const std::string separator = separated.substr(bare.size());
        EXPECT_TRUE(std::regex_match(heading, std::regex("([^\r]+\r\n-+\r\n)?"))) << heading;
        EXPECT_TRUE(std::regex_match(separator, std::regex("\n?(\r\n)?"))) << separator;
        EXPECT_EQ(unindented(indented), unindented(bare));
        EXPECT_EQ(text(7), heading + indented + separator);
        EXPECT_EQ(GetInfo(kind, 0xFFFFFFF8).value_or(""), bare) << "without an argument";
    }
}

// A section's time is compared with its floor, which must therefore make the same platform calls.
TEST_F(SectionsTest, MakeTheFloorsCallsAndFewAllocations) {
    std::vector<std::string_view> calls;
    stand_in::beforeCall = [&](std::string_view name, std::uint64_t) { calls.push_back(name); };
    for (const auto& [kind, makePlatformCalls, argument] : kFloors) {
        SCOPED_TRACE(kind);
        EXPECT_LE(CallAlone({kind, 7, argument}).allocations, kind == QbSupportModules ? 10U : 2U);
        const auto expected = std::exchange(calls, {});
        makePlatformCalls(argument);
        EXPECT_EQ(std::exchange(calls, {}), expected);
    }
    stand_in::beforeCall = nullptr;
}

// A line of a long list must cost as much as a line of a short list. The limit is twice as much, as
// sanitizers and other programs disturb the times. Growth that is not linear gives a large
// multiple.
TEST_F(SectionsTest, LongListsAreCompleteAndGrowLinearly) {
    stand_in::Machine longLists;
    for (stand_in::Machine* const machine : {&m_machine, &longLists}) {
        const std::size_t lines = machine == &longLists ? 10000 : 100;
        machine->processes.insert(machine->processes.begin(), lines, {1, "other.exe"});
        machine->processes.back().modules.resize(lines, {"ntdll.dll", "C:\\ntdll.dll"});
        machine->monitors.resize(lines, machine->monitors.front());
    }
    for (const auto& [kind, lines] : {std::pair(16, 10001), std::pair(20, 10007)}) {
        const Request request{kind, 0, "viewer.exe"};
        CallOutcome outcome;
        const auto longList = [&] {
            std::swap(m_machine, longLists);
            outcome = CallAlone(request);
            std::swap(m_machine, longLists);
        };
        const auto shortLists = [&] {
            for (int i = 0; i < 100; ++i) {
                CallAlone(request);
            }
        };
        EXPECT_LE(MedianRatio(0.2, longList, shortLists), 2) << kind;
        EXPECT_LE(outcome.allocations, 40U) << kind;
        EXPECT_EQ(std::ranges::count(outcome.text.value_or(""), '\n'), lines) << kind;
    }
}

}  // namespace
