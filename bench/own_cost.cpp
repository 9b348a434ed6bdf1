// What the library itself costs on a platform that answers at once: time and allocations.
//
// The stand-in takes time too, so a section's own time is that of the call less that of its floor.
#include <malloc.h>

#include <cstdlib>
#include <vector>

#include "bench.h"
#include "stand_in/calls.h"
#include "stand_in/machine.h"

// The library's allocations: by the linker's --wrap its malloc comes here first, and so does the
// calloc that the compiler makes of a malloc whose block is then zeroed.
static int allocations = 0;

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);

void* __wrap_malloc(std::size_t size) {
    ++allocations;
    return __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    ++allocations;
    return __real_calloc(count, size);
}
}

namespace {

using namespace qb_support::bench;

bool allMet = true;

void CallLibrary(const Section& section) {
    char* text = nullptr;
    QbSupportGetInfo(section.kind, kFlags, &text, section.argument);
    QbSupportReleaseBuffer(text);
}

int CountAllocations(const Section& section) {
    allocations = 0;
    CallLibrary(section);
    return allocations;
}

double OwnTime(const Section& section) {
    const Cost cost = LeastCost([&] { CallLibrary(section); },
                                [&] { section.makePlatformCalls(section.argument); });
    return cost.library - cost.floor;
}

void PrintRow(const std::string& name, double time, double mostTime, int allocated,
              int mostAllocated) {
    const bool met = time <= mostTime && allocated <= mostAllocated;
    allMet = allMet && met;
    std::printf("| %s | %.0f ns | %.0f ns | %d | %d | %s |\n", name.c_str(), time, mostTime,
                allocated, mostAllocated, met ? "yes" : "NO");
}

std::vector<std::string_view> CallsOf(const auto& function) {
    std::vector<std::string_view> calls;
    stand_in::beforeCall = [&](std::string_view name, std::uint64_t /*ordinal*/) {
        calls.push_back(name);
    };
    function();
    stand_in::beforeCall = nullptr;
    return calls;
}

// Every time is held against the floor, so it must ask neither more nor less.
void CheckFloor(const Section& section) {
    if (CallsOf([&] { CallLibrary(section); }) !=
        CallsOf([&] { section.makePlatformCalls(section.argument); })) {
        std::fprintf(stderr, "The floor of kind %d makes other calls\n", section.kind);
        std::exit(2);
    }
}

// A line may take a quarter longer in a list of many, for caches; growth that is not linear would
// show as a multiple.
void PrintList(int kind, const char* lines) {
    const Section& section = *std::ranges::find(kSections, kind, &Section::kind);
    double mostTime = 300;
    for (const int count : {10, 1000, 10000}) {
        stand_in::Machine machine;
        const auto size = static_cast<std::size_t>(count);
        machine.processes.back().modules.assign(size,
                                                {"ntdll.dll", "C:\\Windows\\SYSTEM32\\ntdll.dll"});
        machine.monitors.assign(size, machine.monitors.front());
        const stand_in::ScopedMachine current(machine);
        const double time = OwnTime(section) / count;
        PrintRow("kind " + std::to_string(kind) + ", one of " + std::to_string(count) + ' ' + lines,
                 time, mostTime, CountAllocations(section), count);
        mostTime = 1.25 * time;
    }
}

}  // namespace

int main() {
    // The heap keeps its pages: how the kernel hands out the pages of a large text, which takes
    // longer than writing it, is not the library's doing.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    std::puts("| On the stand-in | Own time | At most | Allocations | At most | Met |");
    std::puts("|---|--:|--:|--:|--:|---|");
    for (const Section& section : kSections) {
        CheckFloor(section);
        if (section.kind != QbSupportModules) {
            PrintRow(KindName(section), OwnTime(section), 1000, CountAllocations(section), 2);
        }
    }
    PrintList(QbSupportModules, "modules");
    PrintList(QbSupportDisplay, "monitors");
    return allMet ? 0 : 1;
}
