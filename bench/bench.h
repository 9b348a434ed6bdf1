// What the measuring programs share: the sections with their floors, and how a time is taken.
#ifndef QBSUPPORT_BENCH_BENCH_H
#define QBSUPPORT_BENCH_BENCH_H

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "qbsupport/qbsupport.h"

namespace qb_support::bench {

struct Section {
    int kind;
    const char* name;  // with the kind's number
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

inline double FastTime(std::vector<double>& times) {
    std::ranges::sort(times);
    return times[times.size() / 10];
}

// Many short batches of each, by turns: the one that a tenth of them beat. Other programs make a
// batch longer, and a clock that jumps makes a few shorter.
inline Cost Measure(const Section& section, void (*callLibrary)(const Section&)) {
    const auto library = [&] { callLibrary(section); };
    const auto floor = [&] { section.makePlatformCalls(section.argument); };
    library();  // what is loaded once is loaded now
    const int count = std::max(1, static_cast<int>(200'000 / TimeOne(20, library)));
    std::vector<double> libraryTimes;
    std::vector<double> floorTimes;
    for (const double end = Now() + 1.5e9; Now() < end;) {
        libraryTimes.push_back(TimeOne(count, library));
        floorTimes.push_back(TimeOne(count, floor));
    }
    return {FastTime(libraryTimes), FastTime(floorTimes)};
}

}  // namespace qb_support::bench

#endif
