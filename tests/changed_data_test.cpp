// Sections after one fact of the machine was changed, some to odd, huge or wrong values. Such
// values are shown whole or not at all.
#include <climits>
#include <functional>

#include "os/registry_values.h"
#include "stand_in/calls.h"
#include "support.h"

using stand_in::Machine;

namespace {

constexpr char kTranslation[] = "\\VarFileInfo\\Translation";
constexpr char kVersion[] = "\\StringFileInfo\\040904b0\\ProductVersion";
constexpr char kGermanVersion[] = "\\StringFileInfo\\040704e4\\ProductVersion";

using Change = std::function<void(Machine&)>;
struct Row {
    int kind;
    Change change;
    std::string part;  // of the warning, if there is one, and the text after it
    std::string argument = "viewer.exe";
};

// Sets a field of the machine.
template <typename Field>
Change Set(Field Machine::* field, std::type_identity_t<Field> value) {
    return [=](Machine& machine) { machine.*field = value; };
}

Change Locale(LCTYPE type, const std::string& value) {
    return [=](Machine& machine) { machine.locale[type] = value; };
}

Change Registry(const std::string& name, const stand_in::RegistryValue& value) {
    return [=](Machine& machine) {
        machine.localMachine[qb_support::kCurrentVersionKey].values[name] = value;
    };
}

Change Modules(const std::string& name, const std::string& path) {
    return [=](Machine& machine) { machine.processes.back().modules = {{name, path}}; };
}

Change SnapshotFails(LONG error, const std::string& message) {
    return [=](Machine& machine) {
        machine.processes.back().snapshotError = error;
        machine.messages[static_cast<DWORD>(error)] = message;
    };
}

Change Version(const std::string& text, WORD language = 0x409, WORD codePage = 0x4B0) {
    return Set(&Machine::versionResources,
               {{"viewer.exe", stand_in::ProductVersion(text, language, codePage)}});
}

// The first value is so long that the block does not fit on the stack.
Change Resource(std::vector<stand_in::VersionValue> values) {
    values.insert(values.begin(), {"\\Filler", std::string(8000, 'f')});
    return Set(&Machine::versionResources, {{"viewer.exe", {true, values}}});
}

// Makes a change between two calls of the platform, so that what the first one measured is no
// longer true: right before the call of `function` with this ordinal.
Change Before(std::string_view function, std::uint64_t ordinal, const Change& change) {
    return [=](Machine& machine) {
        Version(std::string(8000, '3'))(machine);
        stand_in::beforeCall = [=, &machine](std::string_view called, std::uint64_t number) {
            if (called == function && number == ordinal) {
                change(machine);
            }
        };
    };
}

std::vector<Row> Rows() {
    const auto x = [](std::size_t count) { return std::string(count, 'x'); };
    const std::string odd = "%s%n%d\x01\x1F\x7F\x80\xE9\xFF";
    const std::string english("\x09\x04\xB0\x04", 4);
    const std::string german("\x07\x04\xE4\x04", 4);
    // Six characters to the platform, the first two of which have two bytes each.
    const std::string japanese = "\x93\xFA\x96\x7B 1.0";
    const std::string megabyte(1 << 20, '\\');
    const std::string noSnapshot = "Snapshot (of modules) failed with error ";
    return {
        {3, Registry("EditionID", {REG_SZ, x(254) + '\0'}), "[Edition ID: " + x(254) + "]\n"},
        {3, Registry("EditionID", {REG_SZ, x(255) + '\0'}), "[Edition ID: ]\n"},
        {3, Registry("EditionID", {REG_SZ, x(255)}), "[Edition ID: " + x(255) + "]\n"},
        {3, Registry("EditionID", {REG_SZ, std::string("a\0b", 3)}), "[Edition ID: a]\n"},
        {3, Registry("EditionID", {REG_EXPAND_SZ, "text"}), "[Edition ID: ]\n"},
        {3, Registry("UBR", stand_in::RegistryNumber(0x87654321)), "[21H2 -- 19044.2271560481]\n"},
        {3, Registry("UBR", {REG_DWORD, "ab"}), "[21H2 -- 19044.25185]\n"},
        {3, Registry("UBR", {REG_DWORD, "12345678"}), "[21H2]\n"},
        {3, Registry("UBR", {REG_BINARY, "abcd"}), "[21H2]\n"},
        {5, Set(&Machine::userNames, {{2, x(1024)}, {3, x(1023)}}),
         "[ERROR]\nUser display name: [" + x(1023) + "]\n"},
        {6, Set(&Machine::languageName, x(1024)), "language:      \n"},
        {6, Before("GetLocaleInfoA", 4, Locale(LOCALE_SENGLANGUAGE, "Englisch")), "name:      \n"},
        {6, Before("GetLocaleInfoA", 4, Locale(LOCALE_SENGLANGUAGE, "En")), "name:      En\n"},
        {8, Locale(LOCALE_SGROUPING, "3;2;0"), " 1,67,77,216 KB"},
        {8, Locale(LOCALE_SGROUPING, "3;2"), " 1,67,77,216 KB"},
        {8, Locale(LOCALE_SGROUPING, "3"), " 16,777,216 KB"},
        {8, Locale(LOCALE_SGROUPING, "3;0;2"), " 16,777,216 KB"},
        {8, Locale(LOCALE_SGROUPING, "12"), " 16777216 KB"},
        {8, Locale(LOCALE_SGROUPING, "0;3"), " 16777216 KB"},
        {8, Locale(LOCALE_SGROUPING, ""), " 16777216 KB"},
        {8, Locale(LOCALE_SGROUPING, "-1;x;;"), " 16777216 KB"},
        {9, Set(&Machine::systemDirectory, x(1022)), "[" + x(1022) + "]"},
        {9, Set(&Machine::systemDirectory, x(1023)), "System:      []"},
        {9, Set(&Machine::tempDirectory, x(1022)), "[" + x(1022) + "]"},
        {9, Set(&Machine::tempDirectory, x(1023)), "Temp:        []"},
        {9, Set(&Machine::currentDirectory, x(259)), "[" + x(259) + "]"},
        {9, Set(&Machine::currentDirectory, x(260)), "AppData:     []"},
        {9, Set(&Machine::executablePath, x(5000)), "[" + x(1022) + "]"},
        {10, [](Machine&) {}, "//] (N/A)\n", megabyte},
        {12, Set(&Machine::currentUser, {{"key", {KEY_READ | KEY_WRITE}}}), "(RW)", "key"},
        {12, Set(&Machine::currentUser, {{"key", {KEY_READ}}}), "(RO)", "key"},
        {12, Set(&Machine::currentUser, {{"key", {KEY_WRITE}}}), "(N/A)", "key"},
        {15, Set(&Machine::environment, {{x(32766), "set"}}), "[set]", x(32766)},
        {15, Set(&Machine::environment, {{x(32767), "set"}}), "Not set!", x(32767)},
        {15, Set(&Machine::environment, {{"BIG", megabyte}}), "[" + megabyte, "BIG"},
        {16, Modules(x(257), x(261)), x(260) + "  [Modul"},
        {16, Modules(odd, odd), odd + "  [Modul"},
        {16, [](Machine& m) { m.processes.back().modules.clear(); },
         "Module32First failed with error 18 (There are no more files)\r\n"},
        {16, Set(&Machine::badLengthAnswers, 99), "[7.0.19041.546]\r\n"},
        {16, Set(&Machine::badLengthAnswers, 100),
         noSnapshot + "24 (The program issued a command but the command length is incorrect)\r\n"},
        {16, SnapshotFails(5, "%s%n \xE9\xFF.\r\n%d"), noSnapshot + "5 (%s%n \xE9\xFF)\r\n"},
        {16, SnapshotFails(INT_MIN, "With\ta tab. . \t.\x01rest"),
         noSnapshot + "-2147483648 (With\ta tab)\r\n"},
        {16, SnapshotFails(5, x(255)), noSnapshot + "5 (" + x(255) + ")\r\n"},
        {17, Version("7.0", 7, 0), "  [7.0]\r\n"},
        {17, Resource({{kTranslation, english + german}, {kGermanVersion, "2"}, {kVersion, "1"}}),
         "  [1]\r\n"},
        {17, Resource({{kTranslation, "", 4}}), "  []\r\n"},
        {17, Resource({{kTranslation, english, 3}, {kVersion, "1"}}), "  []"},
        {17, Resource({{kTranslation, english}, {kVersion, "1.0", UINT_MAX}}), "  [1.0]\r\n"},
        {17, Resource({{kTranslation, english}, {kVersion, "1.0", 0}}), "  [1.0]\r\n"},
        {17, Resource({{kTranslation, english}, {kVersion, japanese, 6}}),
         "  [" + japanese + "]\r\n"},
        {17, Before("GetFileVersionInfoA", 1, Version(x(9000))), "  [No version info!]\r\n"},
        {17, Before("GetFileVersionInfoA", 1, Version("9")), "viewer.exe  [9]\r\n"},
        {20, Set(&Machine::deviceCaps, {{LOGPIXELSX, INT_MIN}}), "x: -2147483648\r\n"},
    };
}

TEST(ChangedData, IsShownWholeOrNotAtAll) {
    for (const Row& row : Rows()) {
        SCOPED_TRACE(testing::Message() << "kind " << row.kind << ": " << row.part);
        const stand_in::ScopedMachine scope;
        row.change(stand_in::CurrentMachine());
        testing::internal::CaptureStdout();
        const auto section = GetInfo(row.kind, 0, row.argument.c_str());
        stand_in::beforeCall = nullptr;
        const std::string warning = testing::internal::GetCapturedStdout();
        const std::string text = warning + section.value_or("");
        EXPECT_EQ(warning.empty(), row.part.find("failed with error") == std::string::npos);
        EXPECT_LT(stand_in::CallsMade(), 1000U) << "too many calls";
        EXPECT_NE(text.find(row.part), std::string::npos) << text.substr(0, 2000);
    }
}

}  // namespace
