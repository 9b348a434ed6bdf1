// What the sections of the DLL cost on a real platform, against the same platform calls alone.
//
// Both run in this process in short batches, each in turn the first. The ratio is the median of the
// rounds', since both batches of a round meet the machine in the same mood; the times are the
// fastest ones.
#include <algorithm>

#include "bench.h"
#include "platform/named_function.h"

namespace {

using namespace qb_support::bench;

constexpr double kBatchSeconds = 0.002;
constexpr int kRounds = 301;

decltype(&QbSupportGetInfo) getInfo;
decltype(&QbSupportReleaseBuffer) releaseBuffer;

void CallLibrary(const Section& section) {
    char* text = nullptr;
    if (getInfo(section.kind, kFlags, &text, section.argument) == 0) {
        std::fprintf(stderr, "Kind %d failed\n", section.kind);
        std::exit(1);
    }
    releaseBuffer(text);
}

void CallFloor(const Section& section) {
    if (section.makePlatformCalls != nullptr) {
        section.makePlatformCalls(section.argument);
    }
}

// The microseconds that one of `count` calls of `function` takes.
double TimeOne(int count, const auto& function) {
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    for (int i = 0; i < count; ++i) {
        function();
    }
    QueryPerformanceCounter(&end);
    return 1e6 * static_cast<double>(end.QuadPart - start.QuadPart) /
           static_cast<double>(frequency.QuadPart) / count;
}

void Compare(const std::string& figure, const auto& library, const auto& floor, bool hasFloor) {
    floor();  // what is loaded once is loaded now
    library();
    const int count = static_cast<int>(1e6 * kBatchSeconds / std::max(0.1, TimeOne(2, library)));
    double libraryTime = 1e300;
    double floorTime = 1e300;
    std::array<double, kRounds> ratios;
    for (int round = 0; round < kRounds; ++round) {
        const auto timeLibrary = [&] { return TimeOne(std::max(1, count), library); };
        const double before = round % 2 == 0 ? timeLibrary() : 0;
        const double ofFloor = TimeOne(std::max(1, count), floor);
        const double ofLibrary = round % 2 == 0 ? before : timeLibrary();
        libraryTime = std::min(libraryTime, ofLibrary);
        floorTime = std::min(floorTime, ofFloor);
        ratios[static_cast<std::size_t>(round)] = ofLibrary / ofFloor;
    }
    std::ranges::nth_element(ratios, ratios.begin() + kRounds / 2);
    if (!hasFloor) {
        PrintRow(figure, libraryTime, "us", "", 0, "asks the platform nothing");
        return;
    }
    char note[80];
    std::snprintf(note, sizeof(note), "%.2f us against %.2f us", libraryTime, floorTime);
    PrintRow(figure, ratios[kRounds / 2], "x", "<=", 1.10, note);
}

}  // namespace

int main(int argc, char** argv) {
    HMODULE module = argc == 2 ? LoadLibraryA(argv[1]) : nullptr;
    getInfo = qb_support::FindFunction<decltype(QbSupportGetInfo)>(module, "QbSupportGetInfo");
    releaseBuffer = qb_support::FindFunction<decltype(QbSupportReleaseBuffer)>(
        module, "QbSupportReleaseBuffer");
    if (getInfo == nullptr || releaseBuffer == nullptr) {
        std::fprintf(stderr, "usage: real_cost QBSUPPORT.dll\n");
        return 1;
    }

    for (const Section& section : kSections) {
        Compare(
            "Under Wine, " + KindName(section), [&] { CallLibrary(section); },
            [&] { CallFloor(section); }, section.makePlatformCalls != nullptr);
    }
    Compare(
        "Under Wine, the whole report", [] { std::ranges::for_each(kSections, CallLibrary); },
        [] { std::ranges::for_each(kSections, CallFloor); }, true);
}
