// What belongs to the whole process is the host's: no call changes it.
#include <direct.h>
#include <float.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <xmmintrin.h>

#include <clocale>
#include <cstring>
#include <locale>
#include <map>

#include "library.h"

namespace {

// A host's own C++ locale, which must not reach the report's numbers.
struct Grouped : std::numpunct<char> {
    char do_thousands_sep() const override { return '_'; }
    std::string do_grouping() const override { return "\1"; }
};

int DpiAwareness() {
    using IsAware = BOOL WINAPI();
    auto* const isAware = reinterpret_cast<IsAware*>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA("user32.dll"), "IsProcessDPIAware")));
    return isAware != nullptr ? isAware() : -1;
}

std::string Environment() {
    char* const block = GetEnvironmentStringsA();
    const char* end = block;
    while (*end != '\0') {
        end += std::strlen(end) + 1;
    }
    std::string text(block, static_cast<std::size_t>(end - block));
    FreeEnvironmentStringsA(block);
    return text;
}

std::map<std::string, std::string> ProcessState() {
    char directory[MAX_PATH] = {};
    _getcwd(directory, MAX_PATH);
    DWORD inputMode = 0;
    DWORD outputMode = 0;
    GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &inputMode);
    GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &outputMode);
    char search[1024] = {};
    GetDllDirectoryA(sizeof(search), search);
    return {
        {"C locale", std::setlocale(LC_ALL, nullptr)},
        {"C++ locale", std::locale() == std::locale::classic() ? "classic" : "the host's"},
        {"current directory", directory},
        {"environment", Environment()},
        {"DPI awareness", std::to_string(DpiAwareness())},
        {"error mode", std::to_string(GetErrorMode())},
        {"thread error mode", std::to_string(GetThreadErrorMode())},
        {"console input", std::to_string(inputMode) + '/' + std::to_string(GetConsoleCP())},
        {"console output", std::to_string(outputMode) + '/' + std::to_string(GetConsoleOutputCP())},
        {"floating point", std::to_string(_controlfp(0, 0))},
        {"vector floating point", std::to_string(_mm_getcsr() & ~_MM_EXCEPT_MASK)},
        {"library search", search},
        {"thread locale", std::to_string(GetThreadLocale())},
        {"priority", std::to_string(GetPriorityClass(GetCurrentProcess()))}};
}

TEST(ProcessState, NoCallChangesIt) {
    const Library library;
    AllocConsole();
    // Unusual settings: a call that set the usual ones would show.
    std::setlocale(LC_NUMERIC, "German_Germany");
    std::locale::global(std::locale(std::locale::classic(), new Grouped));
    _chdir("C:\\windows");
    SetErrorMode(SEM_NOGPFAULTERRORBOX);
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, nullptr);
    SetConsoleCP(850);
    SetConsoleOutputCP(852);
    _controlfp(_RC_UP, _MCW_RC);
    _mm_setcsr(_mm_getcsr() | _MM_FLUSH_ZERO_ON);

    const auto before = ProcessState();
    for (int kind = 1; kind <= kLastKind; ++kind) {
        for (const unsigned int flags : {0U, 7U}) {
            for (const char* argument : {ArgumentFor(kind), "no such thing"}) {
                library.Report(kind, flags, argument);
                for (const auto& [name, value] : ProcessState()) {
                    EXPECT_EQ(value, before.at(name)) << name << " after kind " << kind;
                }
            }
        }
    }
    const std::string text = library.Report(8, 0).value_or("nothing");
    EXPECT_EQ(text.find('_'), std::string::npos) << text;
    std::locale::global(std::locale::classic());
    std::printf("Tried: %zu settings of the process after each of %d kinds\n", before.size(),
                kLastKind);
}

}  // namespace
