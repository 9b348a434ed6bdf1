// Memory that runs out: each allocation of each section fails once, and then with all that follow
// it.
#include "os/registry_values.h"
#include "support.h"

namespace {

// Everything is too large for the library to store without an allocation: texts of more than 288
// bytes, more than 8 monitors, version resources of more than 3 KB.
stand_in::Machine LargeMachine() {
    stand_in::Machine machine;
    for (std::string* text :
         {&machine.systemDirectory, &machine.windowsDirectory, &machine.tempDirectory,
          &machine.executablePath, &machine.languageName, &machine.environment["HOME"]}) {
        *text = "C:\\" + std::string(900, 'p');
    }
    machine.currentDirectory = std::string(259, 'd');
    // The longest release name, and an edition from the registry: both go into the text to compare.
    machine.version = {5, 2, 3790, 0, 0, VER_SUITE_ENTERPRISE, VER_NT_SERVER};
    machine.nativeArchitecture = PROCESSOR_ARCHITECTURE_IA64;
    for (auto& [name, value] : machine.localMachine[qb_support::kCurrentVersionKey].values) {
        value = {REG_SZ, std::string(255, 'n')};
    }
    const auto lengthen = [](auto& texts, std::size_t size) {
        for (auto& [key, text] : texts) {
            text.assign(size, 'x');
        }
    };
    lengthen(machine.runtimeLocale, 400);
    lengthen(machine.locale, 400);
    lengthen(machine.userNames, 1000);
    machine.locale[LOCALE_SGROUPING] = "3;" + std::string(400, '0');
    for (stand_in::Module& module : machine.processes.back().modules) {
        machine.versionResources[module.name] = stand_in::ProductVersion(std::string(5000, '1'));
        module.path.assign(260, 'm');
    }
    machine.monitors.resize(50, machine.monitors.front());
    return machine;
}

// Repeats a call and lets another allocation fail each time.
void FailEachAllocation(const Request& request, bool onlyOnce) {
    const CallOutcome whole = CallAlone(request);
    for (std::size_t number = 1;; ++number) {
        const CallOutcome outcome = CallAlone(request, {number, onlyOnce ? number : SIZE_MAX});
        EXPECT_EQ(outcome.violations, "") << "allocation " << number;
        if (outcome.allocations < number) {
            EXPECT_EQ(outcome.text, whole.text) << "without a failed allocation";
            return;
        }
        EXPECT_FALSE(outcome.text) << "allocation " << number << " failed unnoticed:\n"
                                   << outcome.text->substr(0, 300);
    }
}

TEST(MemoryFaults, EveryFailedAllocationFailsTheCall) {
    const stand_in::ScopedMachine scope(LargeMachine());
    const std::string large = "C:\\" + std::string(3000, 'a') + "\\";
    for (const Request& request : EveryRequest({"", "viewer.exe", large.c_str()})) {
        SCOPED_TRACE(testing::Message() << "kind " << request.kind << ", flags " << request.flags
                                        << ", argument " << request.argument);
        FailEachAllocation(request, true);
        FailEachAllocation(request, false);
    }
    // The separator must be available even if no number needs it.
    stand_in::CurrentMachine().memory = {};
    stand_in::CurrentMachine().processMemory = {};
    FailEachAllocation({QbSupportMemory, 0, ""}, true);
}

}  // namespace
