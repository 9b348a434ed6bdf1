// What every kind of section must have in all places, so that no place is forgotten for a new kind.
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "bench/bench.h"
#include "stand_in/calls.h"
#include "support.h"

using qbsupport::SectionKind;

namespace {

std::string ReadSources(const std::vector<std::string>& files) {
    std::string text;
    for (const std::string& file : files) {
        std::ifstream stream(QBSUPPORT_SOURCE_DIR "/" + file);
        text.append(std::istreambuf_iterator<char>(stream), {});
    }
    return text;
}

class SectionsTest : public DescribedMachineTest {
protected:
    // The kinds that the header's comments list where the pattern has its group: "1, 4 and 18" or
    // "5 to 7".
    [[nodiscard]] std::set<int> KindsInHeader(const std::string& pattern) const {
        std::smatch list;
        EXPECT_TRUE(std::regex_search(m_header, list, std::regex(pattern))) << pattern;
        std::set<int> kinds;
        const std::string text = list[1];
        const std::regex number("(\\d+)(?: to (\\d+))?");
        for (std::sregex_iterator i(text.begin(), text.end(), number), end; i != end; ++i) {
            const int last = std::stoi((*i)[(*i)[2].matched ? 2 : 1]);
            for (int kind = std::stoi((*i)[1]); kind <= last; ++kind) {
                kinds.insert(kind);
            }
        }
        return kinds;
    }

