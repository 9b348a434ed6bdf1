// Memory that runs out: every allocation of every section fails once, and from then on.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <thread>

#include "faults/checked_call.h"
#include "os/registry_values.h"
#include "stand_in/machine.h"

namespace faults {
namespace {

// Everything is longer than what the library holds without memory: 288 bytes of text, 8
// monitors, a version resource of 3 KB.
stand_in::Machine LargeMachine() {
    stand_in::Machine machine;
    for (std::string* path : {&machine.systemDirectory, &machine.windowsDirectory,
                              &machine.tempDirectory, &machine.executablePath}) {
        *path = "C:\\" + std::string(900, 'p');
    }
    machine.currentDirectory = std::string(259, 'd');
    auto& system = machine.localMachine[qb_support::kCurrentVersionKey].values;
    system["ProductName"] = stand_in::RegistryText(std::string(254, 'n'));
    system["EditionID"] = stand_in::RegistryText(std::string(254, 'e'));
    machine.productInfo = 0;  // so that the edition is the registry's
    for (auto& [category, setting] : machine.runtimeLocale) {
        setting.assign(400, 'l');
    }
    machine.languageName.assign(1000, 'L');
    for (auto& [type, value] : machine.locale) {
        value.assign(400, 'v');
    }
    machine.locale[LOCALE_SGROUPING] = "3";
    for (int i = 0; i < 200; ++i) {
        machine.locale[LOCALE_SGROUPING] += ";2";
    }
    for (auto& [form, name] : machine.userNames) {
        name.assign(1000, 'u');
    }
    machine.environment["HOME"].assign(5000, 'h');
    for (stand_in::Module& module : machine.processes.back().modules) {
        machine.versionResources[module.name] = stand_in::ProductVersion(std::string(5000, '1'));
        module.path.assign(260, 'm');
    }
    machine.monitors.resize(50, machine.monitors.front());
    return machine;
}

// Fails one allocation after the other until a call has no more. Returns how many failed.
std::size_t FailEachAllocation(const Request& request, bool onlyOnce, bool onNewThread) {
    const CallOutcome whole = CallAlone(request);
    for (std::size_t number = 1;; ++number) {
        const AllocationFault fault{number, onlyOnce ? number : SIZE_MAX};
        CallOutcome outcome;
        const auto call = [&] { outcome = CallAlone(request, fault); };
        if (onNewThread) {
            std::thread(call).join();
        } else {
            call();
        }
        EXPECT_EQ(outcome.violations, "") << "allocation " << number;
        if (outcome.allocations < number) {
            EXPECT_EQ(outcome.text, whole.text) << "without a failed allocation";
            return number - 1;
        }
        EXPECT_FALSE(outcome.text) << "allocation " << number << " failed unnoticed:\n"
                                   << outcome.text->substr(0, 300);
    }
}

TEST(MemoryFaults, EveryFailedAllocationFailsTheCall) {
    const stand_in::ScopedMachine scope(LargeMachine());
    const std::string large = "C:\\" + std::string(3000, 'a') + "\\";
    std::size_t failed = 0;
    for (const Request& request : EveryRequest({"", "viewer.exe", large.c_str()})) {
        SCOPED_TRACE(testing::Message() << "kind " << request.kind << ", flags " << request.flags
                                        << ", argument " << request.argument);
        for (const bool onlyOnce : {true, false}) {
            failed += FailEachAllocation(request, onlyOnce, false);
            failed += FailEachAllocation(request, onlyOnce, true);
        }
    }
    // A separator that no number needs.
    stand_in::CurrentMachine().memory = {};
    stand_in::CurrentMachine().processMemory = {};
    failed += FailEachAllocation({QbSupportMemory, 0, ""}, true, false);
    std::printf("Tried: %zu failed allocations\n", failed);
}

}  // namespace
}  // namespace faults
