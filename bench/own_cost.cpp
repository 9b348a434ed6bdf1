// What the library itself costs on a platform that answers at once: allocations, and the time of a
// call less that of its floor, since the stand-in takes time too.
#include <malloc.h>

#include <cstdlib>
#include <ctime>
#include <iostream>
#include <vector>

#include "bench.h"
#include "stand_in/calls.h"
#include "stand_in/machine.h"

// The library's allocations: by the linker's --wrap its malloc comes here first.
static unsigned int allocations = 0;

void* RealMalloc(std::size_t size) __asm__("__real_malloc");
void* CountingMalloc(std::size_t size) __asm__("__wrap_malloc");

void* CountingMalloc(std::size_t size) {
    ++allocations;
    return RealMalloc(size);
}

// Processor time: a long list takes longer than other programs let us run undisturbed.
double qb_support::bench::Now() {
    return 1e9 / CLOCKS_PER_SEC * static_cast<double>(std::clock());
}

namespace {

using namespace qb_support::bench;

bool allMet = true;

void CallLibrary(const Section& section) {
    char* text = nullptr;
    QbSupportGetInfo(section.kind, kFlags, &text, section.argument);
    QbSupportReleaseBuffer(text);
}

// Every time is held against the floor, so it must ask neither more nor less.
void CheckFloor(const Section& section) {
    std::array<std::vector<std::string_view>, 2> calls;
    auto* made = calls.data();
    stand_in::beforeCall = [&](std::string_view name, std::uint64_t) { made->push_back(name); };
    CallLibrary(section);
    ++made;
    section.makePlatformCalls(section.argument);
    stand_in::beforeCall = nullptr;
    if (calls[0] != calls[1]) {
        std::cerr << "The floor of kind " << section.kind << " makes other calls\n";
        std::exit(2);
    }
}

// Measures a section, of which `lines` are counted, and returns its own time a line.
double PrintRow(const Section& section, const std::string& name, unsigned int lines,
                double mostTime, unsigned int mostAllocations) {
    const Cost cost = Measure(section, CallLibrary);
    const double time = (cost.library - cost.floor) / lines;
    allocations = 0;
    CallLibrary(section);
    const bool met = time <= mostTime && allocations <= mostAllocations;
    allMet = allMet && met;
    std::printf("| %s | %.0f ns | %.0f ns | %u | %u | %s |\n", name.c_str(), time, mostTime,
                allocations, mostAllocations, met ? "yes" : "NO");
    return time;
}

// A line may take a quarter longer in a list of many than in one of ten, for caches; growth that is
// not linear would show as a multiple.
void PrintList(const Section& section) {
    double mostTime = 300;
    for (const unsigned int count : {10U, 1000U, 10000U}) {
        stand_in::Machine machine;
        machine.processes.back().modules.assign(count,
                                                {"ntdll.dll", "C:\\Windows\\SYSTEM32\\ntdll.dll"});
        machine.monitors.assign(count, machine.monitors.front());
        const stand_in::ScopedMachine current(machine);
        const std::string name = section.name + (", one of " + std::to_string(count));
        const double time = PrintRow(section, name, count, mostTime, count);
        mostTime = count == 10U ? 1.25 * time : mostTime;
    }
}

}  // namespace

int main() {
    // The heap keeps its pages: how the kernel hands out the pages of a large text, which takes
    // longer than writing it, is not the library's doing.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    std::puts("| On the stand-in, kind | Own time | At most | Allocations | At most | Met |");
    std::puts("|---|--:|--:|--:|--:|---|");
    for (const Section& section : kSections) {
        CheckFloor(section);
        if (section.kind != QbSupportModules) {
            PrintRow(section, section.name, 1, 1000, 2);
        }
        if (section.kind == QbSupportModules || section.kind == QbSupportDisplay) {
            PrintList(section);
        }
    }
    return allMet ? 0 : 1;
}
