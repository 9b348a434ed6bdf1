// What the library itself costs, on a platform that answers at once: time, allocations, memory.
//
// The stand-in platform takes time too, so a section's own time is that of the call less that of
// the section's floor. Both are the fastest of several interleaved repetitions, in processor time.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>

#include "bench.h"
#include "stand_in/machine.h"

namespace {

using namespace qb_support::bench;

// What the library allocates while it is watched: its malloc and free come here first (the linker's
// --wrap), and calloc, which the compiler makes of a malloc whose block is then zeroed.
struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;  // held now, as the heap rounds them
    std::size_t peakBytes = 0;
};
Allocations* watch = nullptr;

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);

static void* Watched(void* block) {
    if (watch != nullptr) {
        ++watch->count;
        watch->bytes += malloc_usable_size(block);
        watch->peakBytes = std::max(watch->peakBytes, watch->bytes);
    }
    return block;
}

void* __wrap_malloc(std::size_t size) {
    return Watched(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return Watched(__real_calloc(count, size));
}

void __wrap_free(void* block) {
    if (watch != nullptr) {
        watch->bytes -= malloc_usable_size(block);
    }
    __real_free(block);
}
}

namespace {

// The plain machine with `count` modules in this process and as many monitors; 0 for its own.
stand_in::Machine MachineWith(std::size_t count) {
    stand_in::Machine machine;
    if (count != 0) {
        machine.processes.back().modules.assign(count,
                                                {"ntdll.dll", "C:\\Windows\\SYSTEM32\\ntdll.dll"});
        machine.monitors.assign(count, machine.monitors.front());
    }
    return machine;
}

std::string CallLibrary(const Section& section, Allocations* allocations = nullptr) {
    char* buffer = nullptr;
    watch = allocations;
    const bool complete = QbSupportGetInfo(section.kind, kFlags, &buffer, section.argument) != 0;
    watch = nullptr;
    std::string text = complete ? buffer : "";
    QbSupportReleaseBuffer(buffer);
    return text;
}

Allocations CountAllocations(const Section& section) {
    Allocations allocations;
    CallLibrary(section, &allocations);
    return allocations;
}

// The fastest repetition of every benchmark, in nanoseconds.
class Times : public benchmark::BenchmarkReporter {
public:
    template <typename Function>
    void Register(const char* what, const Section& section, std::size_t count, Function function) {
        const auto run = [=](benchmark::State& state) {
            const stand_in::ScopedMachine machine(MachineWith(count));
            for ([[maybe_unused]] auto _ : state) {
                function();
            }
        };
        benchmark::RegisterBenchmark(Name(what, section, count).c_str(), run)
            ->MinTime(0.02)
            ->Repetitions(15);
    }

    void RegisterOwnTime(const Section& section, std::size_t count = 0) {
        Register("library", section, count, [=] {
            char* text = nullptr;
            QbSupportGetInfo(section.kind, kFlags, &text, section.argument);
            QbSupportReleaseBuffer(text);
        });
        if (section.makePlatformCalls != nullptr) {
            Register("floor", section, count, [=] { section.makePlatformCalls(section.argument); });
        }
    }

    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const auto time = m_times.try_emplace(run.run_name.function_name, 1e300).first;
                time->second = std::min(time->second, run.GetAdjustedCPUTime());
            }
        }
    }

    double Of(const char* what, const Section& section, std::size_t count) const {
        const auto time = m_times.find(Name(what, section, count));
        return time != m_times.end() ? time->second : 0;
    }
    double OwnTime(const Section& section, std::size_t count = 0) const {
        return Of("library", section, count) - Of("floor", section, count);
    }

private:
    static std::string Name(const char* what, const Section& section, std::size_t count) {
        return what + ('/' + std::to_string(section.kind)) + '/' + std::to_string(count);
    }

    std::map<std::string, double> m_times;
};

void PrintSection(const Times& times, const Section& section) {
    PrintRow("Own time, " + KindName(section), times.OwnTime(section), "ns", "<=", 1000,
             "floor " + std::to_string(std::lround(times.Of("floor", section, 0))) + " ns");
    const stand_in::ScopedMachine machine;
    PrintRow("Allocations, " + KindName(section),
             static_cast<double>(CountAllocations(section).count), "", "<=", 6);
}

