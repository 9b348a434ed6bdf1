// The library in a host's process: many calls, and that nothing of the process changes.
#include <direct.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>
#include <xmmintrin.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <locale>
#include <map>

#include "library.h"

namespace {

struct Resources {
    std::size_t handle;
    std::size_t memory;
    DWORD modules;
};

// The system hands out the lowest free handle, so that its value rises with every leaked one. The
// process's handle count would say the same, but Wine always gives 0 for it.
Resources Used() {
    const HANDLE handle = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(handle);
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    HMODULE module = nullptr;
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), &module, sizeof(module), &size);
    return {reinterpret_cast<std::size_t>(handle), counters.PagefileUsage, size};
}

// The list of modules reads many files and takes its turn more seldom.
void CallAllKinds(const Library& library, int round) {
    for (int kind = 1; kind <= kLastKind; ++kind) {
        if (kind != 16 || round == 0) {
            library.Report(kind, static_cast<unsigned int>(round % 8), ArgumentFor(kind));
        }
    }
}

TEST(Soak, CallingAndLoadingLeavesNothing) {
    constexpr int kLoads = 100;
    constexpr int kRounds = 12;
    Resources before{};
    for (int load = 0; load < kLoads; ++load) {
        const Library library;
        if (load == kLoads / 4) {
            before = Used();
        }
        for (int round = 0; round < kRounds; ++round) {
            CallAllKinds(library, round);
        }
    }
    std::printf("Tried: %d calls soaked over %d loads of the library\n",
                kLoads * (kRounds * (kLastKind - 1) + 1), kLoads);
    ASSERT_EQ(GetModuleHandleA("QBSUPPORT.dll"), nullptr) << "still loaded";
    const Library library;
    const Resources after = Used();
    EXPECT_EQ(after.handle, before.handle);
    EXPECT_LE(after.memory, before.memory + 128 * 1024);
    EXPECT_EQ(after.modules, before.modules);
}

// A host's own C++ locale, which must not reach the report's numbers.
struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return '_'; }
    std::string do_grouping() const override { return "\1"; }
};

// Its code pages and modes.
std::string ConsoleState() {
    std::string state = std::to_string(GetConsoleCP()) + ' ' + std::to_string(GetConsoleOutputCP());
    for (const char* const name : {"CONIN$", "CONOUT$"}) {
        const HANDLE console =
            CreateFileA(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                        nullptr, OPEN_EXISTING, 0, nullptr);
        DWORD mode = 0;
        state += GetConsoleMode(console, &mode) != 0 ? ' ' + std::to_string(mode) : " none";
        CloseHandle(console);
    }
    return state;
}

std::map<std::string, std::string> ProcessState() {
    char directory[MAX_PATH] = {};
    _getcwd(directory, MAX_PATH);
    char search[1024] = {};
    GetDllDirectoryA(sizeof(search), search);
    char* const block = GetEnvironmentStringsA();
    std::string environment;
    for (const char* entry = block; *entry != '\0'; entry += std::strlen(entry) + 1) {
        environment += std::string(entry) + '\n';
    }
    FreeEnvironmentStringsA(block);
    return {{"console", ConsoleState()},
            {"C locale", std::setlocale(LC_ALL, nullptr)},
            {"C++ locale", std::locale() == std::locale::classic() ? "classic" : "the host's"},
            {"current directory", directory},
            {"environment", environment},
            {"DPI awareness", std::to_string(IsProcessDPIAware())},
            {"error mode", std::to_string(GetErrorMode())},
            {"thread error mode", std::to_string(GetThreadErrorMode())},
            {"floating point", std::to_string(_controlfp(0, 0))},
            {"vector floating point", std::to_string(_mm_getcsr() & ~_MM_EXCEPT_MASK)},
            {"library search", search},
            {"thread locale", std::to_string(GetThreadLocale())}};
}

TEST(ProcessState, NoCallChangesIt) {
    const Library library;
    if (std::getenv("QBSUPPORT_TEST_ON_CONSOLE") != nullptr) {
        ASSERT_TRUE(SetConsoleOutputCP(850)) << "without a console";
        ASSERT_EQ(ConsoleState().find("none"), std::string::npos);
    }
    // Unusual settings: a call that set the usual ones would show.
    std::setlocale(LC_NUMERIC, "German_Germany");
    std::locale::global(std::locale(std::locale::classic(), new Grouped));
    _chdir("C:\\windows");
    SetErrorMode(SEM_NOGPFAULTERRORBOX);
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, nullptr);
    _controlfp(_RC_UP, _MCW_RC);
    _mm_setcsr(_mm_getcsr() | _MM_FLUSH_ZERO_ON);

    const auto before = ProcessState();
    for (int kind = 1; kind <= kLastKind; ++kind) {
        for (const char* argument : {ArgumentFor(kind), "no such thing"}) {
            library.Report(kind, 7, argument);
            EXPECT_EQ(ProcessState(), before) << "after kind " << kind;
        }
    }
    const std::string text = library.Report(8, 0).value_or("nothing");
    EXPECT_EQ(text.find('_'), std::string::npos) << text;
    std::locale::global(std::locale::classic());
}

}  // namespace
