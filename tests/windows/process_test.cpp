// Calls the library in a host's process: in various contexts, many times, and with a check that it
// changes nothing in the process. Arguments: the library, and optionally "once", which leaves out
// the many calls, "console", which makes only that check, on a console, or "die", with which the
// program ends right after the library's warning.
#include <direct.h>
#include <windows.h>

#include <psapi.h>
#include <xmmintrin.h>

#include <cfloat>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "library.h"

namespace {

// The list of modules reads many files, so most of the repeated calls leave it out.
std::string CallAllKinds(const Library& library, unsigned int flags, bool withModules = true) {
    std::string texts;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        if (kind != QbSupportModules || withModules) {
            const std::string text = library.Report(kind, flags, ArgumentFor(kind));
            // The time and the memory differ in the next call.
            const bool changes = kind == QbSupportDateTime || kind == QbSupportMemory;
            texts += changes ? text.substr(0, 7) : text;
        }
    }
    return texts;
}

const Library* called;
std::string found;
void* hostFiber;

void Call() {
    found = CallAllKinds(*called, 7);
}

void OnThread() {
    const auto run = [](void*) -> DWORD { return Call(), 0; };
    const HANDLE thread =
        CreateThread(nullptr, 64 * 1024, run, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

void InEnumeration() {
    const auto run = [](HMONITOR, HDC, RECT*, LPARAM) -> BOOL { return Call(), FALSE; };
    EnumDisplayMonitors(nullptr, nullptr, run, 0);
}

void OnFiber() {
    const auto run = [](void*) { Call(), SwitchToFiber(hostFiber); };
    hostFiber = ConvertThreadToFiber(nullptr);
    void* const fiber = CreateFiber(64 * 1024, run, nullptr);
    SwitchToFiber(fiber);
    DeleteFiber(fiber);
    ConvertFiberToThread();
}

// Exceptions for inexact results stay off, because Wine's own functions would raise them. The
// library does not use floating-point numbers.
void WithFloatingPointExceptions() {
    const unsigned before = _mm_getcsr();
    _mm_setcsr((before & ~_MM_MASK_MASK) | _MM_MASK_INEXACT | _MM_FLUSH_ZERO_ON);
    Call();
    _mm_setcsr(before);
}

void Impersonating() {
    Check(ImpersonateSelf(SecurityImpersonation) != 0, "cannot impersonate");
    Call();
    RevertToSelf();
}

void GivesTheSameEverywhere(const Library& library) {
    CallAllKinds(library, 7);  // loads libraries, which the next list of modules contains
    const std::string expected = CallAllKinds(library, 7);
    called = &library;
    for (const auto place :
         {OnThread, InEnumeration, OnFiber, WithFloatingPointExceptions, Impersonating}) {
        found.clear();
        place();
        CheckEqual(found, expected);
    }
}

constexpr std::size_t kPainted = 128 * 1024;
volatile std::uintptr_t paintedFrom;

[[gnu::noinline]] void PaintStack() {
    char stack[kPainted];
    paintedFrom = reinterpret_cast<std::uintptr_t>(stack);
    std::memset(reinterpret_cast<char*>(paintedFrom), 'p', kPainted);
}

// This includes the stack that the platform's functions need, which differs between systems.
void NeedsLittleStack(const Library& library) {
    PaintStack();
    CallAllKinds(library, 7);
    const std::string_view stack(reinterpret_cast<const char*>(paintedFrom), kPainted);
    const std::size_t used = kPainted - stack.find_first_not_of('p');
    std::printf("Tried: all kinds on %d bytes of stack\n", static_cast<int>(used));
    Check(used > 1024 && used < 48 * 1024, "an unlikely use of stack");
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
    std::size_t handles, modules, memory;
};

// A new handle gets the lowest free value, which rises with each handle that is leaked. The
// process's handle count is not used because it is always 0 under Wine.
Resources Used() {
    const HANDLE handle = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(handle);
    HMODULE module = nullptr;
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), &module, sizeof(module), &size);
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return {reinterpret_cast<std::size_t>(handle) / 4, size / sizeof(module),
            counters.PagefileUsage};
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
            CallAllKinds(library, round % 8, round == 0);
        }
    }
    std::printf("Tried: %u calls soaked over %u loads of the library\n",
                kLoads * (kRounds * (kLastKind - 1) + 1), kLoads);
    Check(GetModuleHandleA("QBSUPPORT.dll") == nullptr, "still loaded");
    const Library library(path);
    const Resources after = Used();
    // Windows may keep a few for its own services. With one leak per load, there would be 30 more.
    Check(after.handles <= before.handles + 15, "handles " + std::to_string(after.handles));
    Check(after.modules <= before.modules + 15, "modules " + std::to_string(after.modules));
    Check(after.memory <= before.memory + 128 * 1024, "memory " + std::to_string(after.memory));
}

// The console's code pages and modes.
std::string ConsoleState() {
    std::string state = std::to_string(GetConsoleCP()) + ' ' + std::to_string(GetConsoleOutputCP());
    for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE}) {
        DWORD mode = 0;
        const bool isConsole = GetConsoleMode(GetStdHandle(stream), &mode) != 0;
        state += isConsole ? ' ' + std::to_string(mode) : " none";
    }
    return state;
}

// On several lines, so that a difference is easy to find.
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

void NoCallChangesTheProcess(const Library& library) {
    // The settings are unusual, so that a call that restores the usual ones is noticed.
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
    } else if (mode == "console") {
        Check(SetConsoleOutputCP(850) && ConsoleState().find("none") == std::string::npos,
              "without a console");
    } else {
        GivesTheSameEverywhere(library);
        NeedsLittleStack(library);
        SpeaksTheCodePageOfTheProcess(library);
        // The variable is inherited, so every run-time library knows it.
        CheckHas(library.Report(QbSupportEnvironment, 0, "windir"), "[windir] = [");
    }
    NoCallChangesTheProcess(library);
    return failedChecks == 0 ? 0 : 1;
}
