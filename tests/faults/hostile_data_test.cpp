// A platform whose data is odd, huge or untrue: the text that is stated where there is one, and
// always a whole text or none.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <functional>

#include "faults/checked_call.h"
#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

using stand_in::Machine;

namespace faults {
namespace {

constexpr char kWindows[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr char kProcessor[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
constexpr char kTranslation[] = "\\VarFileInfo\\Translation";
constexpr char kVersion[] = "\\StringFileInfo\\040904b0\\ProductVersion";

struct Row {
    const char* what;
    int kind;
    std::function<void(Machine&)> change;
    std::string part;  // of the text; empty for a call that fails
    std::string argument{};
    std::string warning{};
};
using Change = decltype(Row::change);

Change Value(const char* key, const char* name, DWORD type, const std::string& bytes) {
    return [=](Machine& machine) { machine.localMachine[key].values[name] = {type, bytes}; };
}

Change Locale(LCTYPE type, const std::string& value) {
    return [=](Machine& machine) { machine.locale[type] = value; };
}

Change Resource(const std::vector<stand_in::VersionValue>& values) {
    return [=](Machine& machine) { machine.versionResources["viewer.exe"] = {true, values}; };
}

Change Modules(const std::vector<stand_in::Module>& modules) {
    return [=](Machine& machine) { machine.processes.back().modules = modules; };
}

Change Zone(LONG bias, LONG daylightBias) {
    return [=](Machine& machine) {
        machine.timeZoneId = TIME_ZONE_ID_DAYLIGHT;
        machine.timeZone.Bias = bias;
        machine.timeZone.DaylightBias = daylightBias;
    };
}

Change Message(const std::string& text) {
    return [=](Machine& machine) {
        machine.processes.back().snapshotError = ERROR_ACCESS_DENIED;
        machine.messages[ERROR_ACCESS_DENIED] = text;
    };
}

// A field of the machine.
template <typename Field>
Change Set(Field Machine::*field, Field value) {
    return [=](Machine& machine) { machine.*field = value; };
}

std::vector<Row> Rows() {
    const std::string odd = "%s%n%d\x01\x1F\x7F\x80\xE9\xFF";
    const std::string english("\x09\x04\xB0\x04", 4);
    const std::string text255(255, 'x');
    const std::string name256(256, 'n');
    const std::string path260(260, 'p');
    const std::string value1023(1023, 'v');
    const std::string megabyte(1 << 20, '\\');
    const std::string slashes(1 << 20, '/');
    const std::string viewer = "viewer.exe";
    const std::string snapshot =
        "\n  WARNING: CreateToolhelp32Snapshot (of modules) failed with error ";
    const std::string first =
        "\n  WARNING: Module32First failed with error 18 (There are no more files)";
    const auto rectangle = [](Machine& m) {
        m.monitors = {{{INT_MIN, INT_MAX, INT_MAX, INT_MIN}}};
    };
    return {
        {"no NUL", 3, Value(kWindows, "ProductName", REG_SZ, "Odd"), "\n[OS ID: Odd]\n"},
        {"longest", 3, Value(kWindows, "ProductName", REG_SZ, text255), ": " + text255 + "]\n"},
        {"too long", 3, Value(kWindows, "ProductName", REG_SZ, text255 + "x"), "[OS ID: ]\n"},
        {"wrong type", 3, Value(kWindows, "ProductName", REG_EXPAND_SZ, "Odd"), "[OS ID: ]\n"},
        {"odd bytes", 3, Value(kWindows, "ProductName", REG_SZ, odd), ": " + odd + "]\n"},
        {"wrong type", 3, Value(kWindows, "UBR", REG_SZ, "1288"), "\n[21H2]\n"},
        {"too long", 3, Value(kWindows, "UBR", REG_DWORD, "12345678"), "\n[21H2]\n"},
        {"odd bytes", 7, Value(kProcessor, "Identifier", REG_BINARY, odd), ":          " + odd},
        {"no NUL", 7, Value(kProcessor, "Identifier", REG_SZ, text255), " " + text255 + "\n"},
        {"too long", 7, Value(kProcessor, "Identifier", REG_SZ, text255 + "x"), ""},
        {"most processors", 7, Set(&Machine::processors, UINT_MAX), "CPUs:    -1\n"},

        {"full fields", 16, Modules({{name256, path260}}), path260 + "  [Modul"},
        {"longer than fields", 16, Modules({{name256 + "n", path260 + "p"}}), path260 + "  [Modul"},
        {"odd bytes", 16, Modules({{odd, odd}}), odd + "  [Modul"},
        {"no name", 16, Modules({{"", ""}}), "  [Modul or version info not found!]\r\n\r\n"},
        {"no module", 16, Modules({}), "\r\n", "", first},
        {"formatting", 16, Message("%s%n \xE9.. \r\n%d"), "\r\n", "", snapshot + "5 (%s%n \xE9)"},
        {"long message", 16, Message(value1023), "\r\n", "", snapshot + "5 ()"},
        {"never stops loading", 16, Set(&Machine::badLengthAnswers, 1000000), "\r\n", "",
         snapshot + "24 (The program issued a command but the command length is incorrect)"},

        {"empty", 17, Resource({}), "  []\r\n", viewer},
        {"claims too much", 17, Resource({{kTranslation, "", 4}}), "  []\r\n", viewer},
        {"claims too much", 17, Resource({{kTranslation, english}, {kVersion, "1.0", UINT_MAX}}),
         "  [1.0]\r\n", viewer},
        {"claims nothing", 17, Resource({{kTranslation, english}, {kVersion, "1.0", 0}}),
         "  [1.0]\r\n", viewer},
        {"odd bytes", 17, Resource({{kTranslation, english}, {kVersion, odd}}),
         "  [" + odd + "]\r\n", viewer},

        {"smallest bias", 2, Zone(INT_MIN, 0), " -35791394:8h\n"},
        {"largest bias", 2, Zone(INT_MAX, 0), " 35791394:7h\n"},
        {"too large together", 2, Zone(INT_MAX, INT_MAX), "Yes [35791394:7h]\n"},
        {"clock before 1970", 2, Set(&Machine::clock, std::int64_t{-1}), "\nTime zone GMT/UTC"},
        {"last clock", 2, Set(&Machine::clock, INT64_MAX), "\nTime zone GMT/UTC"},
        {"extremes", 20, rectangle, "Monitor   1 -2147483648 2147483647 2147483647 -2147483648 "},
        {"extremes", 20, Set(&Machine::deviceCaps, {{LOGPIXELSX, INT_MIN}}), "x: -2147483648\r\n"},
        {"no monitor", 20, Set(&Machine::monitors, {}), "1080            \r\nPixels"},
        {"most memory", 8, [](Machine& m) { m.memory.ullTotalPhys = ULLONG_MAX; },
         " 18,014,398,509,481,983 KB\r\n"},
        {"nonsense", 8, Locale(LOCALE_SGROUPING, "-1;x;;"), " 16777216 KB"},
        {"too large", 8, Locale(LOCALE_SGROUPING, std::string(30, '9')), " 16777216 KB"},
        {"odd bytes", 6, Locale(LOCALE_SENGLANGUAGE, odd), " name:      " + odd + "\n"},
        {"longest", 6, Locale(LOCALE_SENGLANGUAGE, value1023), " " + value1023 + "\n"},
        {"too long", 6, Locale(LOCALE_SENGLANGUAGE, value1023 + "v"), " name:      \n"},
        {"too long", 6, Set(&Machine::languageName, value1023 + "cut"), " " + value1023 + "\n"},
        {"too long", 9, Set(&Machine::systemDirectory, value1023), "System:      [] (N/A)\n"},

        {"a megabyte", 10, Change(), "[" + slashes + "] (N/A)\n", megabyte},
        {"a megabyte", 11, Change(), "\\" + megabyte + "] (N/A)\n", megabyte},
        {"a megabyte", 15, Change(), "[" + megabyte + "] = Not set!\n", megabyte},
        {"a megabyte", 15, Set(&Machine::environment, {{"BIG", megabyte}}), "[" + megabyte, "BIG"},
        {"a megabyte", 16, Change(), "", megabyte},
        {"a megabyte", 17, Change(), megabyte + "  [Modul", megabyte},
        {"odd bytes", 17, Change(), odd + "  [Modul", odd},
    };
}

TEST(HostileData, IsShownWholeOrNotAtAll) {
    for (const Row& row : Rows()) {
        SCOPED_TRACE(testing::Message() << "kind " << row.kind << ": " << row.what);
        const stand_in::ScopedMachine scope;
        if (row.change) {
            row.change(stand_in::CurrentMachine());
        }
        testing::internal::CaptureStdout();
        const CallOutcome outcome = CallAlone(row.kind, 0, row.argument.c_str());
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.warning);
        EXPECT_EQ(outcome.violations, "");
        EXPECT_LT(stand_in::CallsMade(), 1000U) << "it hardly ends";
        EXPECT_EQ(outcome.text.has_value(), !row.part.empty());
        EXPECT_NE(outcome.text.value_or("").find(row.part), std::string::npos)
            << outcome.text.value_or("").substr(0, 2000);
    }
    std::printf("Tried: %zu kinds of hostile data\n", Rows().size());
}

TEST(HostileData, ThousandsOfEverything) {
    constexpr std::size_t kMany = 10000;
    Machine machine;
    machine.processes.back().modules.assign(kMany, {"a.dll", "C:\\a.dll"});
    machine.processes.resize(kMany, {1, "other.exe"});
    machine.processes.push_back({2, "last.exe", {{"b.dll", "C:\\b.dll"}}});
    machine.monitors.assign(kMany, {{0, 0, 1, 1}});
    const stand_in::ScopedMachine scope(machine);
    for (const auto& [kind, lines] : {std::pair{16, kMany + 1}, std::pair{20, kMany + 7}}) {
        const CallOutcome outcome = CallAlone(kind, 0, nullptr);
        EXPECT_EQ(outcome.violations, "");
        EXPECT_EQ(std::ranges::count(outcome.text.value_or(""), '\n'), static_cast<long>(lines));
    }
    EXPECT_EQ(CallAlone(16, 0, "last.exe").text,
              "C:/b.dll  [Modul or version info not found!]\r\n\r\n");
}

// The file is replaced after its size was asked for and before the resource is read, into a block
// that is too large for the stack.
TEST(HostileData, VersionResourceThatChangesItsSize) {
    const stand_in::ScopedMachine scope;
    for (const auto& [size, text] :
         {std::pair{8000U, "  [No version info!]\r\n"}, std::pair{1U, "viewer.exe  [9]\r\n"}}) {
        static std::string version;
        version.assign(size, '9');
        auto& resources = stand_in::CurrentMachine().versionResources;
        resources["viewer.exe"] = stand_in::ProductVersion(std::string(4000, '3'));
        beforeAllocation = [] {
            stand_in::CurrentMachine().versionResources["viewer.exe"] =
                stand_in::ProductVersion(version);
        };
        const CallOutcome outcome = CallAlone(17, 0, "viewer.exe");
        beforeAllocation = nullptr;
        EXPECT_EQ(outcome.violations, "");
        EXPECT_NE(outcome.text.value_or("").find(text), std::string::npos)
            << outcome.text.value_or("");
    }
}

}  // namespace
}  // namespace faults
