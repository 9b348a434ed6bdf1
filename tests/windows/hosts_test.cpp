// Hosts that call from places of all sorts: what a plain call gives comes there too. Arguments: the
// library; with "die" after it, the host ends right behind the library's warning.
#include <windows.h>

#include <xmmintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "library.h"

namespace {

using Texts = std::vector<std::string>;

// With an argument that gives most kinds something to say.
std::string Call(const Library& library, int kind) {
    return library.Report(kind, 7, kind == QbSupportModules ? nullptr : "C:\\windows\\regedit.exe");
}

Texts CallAllKinds(const Library& library) {
    Texts texts;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        texts.push_back(Call(library, kind));
        // Time and memory are others by the next call.
        if (kind == QbSupportDateTime || kind == QbSupportMemory) {
            texts.back() = texts.back() == "nothing" ? "nothing" : "something";
        }
    }
    return texts;
}

// What unusual places run there.
std::function<void()> task;

DWORD WINAPI RunOnThread(void*) {
    task();
    return 0;
}

BOOL CALLBACK RunInEnumeration(HMONITOR, HDC, RECT*, LPARAM) {
    task();
    return FALSE;
}

void* hostFiber;

void WINAPI RunOnFiber(void*) {
    task();
    SwitchToFiber(hostFiber);
}

void OnThread() {
    const HANDLE thread = CreateThread(nullptr, 64 * 1024, RunOnThread, nullptr,
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

void InEnumeration() {
    EnumDisplayMonitors(nullptr, nullptr, RunInEnumeration, 0);
}

void OnFiber() {
    hostFiber = ConvertThreadToFiber(nullptr);
    void* const fiber = CreateFiber(64 * 1024, RunOnFiber, nullptr);
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
    const Texts expected = CallAllKinds(library);
    const std::pair<const char*, void (*)()> places[] = {
        {"on a thread", OnThread},
        {"in an enumeration of monitors", InEnumeration},
        {"on a fiber", OnFiber},
        {"with floating-point exceptions", WithFloatingPointExceptions},
        {"impersonating", Impersonating},
    };
    for (const auto& [name, run] : places) {
        Texts found;
        task = [&] { found = CallAllKinds(library); };
        run();
        Check(found.size() == expected.size(), std::string("nothing called ") + name);
        for (std::size_t i = 0; i < found.size(); ++i) {
            Check(found[i] == expected[i],
                  "kind " + std::to_string(i + 1) + ' ' + name + ": " + found[i]);
        }
    }
}

constexpr std::size_t kStackPainted = 128 * 1024;
constexpr char kPaint = '\x5A';
volatile std::uintptr_t paintedFrom;

[[gnu::noinline]] void PaintStack() {
    char stack[kStackPainted];
    paintedFrom = reinterpret_cast<std::uintptr_t>(stack);
    std::memset(reinterpret_cast<char*>(paintedFrom), kPaint, sizeof(stack));
}

[[gnu::noinline]] std::size_t UsedStack() {
    const auto* const stack = reinterpret_cast<const char*>(paintedFrom);
    const char* const end = stack + kStackPainted;
    return static_cast<std::size_t>(
        end - std::find_if(stack, end, [](char byte) { return byte != kPaint; }));
}

// The platform's part included, which on other systems is another.
void NeedsLittleStack(const Library& library) {
    std::string uses;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        PaintStack();
        Call(library, kind);
        const std::size_t use = UsedStack();
        uses += ' ' + std::to_string(use);
        Check(use < 48 * 1024, "kind " + std::to_string(kind) + " needs much stack");
    }
    std::printf("Stack used by each kind:%s\n", uses.c_str());
}

// In a process that speaks UTF-8 the digit separator does too, and not the locale's own code page.
void SpeaksTheCodePageOfTheProcess(const Library& library) {
    Check(GetACP() == CP_UTF8, "not a process that speaks UTF-8");
    wchar_t before[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, before, 8);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, L"\u00A0");
    const std::string text = library.Report(QbSupportMemory, 0);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, before);
    Check(text.find("\u00A0") != std::string::npos, text);
}

// A process that has no modules yet cannot be listed.
[[noreturn]] void DieBehindWarning(const Library& library) {
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION child{};
    char command[] = "winver.exe";
    CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                   &startup, &child);
    library.Report(QbSupportModules, 0, "winver.exe");
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
