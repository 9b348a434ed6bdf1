// The library in a host's process: many calls, and that nothing of the process changes. Arguments:
// the library; with "console" after it, only the second on a console.
#include <direct.h>
#include <windows.h>

#include <psapi.h>
#include <xmmintrin.h>

#include <cfloat>
#include <clocale>
#include <cstring>

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
        if (kind != QbSupportModules || round == 0) {
            library.Report(kind, static_cast<unsigned int>(round % 8), ArgumentFor(kind));
        }
    }
}

void CallingAndLoadingLeavesNothing(const char* path) {
    constexpr int kLoads = 40;
    constexpr int kRounds = 20;
    Resources before{};
    for (int load = 0; load < kLoads; ++load) {
        const Library library(path);
        if (load == kLoads / 4) {
            before = Used();
        }
        for (int round = 0; round < kRounds; ++round) {
            CallAllKinds(library, round);
        }
    }
    std::printf("Tried: %d calls soaked over %d loads of the library\n",
                kLoads * (kRounds * (kLastKind - 1) + 1), kLoads);
    Check(GetModuleHandleA("QBSUPPORT.dll") == nullptr, "still loaded");
    const Library library(path);
    const Resources after = Used();
    CheckEqual(after.handle, before.handle);
    Check(after.memory <= before.memory + 128 * 1024,
          "memory from " + std::to_string(before.memory) + " to " + std::to_string(after.memory));
    CheckEqual(after.modules, before.modules);
}

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

// One line for each thing, so that a difference shows.
std::string ProcessState() {
    char directory[MAX_PATH] = {};
    _getcwd(directory, MAX_PATH);
    char search[1024] = {};
    GetDllDirectoryA(sizeof(search), search);
    std::string state = ConsoleState() + '\n' + std::setlocale(LC_ALL, nullptr) + '\n' + directory +
                        '\n' + search + "\nDPI awareness, error modes, floating point, locale:";
    for (const auto number :
         {unsigned(IsProcessDPIAware()), GetErrorMode(), unsigned(GetThreadErrorMode()),
          _controlfp(0, 0), _mm_getcsr() & ~_MM_EXCEPT_MASK, unsigned(GetThreadLocale())}) {
        state += ' ' + std::to_string(number);
    }
    char* const block = GetEnvironmentStringsA();
    for (const char* entry = block; *entry != '\0'; entry += std::strlen(entry) + 1) {
        state += '\n' + std::string(entry);
    }
    FreeEnvironmentStringsA(block);
    return state;
}

void NoCallChangesTheProcess(const char* path) {
    const Library library(path);
    // Unusual settings: a call that set the usual ones would show.
    std::setlocale(LC_NUMERIC, "German_Germany");
    _chdir("C:\\windows");
    SetErrorMode(SEM_NOGPFAULTERRORBOX);
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, nullptr);
    _controlfp(_RC_UP, _MCW_RC);
    _mm_setcsr(_mm_getcsr() | _MM_FLUSH_ZERO_ON);

    const std::string before = ProcessState();
    for (int kind = 1; kind <= kLastKind; ++kind) {
        for (const char* argument : {ArgumentFor(kind), "no such thing"}) {
            library.Report(kind, 7, argument);
            CheckEqual(ProcessState(), before);
        }
    }
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 2) {
        Check(SetConsoleOutputCP(850) && ConsoleState().find("none") == std::string::npos,
              "without a console");
    } else {
        CallingAndLoadingLeavesNothing(arguments[1]);
    }
    NoCallChangesTheProcess(arguments[1]);
    return failedChecks == 0 ? 0 : 1;
}
