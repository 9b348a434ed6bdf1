// Bare platform calls to measure sections against, and how times are compared.
#ifndef QBSUPPORT_BENCH_BENCH_H
#define QBSUPPORT_BENCH_BENCH_H

#include <algorithm>
#include <chrono>
#include <ctime>
#include <span>
#include <vector>

#include "qbsupport/qbsupport.hpp"

namespace qb_support::bench {

struct Floor {
    int kind;
    // Makes the section's platform calls on Windows 10 or 11, in the same order, without its text.
    void (*makePlatformCalls)(const char* argument);
    // Names something that exists on Windows and on the stand-in.
    const char* argument = "";
};

// One for each kind of a whole report. A test checks that the library makes the same calls.
extern const std::span<const Floor> kFloors;

// Processor time, so that other programs do not count. On Windows elapsed time, because Wine's
// server does some of the work.
inline double Seconds() {
#ifdef _WIN32
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
#else
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}

inline double SecondsFor(int count, const auto& function) {
    const double start = Seconds();
    for (int i = 0; i < count; ++i) {
        function();
    }
    return Seconds() - start;
}

// How many times as long `function` takes as `other`: the median of many pairs of short batches.
// Other programs that run meanwhile change a few pairs, or both halves of one.
inline double MedianRatio(double seconds, const auto& function, const auto& other) {
    function();  // libraries that a first call loads are loaded now
    const int count = std::max(1, static_cast<int>(200e-6 / (SecondsFor(20, function) / 20)));
    std::vector<double> ratios;
    for (double spent = 0; spent < seconds;) {
        const double time = SecondsFor(count, function);
        const double otherTime = SecondsFor(count, other);
        ratios.push_back(time / otherTime);
        spent += time + otherTime;
    }
    std::ranges::sort(ratios);
    return ratios[ratios.size() / 2];
}

}  // namespace qb_support::bench

#endif
