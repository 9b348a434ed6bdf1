// What the measuring programs share: the sections with their floors, and how a time is taken.
#ifndef QBSUPPORT_BENCH_BENCH_H
#define QBSUPPORT_BENCH_BENCH_H

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "qbsupport/qbsupport.h"

namespace qb_support::bench {

struct Section {
    int kind;
    const char* name;
    // Names something that is there, on Windows and on the stand-in.
    const char* argument;
    // The section's floor: its platform calls in the library's own order, on a Windows 10 or 11,
    // and no text. It makes none where the section asks the platform nothing.
    void (*makePlatformCalls)(const char* argument);
};

// Every kind that reports something, in the order of a whole report.
extern const std::array<Section, 19> kSections;

inline constexpr unsigned int kFlags =
    QbSupportFlagHeadings | QbSupportFlagSeparator | QbSupportFlagIndent;

inline std::string KindName(const Section& section) {
    return "kind " + std::to_string(section.kind) + ' ' + section.name;
}

struct Cost {  // nanoseconds a call
    double library;
    double floor;
};

// The program's own clock, in nanoseconds.
double Now();

inline double TimeOne(int count, const auto& function) {
    const double start = Now();
    for (int i = 0; i < count; ++i) {
        function();
    }
    return (Now() - start) / count;
}

// The least of many batches of each, by turns, in a second and a half: other programs only ever
// make a batch longer, and one of a fifth of a millisecond often runs undisturbed.
inline Cost LeastCost(const Section& section, void (*callLibrary)(const Section&)) {
    const auto library = [&] { callLibrary(section); };
    const auto floor = [&] { section.makePlatformCalls(section.argument); };
    library();  // what is loaded once is loaded now
    const int count = std::max(1, static_cast<int>(200'000 / TimeOne(20, library)));
    Cost least{1e300, 1e300};
    for (const double end = Now() + 1.5e9; Now() < end;) {
        least.library = std::min(least.library, TimeOne(count, library));
        least.floor = std::min(least.floor, TimeOne(count, floor));
    }
    return least;
}

}  // namespace qb_support::bench

#endif
