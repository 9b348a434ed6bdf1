// A report in one call, for hosts in C++.
#include "qbsupport/qbsupport.hpp"

#if defined(_WINDOWS_) || defined(WIN32_LEAN_AND_MEAN)
#error "a host that links the library gets Windows' own header, which it did not ask for"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

// Sections of a library that says only their kind and argument, "9:" or "10:dir".
auto ComposeFake(const qbsupport::ReportOptions& options, const std::vector<int>& failing) {
    std::string text;
    return qbsupport::detail::Compose(options, [&](int kind, unsigned flags, const char* argument) {
        text = std::to_string(kind) + ':' + argument;
        if ((flags & QbSupportFlagSeparator) != 0 && qbsupport::HasSeparator(kind)) {
            text += "\r\n";
        }
        const bool fails = std::count(failing.begin(), failing.end(), kind) != 0;
        return qbsupport::Buffer(fails ? nullptr : text.data(), {[](char*) { return true; }});
    });
}

TEST(WholeReport, SetsSectionsApartAndLinesTogether) {
    const struct {
        std::vector<int> kinds;
        std::vector<int> failing;
        const char* text;
        std::vector<int> failed;
    } cases[] = {
        {{9, 10, 20}, {}, "9:10:dir\r\n20:\r\n", {}},
        {{9, 10, 20}, {10}, "9:\r\n20:\r\n", {10}},
        {{8, 9, 10, 20}, {9}, "8:\r\n20:\r\n", {9, 10}},
        {{10, 9, 10}, {9}, "10:dir", {9, 10}},
        {{14, 15, 16, 17}, {15}, "14:\r\n16:17:one17:two", {15, 15}},
        {{16, 17, 9}, {16}, "9:\r\n", {16, 17, 17}},
        {{16, 9, 17}, {16}, "9:\r\n", {16, 17, 17}},
        {{77, 15}, {77}, "15:A15:B\r\n", {77}},
    };
    qbsupport::ReportOptions options;
    options.appDirectory = "dir";
    options.variables = {"A", "B"};
    options.modules = {"one", "two"};
    for (const auto& [kinds, failing, text, failed] : cases) {
        options.kinds = kinds;
        const auto report = ComposeFake(options, failing);
        EXPECT_EQ(report.text, text);
        std::vector<int> missing;
        for (const qbsupport::FailedSection& section : report.failed) {
            missing.push_back(section.section.kind);
        }
        EXPECT_EQ(missing, failed) << text;
    }
}

TEST(WholeReport, HasAllKindsButThoseWithoutAnArgument) {
    EXPECT_EQ(ComposeFake({}, {}).text,
              "1:\r\n2:\r\n3:\r\n4:\r\n5:\r\n6:\r\n7:\r\n8:\r\n9:\r\n11:Software\r\n14:\r\n16:\r\n"
              "18:\r\n20:\r\n");
}

}  // namespace
