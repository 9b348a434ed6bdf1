// What the measuring programs share: the calls that they measure, and the table's rows.
#ifndef QBSUPPORT_BENCH_BENCH_H
#define QBSUPPORT_BENCH_BENCH_H

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
    // and no text. Null where the section asks the platform nothing.
    void (*makePlatformCalls)(const char* argument);
};

// Every kind that reports something, in the order of a whole report.
extern const std::array<Section, 19> kSections;

// Three of them as a plain implementation writes them, with the floor's platform calls, on the
// stand-in's plain machine.
std::string PlainOperatingSystem();
std::string PlainMemory();
std::string PlainModules();

inline constexpr unsigned int kFlags =
    QbSupportFlagHeadings | QbSupportFlagSeparator | QbSupportFlagIndent;

inline std::string KindName(const Section& section) {
    return "kind " + std::to_string(section.kind) + ' ' + section.name;
}

// Prints a row for bench/run. `relation` is "<=" or "=" to the target, empty where there is none.
inline void PrintRow(const std::string& figure, double value, const char* unit,
                     const char* relation = "", double target = 0, const std::string& note = "") {
    std::printf("%s\t%.9g\t%s\t%s\t%.9g\t%s\n", figure.c_str(), value, unit, relation, target,
                note.c_str());
}

}  // namespace qb_support::bench

#endif
