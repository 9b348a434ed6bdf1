// Described machines of all sorts: what the platform answers to any section, with a failed call.
#include <clocale>

#include "call_or_stop.h"
#include "stand_in/calls.h"
#include "stand_in/machine.h"

namespace {

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

void ConsumeSystem(FuzzedDataProvider& input, stand_in::Machine& machine) {
    // Versions that the searches find, and others.
    machine.version.major = input.ConsumeIntegralInRange<DWORD>(4, 11);
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
}

void ConsumeTexts(FuzzedDataProvider& input, stand_in::Machine& machine) {
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
}

void ConsumeLists(FuzzedDataProvider& input, stand_in::Machine& machine) {
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
        monitor.area = {input.ConsumeIntegral<LONG>(), input.ConsumeIntegral<LONG>(),
                        input.ConsumeIntegral<LONG>(), input.ConsumeIntegral<LONG>()};
    }
    machine.deviceCaps[LOGPIXELSX] = input.ConsumeIntegral<int>();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const int kind = input.ConsumeIntegralInRange(1, kLastKind);
    const auto flags = input.ConsumeIntegralInRange(0U, 7U);
    const auto failedCall = input.ConsumeIntegralInRange<std::uint64_t>(0, 40);
    stand_in::Machine machine;
    ConsumeSystem(input, machine);
    ConsumeTexts(input, machine);
    ConsumeLists(input, machine);

    const stand_in::ScopedMachine scope(std::move(machine));
    for (const char* argument : {"", "viewer.exe"}) {
        // Once only: a platform that denies every build number costs a million questions.
        stand_in::PlanFault(failedCall, stand_in::FaultMode::Once);
        CallOrStop(kind, flags, argument);
    }
    return 0;
}
