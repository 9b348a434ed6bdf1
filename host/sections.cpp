#include "sections.h"

#include <charconv>

#include "qbsupport/qbsupport.h"

namespace {

using enum ArgumentSource;

constexpr Section kSections[] = {
    {QbSupportBanner, "banner", kNone, 0, ""},
    {QbSupportDateTime, "date-time", kNone, 0, ""},
    {QbSupportOperatingSystem, "operating-system", kNone, 0, ""},
    {QbSupportUname, "uname", kNone, 0, "heading only"},
    {QbSupportUserName, "user-name", kNone, 0, ""},
    {QbSupportLocale, "locale", kNone, 0, ""},
    {QbSupportHardware, "hardware", kNone, 0, ""},
    {QbSupportMemory, "memory", kNone, 0, ""},
    {QbSupportSystemDirectories, "system-directories", kNone, 0, ""},
    {QbSupportAppDirectory, "app-directory", kAppDirectory, QbSupportSystemDirectories,
     "--app-directory DIR"},
    {QbSupportRegistry, "registry", kUserKey, 0, "--user-key KEY"},
    {QbSupportUserAppKey, "user-app-key", kAppKey, QbSupportRegistry, "--app-key KEY"},
    {QbSupportMachineAppKey, "machine-app-key", kAppKey, QbSupportRegistry, "--app-key KEY"},
    {QbSupportApplication, "application", kNone, 0, ""},
    {QbSupportEnvironment, "environment", kVariables, QbSupportApplication,
     "--variable NAME, repeatable"},
    {QbSupportModules, "modules", kProcess, 0, "--process FILE"},
    {QbSupportModule, "module", kModules, QbSupportModules, "--module FILE, repeatable"},
    {QbSupportLimits, "limits", kNone, 0, "heading only"},
    {QbSupportReserved, "reserved", kNone, 0, "always fails; not in the whole report"},
    {QbSupportDisplay, "display", kNone, 0, ""},
};

constexpr std::size_t kNameWidth = 20;

bool IsKindNumber(std::string_view text, int kind) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && parsed == end && number == kind;
}

}  // namespace

std::span<const Section> AllSections() {
    return kSections;
}

const Section* FindSection(std::string_view nameOrNumber) {
    for (const Section& section : kSections) {
        if (nameOrNumber == section.name || IsKindNumber(nameOrNumber, section.kind)) {
            return &section;
        }
    }
    return nullptr;
}

bool IsInWholeReport(const Section& section) {
    return section.kind != QbSupportReserved;
}

bool IsContinuedBy(const Section& section, const Section& next) {
    return next.continues != 0 &&
           (section.kind == next.continues || section.continues == next.continues);
}

bool HasSeparator(const Section& section) {
    switch (section.kind) {
        case QbSupportAppDirectory:
        case QbSupportUserAppKey:
        case QbSupportMachineAppKey:
        case QbSupportModule:
            return false;
        default:
            return true;
    }
}

std::string SectionListText() {
    std::string text;
    for (const Section& section : kSections) {
        std::string line = section.kind < 10 ? " " : "";
        line += std::to_string(section.kind) + "  " + section.name;
        if (*section.note != '\0') {
            line.append(4 + kNameWidth - line.size(), ' ');
            line += section.note;
        }
        text += line + '\n';
    }
    return text;
}
