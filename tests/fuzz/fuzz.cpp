// Random calls on random machines, also with a platform call or an allocation that fails.
#include <fuzzer/FuzzedDataProvider.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "stand_in/calls.h"
#include "support.h"

namespace {

void Require(bool kept, const char* promise) {
    if (!kept) {
        static_cast<void>(std::fprintf(stderr, "ERROR: promise broken: %s\n", promise));
        std::abort();
    }
}

// Each call gets a copy of the machine, because it may change what the platform answers next.
std::optional<std::string> CallOrStop(const stand_in::Machine& machine, const Request& request,
                                      std::uint64_t failedCall = 0, AllocationFault fault = {}) {
    const stand_in::ScopedMachine scope(machine);
    // Only one call fails. If all failed, the library would ask for a million build numbers.
    stand_in::PlanFault(failedCall, stand_in::FaultMode::Once);
    const CallOutcome outcome = CallAlone(request, fault);
    Require(outcome.violations.empty(), outcome.violations.c_str());
    Require(fault.first == 0 || fault.first > outcome.allocations || !outcome.text,
            "a failed allocation fails the call");
    return outcome.text;
}

// Mostly short texts, and some as long as the buffers of the platform and of the library.
std::string ConsumeText(FuzzedDataProvider& input) {
    constexpr std::size_t kSizes[] = {0, 0, 0, 0, 0, 0, 255, 256, 259, 260, 288, 1023, 1024, 5000};
    const std::string text = input.ConsumeRandomLengthString(40);
    return text + std::string(input.PickValueInArray(kSizes), 'x');
}

stand_in::Machine ConsumeMachine(FuzzedDataProvider& input) {
    stand_in::Machine machine;
    const auto upTo = [&input](auto last) { return input.ConsumeIntegralInRange({}, last); };
    // Versions that the library's searches find, and others.
    machine.version = {upTo(11U), upTo(6U),           upTo(1100000U), upTo(WORD{5}),
                       0,         upTo(WORD{0xFFFF}), upTo(BYTE{4})};
    for (auto& [path, key] : machine.localMachine) {
        for (auto& [name, value] : key.values) {
            value = {upTo(DWORD{REG_DWORD}), ConsumeText(input)};
        }
    }
    stand_in::Process& process = machine.processes.back();
    process.snapshotError = input.ConsumeBool() ? 0 : upTo(30);
    process.modules.resize(upTo(std::size_t{4}));
    std::vector<std::string*> texts = {
        &machine.systemDirectory,       &machine.windowsDirectory,   &machine.tempDirectory,
        &machine.executablePath,        &machine.currentDirectory,   &machine.languageName,
        &machine.runtimeLocale[LC_ALL], &machine.environment["HOME"]};
    texts.push_back(&machine.messages[ERROR_NOT_ENOUGH_MEMORY]);
    for (auto& [type, value] : machine.locale) {
        texts.push_back(&value);
    }
    for (stand_in::Module& module : process.modules) {
        texts.push_back(&module.path);
    }
    for (std::string* text : texts) {
        *text = ConsumeText(input);
        text->resize(std::strlen(text->c_str()));  // no text of the platform holds a NUL
        machine.attributes[*text] = input.ConsumeIntegral<DWORD>();
    }
    stand_in::VersionResource& resource = machine.versionResources["viewer.exe"];
    resource = stand_in::ProductVersion(ConsumeText(input), upTo(WORD{0xFFFF}), upTo(WORD{0xFFFF}));
    for (auto& [path, bytes, claimedLength] : resource.values) {
        bytes.resize(upTo(bytes.size()));
        claimedLength = upTo(100U);
    }
    machine.clock = input.ConsumeIntegral<std::int64_t>();
    machine.deviceCaps[LOGPIXELSX] = input.ConsumeIntegral<int>();
    input.ConsumeData(&machine.timeZone, sizeof machine.timeZone);
    machine.monitors.resize(upTo(std::size_t{30}));
    for (stand_in::Monitor& monitor : machine.monitors) {
        input.ConsumeData(&monitor.area, sizeof monitor.area);
    }
    return machine;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const int kind = input.ConsumeIntegralInRange(-1, kLastKind + 1);
    const auto flags = input.ConsumeIntegral<unsigned>();
    const auto failedCall = input.ConsumeIntegralInRange<std::uint64_t>(1, 40);
    const auto failedAllocation = input.ConsumeIntegralInRange<std::size_t>(1, 20);
    const auto lastFailed = input.ConsumeBool() ? SIZE_MAX : failedAllocation;
    const std::string argument = input.ConsumeBool() ? ConsumeText(input) : "viewer.exe";
    const stand_in::Machine machine = ConsumeMachine(input);

    const Request request{kind, flags, argument.c_str()};
    const auto text = CallOrStop(machine, request);
    Require(!text || (kind >= 1 && kind <= kLastKind), "other kinds fail");
    Require(text == CallOrStop(machine, {kind, flags & 7, argument.c_str()}),
            "other flags do nothing");
    CallOrStop(machine, request, failedCall);
    CallOrStop(machine, request, 0, {failedAllocation, lastFailed});
    return 0;
}
