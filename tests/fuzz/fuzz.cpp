// Calls of all sorts on described machines of all sorts, with a platform call or memory that fails.
#include <fuzzer/FuzzedDataProvider.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "stand_in/calls.h"
#include "support.h"

namespace {

void Require(bool kept, const char* promise) {
    if (!kept) {
        std::fprintf(stderr, "ERROR: promise broken: %s\n", promise);
        std::abort();
    }
}

// On a machine of its own: a call may change what the platform says next.
std::optional<std::string> CallOrStop(const stand_in::Machine& machine, const Request& request,
                                      std::uint64_t failedCall = 0, AllocationFault fault = {}) {
    const stand_in::ScopedMachine scope(machine);
    // Once only: a platform that denies every build number costs a million questions.
    stand_in::PlanFault(failedCall, stand_in::FaultMode::Once);
    const CallOutcome outcome = CallAlone(request, fault);
    Require(outcome.violations.empty(), outcome.violations.c_str());
    Require(fault.first == 0 || fault.first > outcome.allocations || !outcome.text,
            "a failed allocation fails the call");
    return outcome.text;
}

// Mostly short, sometimes around the sizes of the platform's buffers and of the library's own.
std::string ConsumeText(FuzzedDataProvider& input) {
    constexpr std::size_t kSizes[] = {255, 256, 259, 260, 288, 1023, 1024, 5000};
    std::string text = input.ConsumeRandomLengthString(40);
    if (input.ConsumeIntegralInRange(0, 7) == 7) {
        text.resize(input.PickValueInArray(kSizes), text.empty() ? 'x' : text.back());
    }
    return text;
}

// Without NULs, as the platform's texts are.
std::string ConsumeWord(FuzzedDataProvider& input) {
    const std::string text = ConsumeText(input);
    return text.substr(0, text.find('\0'));
}

stand_in::VersionResource ConsumeResource(FuzzedDataProvider& input) {
    stand_in::VersionResource resource = stand_in::ProductVersion(
        ConsumeText(input), input.ConsumeIntegral<WORD>(), input.ConsumeIntegral<WORD>());
    resource.readable = input.ConsumeIntegralInRange(0, 7) != 7;
    resource.values.resize(input.ConsumeIntegralInRange<std::size_t>(0, 2));
    for (stand_in::VersionValue& value : resource.values) {
        value.bytes.resize(input.ConsumeIntegralInRange<std::size_t>(0, value.bytes.size()));
        if (input.ConsumeBool()) {
            value.claimedLength = input.ConsumeIntegralInRange<UINT>(0, 100);
        }
    }
    return resource;
}

stand_in::Machine ConsumeMachine(FuzzedDataProvider& input) {
    stand_in::Machine machine;
    // Versions that the searches find, and others.
    machine.version.major = input.ConsumeIntegralInRange<DWORD>(0, 11);
    machine.version.minor = input.ConsumeIntegralInRange<DWORD>(0, 6);
    machine.version.build = input.ConsumeIntegralInRange<DWORD>(0, 1100000);
    machine.version.servicePackMajor = input.ConsumeIntegralInRange<WORD>(0, 5);
    machine.version.suiteMask = input.ConsumeIntegral<WORD>();
    machine.version.productType = input.ConsumeIntegralInRange<BYTE>(0, 4);
    machine.productInfo = input.ConsumeIntegralInRange<DWORD>(0, 0x80);
    machine.nativeArchitecture = input.ConsumeIntegralInRange<WORD>(0, 13);
    for (auto& [path, key] : machine.localMachine) {
        for (auto& [name, value] : key.values) {
            if (input.ConsumeBool()) {
                value = {input.ConsumeIntegralInRange<DWORD>(0, 11), ConsumeText(input)};
            }
        }
    }
    machine.available.getNativeSystemInfo = input.ConsumeBool();
    machine.available.getProductInfo = input.ConsumeBool();

    for (std::string* text :
         {&machine.systemDirectory, &machine.windowsDirectory, &machine.tempDirectory,
          &machine.executablePath, &machine.currentDirectory, &machine.languageName}) {
        *text = ConsumeWord(input);
        machine.attributes[*text] = input.ConsumeIntegral<DWORD>();
    }
    for (auto& [type, value] : machine.locale) {
        value = ConsumeWord(input);
    }
    machine.locale[LOCALE_SGROUPING] = input.ConsumeRandomLengthString(8);
    machine.runtimeLocale[LC_ALL] = ConsumeWord(input);
    machine.environment["HOME"] = ConsumeWord(input);
    machine.messages[ERROR_NOT_ENOUGH_MEMORY] = ConsumeWord(input);
    machine.clock = input.ConsumeIntegral<std::int64_t>();
    machine.timeZone.Bias = input.ConsumeIntegral<LONG>();
    machine.timeZone.StandardBias = machine.timeZone.DaylightBias = input.ConsumeIntegral<LONG>();
    machine.deviceCaps[LOGPIXELSX] = input.ConsumeIntegral<int>();
    stand_in::Process& process = machine.processes.back();
    process.snapshotError = input.ConsumeBool() ? 0 : input.ConsumeIntegralInRange<LONG>(0, 30);
    machine.badLengthAnswers = input.ConsumeIntegralInRange(0, 200);
    process.modules.resize(input.ConsumeIntegralInRange<std::size_t>(0, 4));
    for (stand_in::Module& module : process.modules) {
        module = {ConsumeWord(input), ConsumeWord(input)};
        machine.versionResources[module.name] = ConsumeResource(input);
    }
    machine.versionResources["viewer.exe"] = ConsumeResource(input);
    machine.monitors.resize(input.ConsumeIntegralInRange<std::size_t>(0, 30));
    for (stand_in::Monitor& monitor : machine.monitors) {
        for (LONG* side : {&monitor.area.left, &monitor.area.top, &monitor.area.right}) {
            *side = input.ConsumeIntegral<LONG>();
        }
    }
    return machine;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const int kind = input.ConsumeIntegralInRange(0, 7) != 7
                         ? input.ConsumeIntegralInRange(0, kLastKind + 1)
                         : input.ConsumeIntegral<int>();
    const auto flags = input.ConsumeIntegral<unsigned>();
    const auto failedCall = input.ConsumeIntegralInRange<std::uint64_t>(1, 40);
    const auto failedAllocation = input.ConsumeIntegralInRange<std::size_t>(1, 20);
    const bool lasts = input.ConsumeBool();
    const std::string argument = input.ConsumeBool() ? ConsumeWord(input) : "viewer.exe";
    const stand_in::Machine machine = ConsumeMachine(input);

    const Request request{kind, flags, argument.c_str()};
    const auto text = CallOrStop(machine, request);
    Require(!text || (kind >= 1 && kind <= kLastKind), "other kinds fail");
    Require(text == CallOrStop(machine,
                               {kind, flags & 7, argument.empty() ? nullptr : argument.c_str()}),
            "other flags do nothing, and no argument is an empty one");
    CallOrStop(machine, request, failedCall);
    CallOrStop(machine, request, 0, {failedAllocation, lasts ? SIZE_MAX : failedAllocation});
    return 0;
}
