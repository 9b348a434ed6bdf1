// Platform calls that fail: in every section the 1st, 2nd, 3rd ... call, once and from then on. The
// loops count calls, so that a call which is added to a section is covered; when its failure
// changes the section's text it needs a row in the table of consequences.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "faults/checked_call.h"
#include "faults/consequences.h"
#include "platform/stand_in/machine.h"

using stand_in::FaultMode;
using stand_in::PlatformCall;

namespace faults {
namespace {

// The first call that failed as planned.
std::optional<PlatformCall> failedCall;
std::uint64_t failedOrdinal = 0;  // among the calls of its function

}  // namespace

// bool stand_in::CallFails(PlatformCall), by the names that the linker's --wrap gives its halves.
bool RealCallFails(PlatformCall call) asm("__real__ZN8stand_in9CallFailsENS_12PlatformCallE");
bool WatchedCallFails(PlatformCall call) asm("__wrap__ZN8stand_in9CallFailsENS_12PlatformCallE");

bool WatchedCallFails(PlatformCall call) {
    const bool fails = RealCallFails(call);
    if (fails && !failedCall) {
        failedCall = call;
        failedOrdinal = stand_in::CallsMade(call);
    }
    return fails;
}

namespace {

stand_in::Machine FaultTellingMachine() {
    stand_in::Machine machine;
    machine.architecture = PROCESSOR_ARCHITECTURE_INTEL;  // other than the native one
    machine.localMachine["Software"] = machine.localMachine[""] = {};
    machine.executablePath = "C:\\viewer.exe";
    machine.attributes["C:\\viewer.exe"] = FILE_ATTRIBUTE_DIRECTORY;
    for (const char* variable : {"QB_ROOT_PATH", "PRODUCT", "PACKET", "HOME", "TMPDIR"}) {
        machine.environment[variable] = "set";
    }
    machine.processes = {{4, "System"},
                         {machine.processId,
                          "viewer.exe",
                          {{"viewer.exe", "C:\\viewer.exe"}, {"ntdll.dll", "C:\\ntdll.dll"}}}};
    machine.versionResources = {{"viewer.exe", stand_in::ProductVersion("1.0")},
                                {"ntdll.dll", stand_in::ProductVersion("1.0")}};
    machine.systemMetrics = {{SM_CXVIRTUALSCREEN, 4000}, {SM_CYVIRTUALSCREEN, 3000}};
    machine.deviceCaps = {{LOGPIXELSX, 120}, {LOGPIXELSY, 121}};
    return machine;
}

struct Request {
    int kind;
    unsigned flags;
    const char* argument;
};

std::vector<Request> EveryRequest() {
    std::vector<Request> requests;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        const char* const argument = kind == 10                 ? "C:\\Windows"
                                     : kind >= 11 && kind <= 13 ? "Software"
                                     : kind == 15               ? "HOME"
                                                                : "viewer.exe";
        for (const unsigned flags : {0U, 7U}) {
            requests.push_back({kind, flags, ""});
            requests.push_back({kind, flags, argument});
        }
    }
    return requests;
}

std::string Describe(const Request& request, std::uint64_t number) {
    return "kind " + std::to_string(request.kind) + ", flags " + std::to_string(request.flags) +
           ", argument \"" + request.argument + "\", platform call " + std::to_string(number) +
           (failedCall ? std::string(": ") + stand_in::CallName(*failedCall) + ", call " +
                             std::to_string(failedOrdinal) + " of it"
                       : " (cannot fail)");
}

// The edit's text as the flags make it.
std::string UnderFlags(std::string_view text, unsigned flags) {
    std::string result;
    for (const char character : text) {
        if (character == '\t') {
            result += (flags & 4) != 0 ? "   " : "";
        } else if (character == '~') {
            result += (flags & 2) != 0 ? "\n" : "";
        } else {
            result += character;
        }
    }
    return result;
}

// Replaces the occurrence with that number, 1 for the first, or every one for 0.
std::string Edited(std::string text, const Edits& edits, unsigned flags, std::uint64_t occurrence) {
    for (const auto& [from, to] : edits) {
        const std::string oldPart = UnderFlags(from, flags);
        const std::string newPart = UnderFlags(to, flags);
        std::uint64_t number = 0;
        for (std::size_t at = text.find(oldPart); at != std::string::npos;
             at = text.find(oldPart, at)) {
            const bool isMeant = occurrence == 0 || ++number == occurrence;
            text.replace(at, oldPart.size(), isMeant ? newPart : oldPart);
            at += isMeant ? newPart.size() : oldPart.size();
        }
    }
    return text;
}

const Consequence* FindConsequence(const Request& request) {
    const bool hasArgument = *request.argument != '\0';
    const auto row = std::ranges::find_if(Consequences(), [&](const Consequence& candidate) {
        const auto [first, last] = candidate.ordinals;
        return candidate.kind == request.kind &&
               std::ranges::find(candidate.calls, *failedCall) != candidate.calls.end() &&
               (first == 0 || (failedOrdinal >= first && failedOrdinal <= last)) &&
               (candidate.when != When::WithArgument || hasArgument);
    });
    return row != Consequences().end() ? &*row : nullptr;
}

struct FaultedRun {
    std::optional<std::string> text;
    std::string warnings;  // what was printed
    std::uint64_t platformCalls;
};

class PlatformFaults : public testing::Test {
protected:
    FaultedRun WithFault(const Request& request, std::uint64_t number, FaultMode mode) {
        failedCall.reset();
        stand_in::PlanFault(number, mode);
        testing::internal::CaptureStdout();
        CallOutcome outcome = CallAlone(request.kind, request.flags, request.argument);
        FaultedRun run{std::move(outcome.text), testing::internal::GetCapturedStdout(),
                       stand_in::CallsMade()};
        EXPECT_EQ(outcome.violations, "") << Describe(request, number);
        m_failed += failedCall ? 1 : 0;
        return run;
    }

