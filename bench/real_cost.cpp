// What the sections of the DLL cost on a real platform, against the same platform calls alone.
#include <chrono>
#include <cstdlib>

#include "bench.h"
#include "platform/named_function.h"

// Elapsed time: Wine's server does some of the work.
double qb_support::bench::Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::nano>(now).count();
}

namespace {

using namespace qb_support::bench;

decltype(&QbSupportGetInfo) getInfo;
decltype(&QbSupportReleaseBuffer) releaseBuffer;

void CallLibrary(const Section& section) {
    char* text = nullptr;
    if (getInfo(section.kind, kFlags, &text, section.argument) == 0) {
        std::fprintf(stderr, "Kind %d failed\n", section.kind);
        std::exit(2);
    }
    releaseBuffer(text);
}

// A tenth more than the floor, or a microsecond, which nobody notices.
bool PrintRow(const char* name, const Cost& cost) {
    const double most = std::max(1.10 * cost.floor, cost.floor + 1000);
    const bool met = cost.library <= most;
    std::printf("| %s | %.2f us | %.2f us | %.2f us | %s |\n", name, cost.library / 1000,
                cost.floor / 1000, most / 1000, met ? "yes" : "NO");
    return met;
}

}  // namespace

int main(int argc, char** argv) {
    HMODULE module = argc == 2 ? LoadLibraryA(argv[1]) : nullptr;
    getInfo = qb_support::FindFunction<decltype(QbSupportGetInfo)>(module, "QbSupportGetInfo");
    releaseBuffer = qb_support::FindFunction<decltype(QbSupportReleaseBuffer)>(
        module, "QbSupportReleaseBuffer");
    if (getInfo == nullptr || releaseBuffer == nullptr) {
        std::fprintf(stderr, "usage: real_cost QBSUPPORT.dll\n");
        return 2;
    }

    std::puts("| Under Wine, kind | Library | Floor | At most | Met |\n|---|--:|--:|--:|---|");
    bool allMet = true;
    for (const Section& section : kSections) {
        allMet = PrintRow(section.name, Measure(section, CallLibrary)) && allMet;
    }
    return allMet ? 0 : 1;
}
