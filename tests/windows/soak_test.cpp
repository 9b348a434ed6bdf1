// Thousands of calls in one process: nothing grows.
#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include "library.h"

namespace {

// The system hands out the lowest free handle, so that its value rises with every leaked one. The
// process's handle count would say the same, but Wine always gives 0 for it.
std::size_t FreshHandle() {
    const HANDLE handle = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(handle);
    return reinterpret_cast<std::size_t>(handle);
}

std::size_t PrivateMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return counters.PagefileUsage;
}

DWORD LoadedModules() {
    HMODULE modules[1];
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), modules, sizeof(modules), &size);
    return size / sizeof(modules[0]);
}

// One call of every kind; the list of modules reads many files and takes its turn more seldom.
std::size_t CallAllKinds(const Library& library, std::size_t round) {
    std::size_t calls = 0;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        if (kind != 16 || round % 20 == 0) {
            library.Report(kind, static_cast<unsigned int>(round % 8), ArgumentFor(kind));
            ++calls;
        }
    }
    return calls;
}

TEST(Soak, ManyCallsLeaveHandlesMemoryAndModulesAsTheyWere) {
    constexpr std::size_t kCalls = 20000;
    constexpr std::size_t kTolerance = 128 * 1024;
    const Library library;
    for (std::size_t round = 0; round < 40; ++round) {
        CallAllKinds(library, round);
    }
    const std::size_t handle = FreshHandle();
    const std::size_t memory = PrivateMemory();
    const DWORD modules = LoadedModules();
    std::size_t calls = 0;
    for (std::size_t round = 0; calls < kCalls; ++round) {
        calls += CallAllKinds(library, round);
    }
    EXPECT_EQ(FreshHandle(), handle);
    EXPECT_LE(PrivateMemory(), memory + kTolerance);
    EXPECT_EQ(LoadedModules(), modules);
    std::printf("Tried: %zu calls, private memory %zu KB before and %zu KB after\n", calls,
                memory / 1024, PrivateMemory() / 1024);
}

TEST(Soak, LoadingAndUnloadingLeavesNothing) {
    constexpr int kTimes = 100;
    std::size_t handle = 0;
    std::size_t memory = 0;
    for (int i = 0; i < kTimes; ++i) {
        {
            const Library library;
            for (int kind = 1; kind <= kLastKind; ++kind) {
                if (kind != 16) {
                    library.Report(kind, 7, ArgumentFor(kind));
                }
            }
        }
        ASSERT_EQ(GetModuleHandleA("QBSUPPORT.dll"), nullptr) << "still loaded";
        if (i == kTimes / 10) {
            handle = FreshHandle();
            memory = PrivateMemory();
        }
    }
    EXPECT_EQ(FreshHandle(), handle);
    EXPECT_LE(PrivateMemory(), memory + 256 * 1024);
    std::printf("Tried: %d times loaded, used and unloaded\n", kTimes);
}

}  // namespace
