// Calls the library in a host's process, and many times. Arguments: the library, and optionally
// "once", which leaves out the many calls, or "die", with which the program ends right after the
// library's warning.
#include <windows.h>

#include <psapi.h>

#include <cstdio>

#include "library.h"

namespace {

void CallAllKinds(const Library& library, unsigned int flags) {
    for (int kind = 1; kind <= kLastKind; ++kind) {
        // Most sections find something with this argument.
        const char* const argument = kind == QbSupportModules ? nullptr : "Software";
        CheckEqual(library.Report(kind, flags, argument) == "nothing", kind == QbSupportReserved);
    }
}

// In a process that uses UTF-8, the digit separator is UTF-8 and not in the locale's code page.
void SpeaksTheCodePageOfTheProcess(const Library& library) {
    wchar_t before[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, before, 8);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, L"\u00A0");
    const std::string text = library.Report(QbSupportMemory, 0);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, before);
    CheckEqual(GetACP(), CP_UTF8);
    CheckHas(text, "\xC2\xA0");
}

struct Resources {
    std::size_t handles, memory;
};

// A new handle gets the lowest free value, which rises with each handle that is leaked. The
// process's handle count is not used because it is always 0 under Wine.
Resources Used() {
    const HANDLE handle = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(handle);
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return {reinterpret_cast<std::size_t>(handle) / 4, counters.PagefileUsage};
}

void CallingAndLoadingLeavesNothing(const char* path) {
    constexpr unsigned kLoads = 40;
    constexpr unsigned kRounds = 20;
    Resources before{};
    for (unsigned load = 0; load < kLoads; ++load) {
        const Library library(path);
        if (load == kLoads / 4) {
            before = Used();
        }
        for (unsigned round = 0; round < kRounds; ++round) {
            CallAllKinds(library, round % 8);
        }
    }
    std::printf("Tried: %u calls over %u loads of the library\n", kLoads * kRounds * kLastKind,
                kLoads);
    Check(GetModuleHandleA("QBSUPPORT.dll") == nullptr, "still loaded");
    const Library library(path);
    const Resources after = Used();
    // Windows may keep a few for its own services. With one leak per load, there would be 30 more.
    Check(after.handles <= before.handles + 15, "handles " + std::to_string(after.handles));
    Check(after.memory <= before.memory + 128 * 1024, "memory " + std::to_string(after.memory));
}

// The new process is suspended and has no modules yet, so that they cannot be listed.
void DieBehindWarning(const Library& library) {
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION child{};
    char command[] = "winver.exe";
    CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                   &startup, &child);
    library.Report(QbSupportModules, 0, command);
    TerminateProcess(child.hProcess, 0);
    TerminateProcess(GetCurrentProcess(), 0);
}

}  // namespace

int main(int count, char** arguments) {
    const std::string mode = count > 2 ? arguments[2] : "";
    if (mode.empty()) {
        CallingAndLoadingLeavesNothing(arguments[1]);
    }
    const Library library(arguments[1]);
    if (mode == "die") {
        DieBehindWarning(library);
    }
    CallAllKinds(library, 7);
    SpeaksTheCodePageOfTheProcess(library);
    // The variable is inherited, so every run-time library knows it.
    CheckHas(library.Report(QbSupportEnvironment, 0, "windir"), "[windir] = [");
    return failedChecks == 0 ? 0 : 1;
}