    stand_in::ScopedMachine m_scope{FaultTellingMachine()};
    std::size_t m_failed = 0;
};

TEST_F(PlatformFaults, OneFailedCallHasItsOwnConsequence) {
    std::set<const Consequence*> met;
    for (const Request& request : EveryRequest()) {
        const FaultedRun clean = WithFault(request, 0, FaultMode::Once);
        for (std::uint64_t number = 1; number <= clean.platformCalls; ++number) {
            const FaultedRun run = WithFault(request, number, FaultMode::Once);
            std::optional<std::string> expected = clean.text;
            std::string_view warning;
            if (const Consequence* const row = failedCall ? FindConsequence(request) : nullptr) {
                const bool isEach = row->ordinals.first == 0;
                expected =
                    Edited(*clean.text, row->edits, request.flags, isEach ? failedOrdinal : 0);
                if (row->result == Result::NoText) {
                    expected.reset();
                }
                warning = row->warning;
                met.insert(row);
            }
            EXPECT_EQ(run.text, expected) << Describe(request, number);
            EXPECT_TRUE(run.warnings.starts_with(warning) &&
                        run.warnings.empty() == warning.empty())
                << run.warnings << Describe(request, number);
        }
    }
    EXPECT_EQ(met.size(), Consequences().size()) << "a consequence never came";
    std::printf("Tried: %zu platform calls failed once\n", m_failed);
}

TEST_F(PlatformFaults, CallsThatFailFromThenOnLeaveNoGarbage) {
    constexpr char kGarbage = '\xCC';  // what the stand-in's failed calls leave in their buffers
    constexpr std::uint64_t kExpensive = 100000;  // platform calls in one run
    std::size_t skipped = 0;
    for (const Request& request : EveryRequest()) {
        const FaultedRun clean = WithFault(request, 0, FaultMode::Once);
        for (std::uint64_t number = 1; number <= clean.platformCalls; ++number) {
            const FaultedRun run = WithFault(request, number, FaultMode::FromThenOn);
            const bool mayFail = request.kind == 3 || request.kind == 7 || request.kind == 16;
            EXPECT_TRUE(run.text || mayFail || !clean.text) << Describe(request, number);
            EXPECT_EQ(run.text.value_or("").find(kGarbage), std::string::npos)
                << Describe(request, number) << *run.text;
            EXPECT_TRUE(run.warnings.empty() || run.warnings.ends_with(" failed with error 8 ()"))
                << Describe(request, number) << run.warnings;
            if (run.platformCalls > kExpensive) {
                // The search for the build number asks a million times when every answer is no.
                const std::uint64_t next = std::min(number + 5, clean.platformCalls);
                skipped += next - number - 1;
                number = next - 1;
            }
        }
    }
    std::printf("Tried: %zu platform calls failed from then on, %zu expensive ones left out\n",
                m_failed, skipped);
}

}  // namespace
}  // namespace faults
