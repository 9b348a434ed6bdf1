// How often each section asks the platform, and that it is not once too often.
#include <cstdint>
#include <cstdlib>

#include "bench.h"
#include "stand_in/calls.h"
#include "stand_in/machine.h"

namespace {

using namespace qb_support::bench;
using stand_in::CallsMade;
using stand_in::PlatformCall;

std::string CallsByFunction() {
    std::string list;
    for (std::size_t i = 0; i < stand_in::platformCallKinds; ++i) {
        const auto call = static_cast<PlatformCall>(i);
        if (const std::uint64_t count = CallsMade(call); count != 0) {
            list += (list.empty() ? "" : ", ") + std::string(stand_in::CallName(call));
            list += count == 1 ? "" : " " + std::to_string(count);
        }
    }
    return list;
}

void CallLibrary(int kind, const char* argument) {
    char* text = nullptr;
    QbSupportGetInfo(kind, kFlags, &text, argument);
    QbSupportReleaseBuffer(text);
}

// The times are held against the floor, so it must ask neither more nor less.
void PrintCallsOf(const Section& section) {
    stand_in::ResetCalls();
    if (section.makePlatformCalls != nullptr) {
        section.makePlatformCalls(section.argument);
    }
    const std::string floor = CallsByFunction();
    const auto floorCalls = static_cast<double>(CallsMade());
    stand_in::ResetCalls();
    CallLibrary(section.kind, section.argument);
    if (CallsByFunction() != floor) {
        std::fprintf(stderr, "Kind %d asks for %s; its floor asks for %s\n", section.kind,
                     CallsByFunction().c_str(), floor.c_str());
        std::exit(1);
    }
    PrintRow("Platform calls, " + KindName(section), static_cast<double>(CallsMade()), "", "=",
             floorCalls, floor);
}

// The calls of one function that a section makes.
void PrintCount(const std::string& figure, int kind, const char* argument, PlatformCall function,
                double expected, const char* note,
                const stand_in::Machine& described = stand_in::Machine()) {
    const stand_in::ScopedMachine machine(described);
    CallLibrary(kind, argument);
    PrintRow(figure, static_cast<double>(CallsMade(function)), "", "=", expected, note);
}

void PrintProbes(const char* name, const stand_in::Version& version, double expected,
                 const char* note) {
    stand_in::Machine machine;
    machine.version = version;
    PrintCount(std::string("Version probes, Windows ") + name, QbSupportOperatingSystem, "",
               PlatformCall::VerifyVersionInfoA, expected, note, machine);
}

}  // namespace

int main() {
    for (const Section& section : kSections) {
        PrintCallsOf(section);
    }

    PrintProbes("10.0.22631", {.build = 22631}, 36,
                "3 version, 1 product type, 13 suites, 19 build");
    PrintProbes("6.1.7601 SP 1", {.major = 6, .minor = 1, .build = 7601, .servicePackMajor = 1}, 35,
                "8 version, 1 product type, 13 suites, 13 build");
    PrintProbes("10.1.22631 server", {.minor = 1, .build = 22631, .productType = VER_NT_SERVER}, 66,
                "28 version, 2 product type, 4 service pack, 13 suites, 19 build");

    PrintCount("Keys opened, kind 3", QbSupportOperatingSystem, "", PlatformCall::RegOpenKeyExA, 4,
               "one for each value");
    PrintCount("Keys opened, kind 7", QbSupportHardware, "", PlatformCall::RegOpenKeyExA, 1, "");
    PrintCount("Keys opened, kind 11", QbSupportRegistry, "Software", PlatformCall::RegOpenKeyExA,
               3, "one for each access");
    const stand_in::Machine machine;
    const auto modules = static_cast<double>(machine.processes.back().modules.size());
    PrintCount("Version look-ups, kind 16", QbSupportModules, "",
               PlatformCall::GetFileVersionInfoSizeA, modules, "one for each module");
    PrintCount("Version resources read, kind 16", QbSupportModules, "",
               PlatformCall::GetFileVersionInfoA, modules, "one for each module");
}