void PrintModules(const Times& times, const Section& section, std::size_t count) {
    const stand_in::ScopedMachine machine(MachineWith(count));
    const auto modules = static_cast<double>(count);
    const std::string which = "a module of " + std::to_string(count);
    PrintRow("Own time, kind 16, " + which, times.OwnTime(section, count) / modules, "ns",
             "<=", 300,
             "floor " + std::to_string(std::lround(times.Of("floor", section, count) / modules)) +
                 " ns");
    const std::size_t allocated = CountAllocations(section).count;
    PrintRow("Allocations, kind 16, " + which, static_cast<double>(allocated) / modules, "",
             "<=", 1, std::to_string(allocated) + " in all");
}

// A quarter more for caches; growth that is not linear would show as a multiple.
void PrintGrowth(const Times& times, const Section& section) {
    const double ofFew = times.OwnTime(section, 100) / 100;
    const double ofMany = times.OwnTime(section, 10000) / 10000;
    PrintRow("Own time of a line, 10,000 against 100, " + KindName(section), ofMany / ofFew, "x",
             "<=", 1.25);
}

// The worst of many sizes, since memory grows in leaps.
void PrintPeakMemory(const Section& section) {
    double worst = 0;
    for (std::size_t count = 500; count < 5000; count += 43) {
        const stand_in::ScopedMachine machine(MachineWith(count));
        Allocations allocations;
        const auto textBytes = static_cast<double>(CallLibrary(section, &allocations).size());
        worst = std::max(worst, static_cast<double>(allocations.peakBytes) / textBytes);
    }
    PrintRow("Peak memory against the text, " + KindName(section), worst, "x", "<=", 3);
}

struct Plain {
    int kind;
    std::size_t count;
    std::string (*text)();
};
constexpr Plain kPlain[] = {{QbSupportOperatingSystem, 0, PlainOperatingSystem},
                            {QbSupportMemory, 0, PlainMemory},
                            {QbSupportModules, 100, PlainModules}};

const Section& SectionOf(int kind) {
    return *std::ranges::find(kSections, kind, &Section::kind);
}

// The text goes out in a block of its own, as the library's does.
void WritePlainly(const Plain& plain) {
    const std::string text = plain.text();
    void* const block = std::malloc(text.size() + 1);
    std::memcpy(block, text.c_str(), text.size() + 1);
    benchmark::DoNotOptimize(block);
    std::free(block);
}

void PrintPlain(const Times& times, const Plain& plain) {
    const Section& section = SectionOf(plain.kind);
    const stand_in::ScopedMachine machine(MachineWith(plain.count));
    if (plain.text() != CallLibrary(section)) {
        std::fprintf(stderr, "The plain lines of kind %d are not the library's\n", plain.kind);
        std::exit(1);
    }
    const double time =
        times.Of("plain", section, plain.count) - times.Of("floor", section, plain.count);
    const double own = times.OwnTime(section, plain.count);
    char note[64];
    std::snprintf(note, sizeof(note), "%.1f x the library's own %.0f ns", time / own, own);
    PrintRow("Own time with string streams, " + KindName(section), time, "ns", "", 0, note);
}

}  // namespace

int main(int argc, char** argv) {
    // The heap keeps its pages: how the kernel hands out the pages of a large text, which takes
    // longer than writing it, is not the library's doing.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    benchmark::Initialize(&argc, argv);
    Times times;
    for (const Section& section : kSections) {
        times.RegisterOwnTime(section);
    }
    for (const std::size_t count : {10, 100, 1000, 10000}) {
        times.RegisterOwnTime(SectionOf(QbSupportModules), count);
        times.RegisterOwnTime(SectionOf(QbSupportDisplay), count);
    }
    for (const Plain& plain : kPlain) {
        times.Register("plain", SectionOf(plain.kind), plain.count, [=] { WritePlainly(plain); });
    }
    benchmark::RunSpecifiedBenchmarks(&times);

    for (const Section& section : kSections) {
        if (section.kind != QbSupportModules) {
            PrintSection(times, section);
        }
    }
    for (const std::size_t count : {10, 100, 1000, 10000}) {
        PrintModules(times, SectionOf(QbSupportModules), count);
    }
    for (const int kind : {QbSupportModules, QbSupportDisplay}) {
        PrintGrowth(times, SectionOf(kind));
        PrintPeakMemory(SectionOf(kind));
    }
    for (const Plain& plain : kPlain) {
        PrintPlain(times, plain);
    }
}
