// A platform whose data is odd, huge or untrue: the exact text where one is expected, and
// always a whole text or none.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <functional>

#include "faults/checked_call.h"
#include "os/registry_values.h"
#include "stand_in/calls.h"
#include "stand_in/machine.h"

using stand_in::Machine;

namespace faults {
namespace {

constexpr char kProcessor[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
constexpr char kTranslation[] = "\\VarFileInfo\\Translation";
constexpr char kVersion[] = "\\StringFileInfo\\040904b0\\ProductVersion";

struct Row {
    const char* what;
    int kind;
    std::function<void(Machine&)> change;
    std::string part;  // of the text; empty for a call that fails
    std::string argument = "viewer.exe";
    std::string warning{};
};
using Change = decltype(Row::change);

Change Value(const char* key, const char* name, DWORD type, const std::string& bytes) {
    return [=](Machine& machine) { machine.localMachine[key].values[name] = {type, bytes}; };
}

// After a value so long that the block lies in memory of its own and not on the stack.
Change Resource(std::vector<stand_in::VersionValue> values) {
    values.insert(values.begin(), {"\\Filler", std::string(8000, 'f')});
    return [=](Machine& machine) { machine.versionResources["viewer.exe"] = {true, values}; };
}

Change Modules(const std::string& name, const std::string& path) {
    return [=](Machine& machine) { machine.processes.back().modules = {{name, path}}; };
}

Change Zone(LONG bias, LONG daylightBias) {
    return [=](Machine& machine) {
        machine.timeZoneId = TIME_ZONE_ID_DAYLIGHT;
        machine.timeZone.Bias = bias;
        machine.timeZone.DaylightBias = daylightBias;
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
    const std::string value1023(1023, 'v');
    const std::string megabyte(1 << 20, '\\');
    const std::string denied =
        "\n  WARNING: CreateToolhelp32Snapshot (of modules) failed with error 5 (%s%n \xE9)";
    const auto message = [](Machine& m) {
        m.processes.back().snapshotError = ERROR_ACCESS_DENIED;
        m.messages[ERROR_ACCESS_DENIED] = "%s%n \xE9.. \r\n%d";
    };
    const auto rectangle = [](Machine& m) {
        m.monitors = {{{INT_MIN, INT_MAX, INT_MAX, INT_MIN}}};
    };
    return {
        {"longest", 3, Value(qb_support::kCurrentVersionKey, "ProductName", REG_SZ, text255),
         ": " + text255 + "]\n"},
        {"too long", 3, Value(qb_support::kCurrentVersionKey, "UBR", REG_DWORD, "12345678"),
         "\n[21H2]\n"},
        {"odd bytes", 7, Value(kProcessor, "Identifier", REG_BINARY, odd), ":          " + odd},
        {"too long", 7, Value(kProcessor, "Identifier", REG_SZ, text255 + "x"), ""},
        {"most processors", 7, Set(&Machine::processors, UINT_MAX), "CPUs:    -1\n"},
        {"longer than fields", 16, Modules(std::string(257, 'n'), std::string(261, 'p')),
         std::string(260, 'p') + "  [Modul"},
        {"odd bytes", 16, Modules(odd, odd), odd + "  [Modul"},
        {"no name", 16, Modules("", ""), "  [Modul or version info not found!]\r\n\r\n"},
        {"no module", 16, [](Machine& m) { m.processes.back().modules.clear(); }, "\r\n",
         "viewer.exe", "\n  WARNING: Module32First failed with error 18 (There are no more files)"},
        {"formatting", 16, message, "\r\n", "viewer.exe", denied},
        {"claims too much", 17, Resource({{kTranslation, "", 4}}), "  []\r\n"},
        {"claims too much", 17, Resource({{kTranslation, english}, {kVersion, "1.0", UINT_MAX}}),
         "  [1.0]\r\n"},
        {"claims nothing", 17, Resource({{kTranslation, english}, {kVersion, "1.0", 0}}),
         "  [1.0]\r\n"},
        {"odd bytes", 17, Resource({{kTranslation, english}, {kVersion, odd}}),
         "  [" + odd + "]\r\n"},
        {"smallest bias", 2, Zone(INT_MIN, 0), " -35791394:8h\n"},
        {"largest bias", 2, Zone(INT_MAX, 0), " 35791394:7h\n"},
        {"too large together", 2, Zone(INT_MAX, INT_MAX), "Yes [35791394:7h]\n"},
        {"extremes", 20, rectangle, "Monitor   1 -2147483648 2147483647 2147483647 -2147483648 "},
        {"extremes", 20, Set(&Machine::deviceCaps, {{LOGPIXELSX, INT_MIN}}), "x: -2147483648\r\n"},
        {"most memory", 8, [](Machine& m) { m.memory.ullTotalPhys = ULLONG_MAX; },
         " 18,014,398,509,481,983 KB\r\n"},
        {"nonsense", 8, [](Machine& m) { m.locale[LOCALE_SGROUPING] = "-1;x;;"; }, " 16777216 KB"},
        {"too long", 6, Set(&Machine::languageName, value1023 + "x"), "language:      \n"},
        {"a megabyte", 10, Change(), "//] (N/A)\n", megabyte},
        {"a megabyte", 11, Change(), "\\" + megabyte + "] (N/A)\n", megabyte},
        {"a megabyte", 15, Set(&Machine::environment, {{"BIG", megabyte}}), "[" + megabyte, "BIG"},
        {"a megabyte", 16, Change(), "", megabyte},
        {"a megabyte", 17, Change(), megabyte + "  [Modul", megabyte},
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

// What was measured by one call is another thing by the next, which is to read it.
TEST(HostileData, ChangesBetweenTwoCalls) {
    const auto version = [](const std::string& text) {
        return
            [=](Machine& m) { m.versionResources["viewer.exe"] = stand_in::ProductVersion(text); };
    };
    const auto language = [](const std::string& name) {
        return [=](Machine& m) { m.locale[LOCALE_SENGLANGUAGE] = name; };
    };
    const struct {
        int kind;
        std::string_view call;
        std::uint64_t ordinal;  // of that call among its function's
        Change change;          // which comes right before it
        std::string text;
    } rows[] = {
        {17, "GetFileVersionInfoA", 1, version(std::string(9000, '9')), "  [No version info!]\r\n"},
        {17, "GetFileVersionInfoA", 1, version("9"), "viewer.exe  [9]\r\n"},
        {6, "GetLocaleInfoA", 4, language("Englisch"), "locale name:      \n"},
        {6, "GetLocaleInfoA", 4, language("En"), "locale name:      En\n"},
    };
    for (const auto& row : rows) {
        const stand_in::ScopedMachine scope;
        version(std::string(8000, '3'))(stand_in::CurrentMachine());  // too large for the stack
        stand_in::beforeCall = [&](std::string_view call, std::uint64_t number) {
            if (call == row.call && number == row.ordinal) {
                row.change(stand_in::CurrentMachine());
            }
        };
        const CallOutcome outcome = CallAlone(row.kind, 0, "viewer.exe");
        stand_in::beforeCall = nullptr;
        EXPECT_EQ(outcome.violations, "");
        EXPECT_NE(outcome.text.value_or("").find(row.text), std::string::npos) << *outcome.text;
    }
}

}  // namespace
}  // namespace faults
