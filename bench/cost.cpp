// What each section costs on a real platform, against the same platform calls alone.
#include "bench.h"

#include <cstdio>
#include <cstdlib>

int main() {
    constexpr double kMost = 1.10;
    bool allMet = true;
    std::puts("| Kind | Ratio | At most | Met |\n|---|--:|--:|---|");
    for (const qb_support::bench::Floor& floor : qb_support::bench::kFloors) {
        const auto library = [&] {
            char* text = nullptr;
            QbSupportGetInfo(floor.kind, qbsupport::kAllFlags, &text, floor.argument);
            QbSupportReleaseBuffer(text);
        };
        // A call may take two blocks of memory, and as much time as one more for each line.
        const auto text = qbsupport::Section(floor.kind, qbsupport::kAllFlags, floor.argument);
        const auto blocks = 2 + std::ranges::count(text.value_or(""), '\n');
        const auto bare = [&] {
            floor.makePlatformCalls(floor.argument);
            for (std::ptrdiff_t i = 0; i < blocks; ++i) {
                void* volatile block = std::malloc(1024);  // volatile, or the compiler removes it
                std::free(block);
            }
        };
        const double ratio = qb_support::bench::MedianRatio(1, library, bare);
        const bool isMet = text && ratio <= kMost;
        std::printf("| %s | %.2f | %.2f | %s |\n", qbsupport::SectionKindOf(floor.kind).name, ratio,
                    kMost, isMet ? "yes" : "NO");
        allMet = allMet && isMet;
    }
    return allMet ? 0 : 1;
}
