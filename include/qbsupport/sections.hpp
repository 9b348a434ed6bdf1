// What a host has to know about each kind of section to join sections into a report. The library
// itself uses it too, so nothing here needs memory or exceptions.
#ifndef QBSUPPORT_SECTIONS_HPP
#define QBSUPPORT_SECTIONS_HPP

#include "qbsupport.h"

namespace qbsupport {

/// One kind of section. The texts live as long as the program.
struct SectionKind {
    int kind;
    /// The kind of the section below which a single line of this kind stands, or 0.
    int continues;
    /// A short name for users, in lower case and without blanks.
    const char* name;
};

/// All kinds, in the order of a whole report.
inline constexpr SectionKind kSectionKinds[] = {
    {QbSupportBanner, 0, "banner"},
    {QbSupportDateTime, 0, "date-time"},
    {QbSupportOperatingSystem, 0, "operating-system"},
    {QbSupportUname, 0, "uname"},
    {QbSupportUserName, 0, "user-name"},
    {QbSupportLocale, 0, "locale"},
    {QbSupportHardware, 0, "hardware"},
    {QbSupportMemory, 0, "memory"},
    {QbSupportSystemDirectories, 0, "system-directories"},
    {QbSupportAppDirectory, QbSupportSystemDirectories, "app-directory"},
    {QbSupportRegistry, 0, "registry"},
    {QbSupportUserAppKey, QbSupportRegistry, "user-app-key"},
    {QbSupportMachineAppKey, QbSupportRegistry, "machine-app-key"},
    {QbSupportApplication, 0, "application"},
    {QbSupportEnvironment, QbSupportApplication, "environment"},
    {QbSupportModules, 0, "modules"},
    {QbSupportModule, QbSupportModules, "module"},
    {QbSupportLimits, 0, "limits"},
    {QbSupportReserved, 0, "reserved"},
    {QbSupportDisplay, 0, "display"},
};

/// The kinds are numbered from 1 to this.
inline constexpr int kLastKind = sizeof(kSectionKinds) / sizeof(kSectionKinds[0]);

/// The kind with this number. If there is no such kind, its name is empty.
constexpr SectionKind SectionKindOf(int kind) noexcept {
    for (const SectionKind& known : kSectionKinds) {
        if (known.kind == kind) {
            return known;
        }
    }
    return {kind, 0, ""};
}

namespace detail {

constexpr bool HasEveryKind() noexcept {
    int kind = 1;
    while (kind <= kLastKind && *SectionKindOf(kind).name != '\0') {
        ++kind;
    }
    return kind > kLastKind;
}

static_assert(HasEveryKind(), "a number is missing among the rows, or two rows have the same one");

}  // namespace detail

/// Whether a whole report has sections of this kind: all but the reserved one, which always fails.
constexpr bool IsInWholeReport(const SectionKind& section) noexcept {
    return section.kind != QbSupportReserved;
}

/// Whether the line of `next` belongs directly below the text of `section`.
constexpr bool IsContinuedBy(const SectionKind& section, const SectionKind& next) noexcept {
    return next.continues != 0 &&
           (section.kind == next.continues || section.continues == next.continues);
}

/// Whether QbSupportFlagSeparator adds an empty line to a section of this kind. It adds none to
/// single lines that a host writes directly below another section.
constexpr bool HasSeparator(int kind) noexcept {
    return kind != QbSupportAppDirectory && kind != QbSupportUserAppKey &&
           kind != QbSupportMachineAppKey && kind != QbSupportModule;
}

}  // namespace qbsupport

#endif
