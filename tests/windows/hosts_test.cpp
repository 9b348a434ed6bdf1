// Hosts that call from places of all sorts: what a plain call gives comes there too. Arguments: the
// library; with "die" after it, the host ends right behind the library's warning.
#include <windows.h>

#include <xmmintrin.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "library.h"

namespace {

std::vector<std::string> CallAllKinds(const Library& library) {
    std::vector<std::string> texts;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        texts.push_back(library.Report(kind, 7, ArgumentFor(kind)));
        // Time and memory are others by the next call.
        if (kind == QbSupportDateTime || kind == QbSupportMemory) {
            texts.back() = texts.back() == "nothing" ? "nothing" : "something";
        }
    }
    return texts;
}

std::function<void()> task;  // what the places run
void* hostFiber;

void OnThread() {
    const auto run = [](void*) -> DWORD { return task(), 0; };
    const HANDLE thread =
        CreateThread(nullptr, 64 * 1024, run, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

void InEnumeration() {
    const auto run = [](HMONITOR, HDC, RECT*, LPARAM) -> BOOL { return task(), FALSE; };
    EnumDisplayMonitors(nullptr, nullptr, run, 0);
}

void OnFiber() {
    const auto run = [](void*) { task(), SwitchToFiber(hostFiber); };
    hostFiber = ConvertThreadToFiber(nullptr);
    void* const fiber = CreateFiber(64 * 1024, run, nullptr);
    SwitchToFiber(fiber);
    DeleteFiber(fiber);
    ConvertFiberToThread();
}

// Inexact results stay masked: Wine computes with the caller's settings, and the library does not
// compute with such numbers at all.
void WithFloatingPointExceptions() {
    const unsigned before = _mm_getcsr();
    _mm_setcsr((before & ~_MM_MASK_MASK) | _MM_MASK_INEXACT | _MM_FLUSH_ZERO_ON);
    task();
    _mm_setcsr(before);
}

void Impersonating() {
    Check(ImpersonateSelf(SecurityImpersonation) != 0, "cannot impersonate");
    task();
    RevertToSelf();
}

void GivesTheSameEverywhere(const Library& library) {
    CallAllKinds(library);  // loads libraries, which the list of modules then shows
    const auto expected = CallAllKinds(library);
    for (const auto place :
         {OnThread, InEnumeration, OnFiber, WithFloatingPointExceptions, Impersonating}) {
        std::vector<std::string> found;
        task = [&] { found = CallAllKinds(library); };
        place();
        found.resize(expected.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            CheckEqual(found[i], expected[i]);
        }
    }
}

constexpr std::size_t kPainted = 128 * 1024;
volatile std::uintptr_t paintedFrom;

[[gnu::noinline]] void PaintStack() {
    char stack[kPainted];
    paintedFrom = reinterpret_cast<std::uintptr_t>(stack);
    std::memset(reinterpret_cast<char*>(paintedFrom), 'p', kPainted);
}

// The platform's part included, which on other systems is another.
void NeedsLittleStack(const Library& library) {
    std::printf("Tried: stack used by each kind:");
    for (int kind = 1; kind <= kLastKind; ++kind) {
        PaintStack();
        library.Report(kind, 7, ArgumentFor(kind));
        const auto* const stack = reinterpret_cast<const char*>(paintedFrom);
        const auto* const deepest =
            std::find_if(stack, stack + kPainted, [](char byte) { return byte != 'p'; });
        const auto used = static_cast<int>(stack + kPainted - deepest);
        std::printf(" %d", used);
        Check(used < 48 * 1024, "much stack for kind " + std::to_string(kind));
    }
    std::printf("\n");
}

// In a process that speaks UTF-8 the digit separator does too, and not the locale's own code page.
void SpeaksTheCodePageOfTheProcess(const Library& library) {
    wchar_t before[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, before, 8);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, L"\u00A0");
    const std::string text = library.Report(QbSupportMemory, 0);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, before);
    Check(GetACP() == CP_UTF8 && text.find("\xC2\xA0") != std::string::npos, text);
}

// A process that has no modules yet cannot be listed.
[[noreturn]] void DieBehindWarning(const Library& library) {
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION child{};
    char command[] = "winver.exe";
    CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                   &startup, &child);
    library.Report(QbSupportModules, 0, command);
    TerminateProcess(child.hProcess, 0);
    TerminateProcess(GetCurrentProcess(), 0);
    std::abort();
}

}  // namespace

int main(int count, char** arguments) {
    const Library library(arguments[1]);
    if (count > 2) {
        DieBehindWarning(library);
    }
    GivesTheSameEverywhere(library);
    NeedsLittleStack(library);
    SpeaksTheCodePageOfTheProcess(library);
    // Inherited, and so known to every run-time library.
    Check(library.Report(QbSupportEnvironment, 0, "windir").find("Not set") == std::string::npos,
          "no environment");
    return failedChecks == 0 ? 0 : 1;
}