    const std::string m_header =
        std::regex_replace(ReadSources({"include/qbsupport/qbsupport.h"}), std::regex("\\s+"), " ");
};

TEST_F(SectionsTest, HaveTextsPagesAndFloors) {
    const std::string tests =
        ReadSources({"tests/core_test.cpp", "tests/machine_test.cpp", "tests/os_test.cpp"});
    const std::string hosting = ReadSources({"docs/hosting.md"});
    const std::string example = ReadSources({"examples/whole_report.c"});
    const std::string reading = ReadSources({"docs/report.md"});
    std::size_t kinds = 0;
    const std::regex enumerator("(QbSupport(?!Flag)\\w+) = (\\d+)");
    for (std::sregex_iterator i(m_header.begin(), m_header.end(), enumerator), end; i != end; ++i) {
        const std::string name = (*i)[1];
        SCOPED_TRACE(name);
        const SectionKind section = qbsupport::SectionKindOf(std::stoi((*i)[2]));
        ++kinds;
        EXPECT_STRNE(section.name, "") << "has no row in sections.hpp";
        if (!qbsupport::IsInWholeReport(section)) {
            continue;
        }
        const std::string text = GetInfo(section.kind, QbSupportFlagHeadings).value_or("nothing");
        EXPECT_NE(text, "nothing") << "fails: has it a case in dispatcher.cpp?";
        EXPECT_NE(tests.find("GetInfo(" + name + ", 7"), std::string::npos)
            << "has no whole section in the tests";
        EXPECT_TRUE(GetInfo(section.kind, 0) == "" ||  // heading only
                    example.find('{' + name + ',') != std::string::npos)
            << "is not in examples/whole_report.c";
        const std::string row = "\n| " + std::to_string(section.kind) + " |";
        EXPECT_NE(hosting.find(row), std::string::npos) << "has no row in the table of kinds";
        std::smatch title;
        const bool hasTitle = std::regex_search(text, title, std::regex("^([^\r:]*):?\r\n--"));
        const std::string chapter = hasTitle ? title.str(1) : section.name;
        EXPECT_TRUE(section.continues != 0 ||
                    std::regex_search(
                        reading, std::regex("\n## [^\n]*\\b" + chapter + "\\b", std::regex::icase)))
            << "has no chapter in report.md: " << chapter;
        EXPECT_EQ(std::ranges::count(qb_support::bench::kFloors, section.kind,
                                     &qb_support::bench::Floor::kind),
                  1)
            << "has no floor";
    }
    EXPECT_EQ(kinds, std::size_t{kLastKind}) << "rows of sections.hpp that are not in the header";
}

TEST_F(SectionsTest, FollowTheHeadersRuleAboutFlags) {
    const auto noHeading = KindsInHeader("title. No effect on the kinds ([^*]*)");
    const auto noSeparator = KindsInHeader("line, [^*]* No effect on the kinds ([^.]*)");
    const auto two = KindsInHeader("two for the kinds ([^.]*)");
    const auto oneAlways = KindsInHeader("The kinds ([^.]*) end with one even");
    const auto noIndent = KindsInHeader("spaces. No effect on the kinds ([^*]*)");
    for (const SectionKind& section : qbsupport::kSectionKinds) {
        const int kind = section.kind;
        SCOPED_TRACE(kind);
        if (!qbsupport::IsInWholeReport(section)) {
            EXPECT_EQ(GetInfo(kind, 7), std::nullopt);
            continue;
        }
        const std::string bare = GetInfo(kind, 0).value_or("nothing");
        const std::regex heading(noHeading.contains(kind) ? "" : "[^\r]+\r\n-+\r\n");
        const std::string headed = GetInfo(kind, QbSupportFlagHeadings).value_or("");
        EXPECT_TRUE(headed.ends_with(bare));
        EXPECT_TRUE(std::regex_match(headed.substr(0, headed.size() - bare.size()), heading));
        const std::string separated = GetInfo(kind, QbSupportFlagSeparator).value_or("");
        const bool bothAdded = two.contains(kind) && !oneAlways.contains(kind);
        EXPECT_EQ(separated,
                  bare + (bothAdded ? "\n" : "") + (noSeparator.contains(kind) ? "" : "\r\n"));
        EXPECT_EQ(noSeparator.contains(kind), !qbsupport::HasSeparator(kind));
        EXPECT_EQ(std::regex_search(separated, std::regex("\n(\r?\n){2}$")), two.contains(kind));
        EXPECT_EQ(GetInfo(kind, QbSupportFlagIndent) == bare, noIndent.contains(kind));
    }
}

// A section's time is compared with its floor, which must therefore make the same platform calls.
TEST_F(SectionsTest, FloorsMakeTheSamePlatformCalls) {
    std::vector<std::string_view> calls;
    stand_in::beforeCall = [&](std::string_view name, std::uint64_t) { calls.push_back(name); };
    for (const auto& [kind, makePlatformCalls, argument] : qb_support::bench::kFloors) {
        GetInfo(kind, 7, argument);
        const auto expected = std::exchange(calls, {});
        makePlatformCalls(argument);
        EXPECT_EQ(std::exchange(calls, {}), expected) << "by kind " << kind;
    }
    stand_in::beforeCall = nullptr;
}

// A line of a long list must cost as much as a line of a short list. The limit is twice as much, as
// sanitizers and other programs disturb the times. Growth that is not linear gives a large
// multiple.
TEST_F(SectionsTest, ListsGrowLinearly) {
    stand_in::Machine longLists;
    for (stand_in::Machine* const machine : {&m_machine, &longLists}) {
        const std::size_t lines = machine == &longLists ? 10000 : 100;
        machine->processes.back().modules.resize(lines, {"ntdll.dll", "C:\\ntdll.dll"});
        machine->monitors.resize(lines, machine->monitors.front());
    }
    for (const int kind : {QbSupportModules, QbSupportDisplay}) {
        const auto longList = [&] {
            std::swap(m_machine, longLists);
            EXPECT_LE(CallAlone({kind, 7, nullptr}).allocations, 40U) << "by kind " << kind;
            std::swap(m_machine, longLists);
        };
        const auto shortLists = [&] {
            for (int i = 0; i < 100; ++i) {
                CallAlone({kind, 7, nullptr});
            }
        };
        EXPECT_LE(qb_support::bench::MedianRatio(0.2, longList, shortLists), 2)
            << "by kind " << kind;
    }
}

}  // namespace
