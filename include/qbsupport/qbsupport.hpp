// QBSUPPORT for C++17 hosts that link the library: sections as std::string, and the whole report in
// one call. Hosts that find the library at run time include loader.hpp.
//
// Nothing here throws except std::bad_alloc and what the host's own progress function throws. Does
// not include any header of the system.
#ifndef QBSUPPORT_QBSUPPORT_HPP
#define QBSUPPORT_QBSUPPORT_HPP

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "qbsupport.h"
#include "sections.hpp"

namespace qbsupport {

/// Headings, separators and indent, as in a whole report.
inline constexpr unsigned int kAllFlags =
    QbSupportFlagHeadings | QbSupportFlagSeparator | QbSupportFlagIndent;

/// Gives a text back to the library that handed it out.
struct BufferRelease {
    decltype(&QbSupportReleaseBuffer) release = nullptr;
    void operator()(char* text) const noexcept { release(text); }
};

/// Owns the NUL-terminated text of one section. Null if the section failed. Release it before the
/// library is unloaded, because the text is the library's memory.
using Buffer = std::unique_ptr<char, BufferRelease>;

/// What a report contains. Texts are in the ANSI code page, like the library's arguments. If the
/// text for a line is empty, a whole report does not have that line.
struct ReportOptions {
    /// QbSupportFlags, for all sections.
    unsigned int flags = kAllFlags;
    /// The kinds to report, in this order. If it is empty, the report is whole.
    std::vector<int> kinds;

    std::string appDirectory;            ///< the application's directory, for kind 10
    std::string userKey = "Software";    ///< the user's root key, for kind 11
    std::string userAppKey;              ///< the application's key, for kind 12
    std::string machineAppKey;           ///< the same for kind 13
    std::vector<std::string> variables;  ///< environment variables, for kind 15, a line each
    std::string process;                 ///< a file name for kind 16, or empty for this process
    std::vector<std::string> modules;    ///< files whose versions to report, for kind 17

    /// Called before each section, on the caller's thread. `step` counts from 1 to `count`, and
    /// `name` is that of the section's kind.
    std::function<void(std::size_t step, std::size_t count, const char* name)> progress;
};

/// A section that is missing from a report.
struct FailedSection {
    SectionKind section;
    std::string argument;
    /// False if the library was not called for this line, because the section above it failed and
    /// the line would have been below another section.
    bool tried;
};

/// A report. Write its text to a file in binary.
struct Report {
    std::string text;
    std::vector<FailedSection> failed;
};

namespace detail {

inline Buffer GetBuffer(decltype(&QbSupportGetInfo) getInfo,
                        decltype(&QbSupportReleaseBuffer) release, int kind, unsigned int flags,
                        const char* argument) {
    char* text = nullptr;
    const bool complete = getInfo(kind, flags, &text, argument) != 0;
    return Buffer(complete ? text : nullptr, BufferRelease{release});
}

inline std::optional<std::string> TextOf(const Buffer& buffer) {
    return buffer != nullptr ? std::optional<std::string>(buffer.get()) : std::nullopt;
}

/// A section with several arguments is called once for each.
inline std::vector<std::string> ArgumentsFor(int kind, const ReportOptions& options) {
    switch (kind) {
        case QbSupportAppDirectory:
            return {options.appDirectory};
        case QbSupportRegistry:
            return {options.userKey};
        case QbSupportUserAppKey:
            return {options.userAppKey};
        case QbSupportMachineAppKey:
            return {options.machineAppKey};
        case QbSupportEnvironment:
            return options.variables;
        case QbSupportModules:
            return {options.process};
        case QbSupportModule:
            return options.modules;
        default:
            return {std::string()};
    }
}

using Call = std::pair<SectionKind, std::string>;

inline std::vector<Call> PlanCalls(const ReportOptions& options) {
    std::vector<Call> calls;
    for (const int kind : options.kinds) {
        for (std::string& argument : ArgumentsFor(kind, options)) {
            calls.emplace_back(SectionKindOf(kind), std::move(argument));
        }
    }
    if (!options.kinds.empty()) {
        return calls;
    }
    for (const SectionKind& section : kSectionKinds) {
        for (std::string& argument : ArgumentsFor(section.kind, options)) {
            const bool isEmptyLine = section.continues != 0 && argument.empty();
            if (IsInWholeReport(section) && !isEmptyLine) {
                calls.emplace_back(section, std::move(argument));
            }
        }
    }
    return calls;
}

/// Prepares `text`, which ends with the section `before`, for `next`. If `next` is a line that
/// continues `before`, it stands directly below it. If not, it comes after an empty line.
inline void Separate(std::string& text, const SectionKind& before, const SectionKind& next) {
    const bool isContinued = IsContinuedBy(before, next);
    if (isContinued && HasSeparator(before.kind)) {
        text.resize(text.size() - 2);
    } else if (!isContinued && !HasSeparator(before.kind)) {
        text += "\r\n";
    }
}

/// Joins the sections that a function such as QbSupportGetInfo gives.
template <typename GetSection>
Report Compose(const ReportOptions& options, const GetSection& getSection) {
    const std::vector<Call> calls = PlanCalls(options);
    Report report;
    std::optional<SectionKind> before;
    int failedKind = 0;
    for (std::size_t index = 0; index < calls.size(); ++index) {
        const auto& [section, argument] = calls[index];
        if (options.progress) {
            options.progress(index + 1, calls.size(), section.name);
        }
        const bool isOrphan = failedKind != 0 && section.continues == failedKind;
        const Buffer text =
            isOrphan ? Buffer() : getSection(section.kind, options.flags, argument.c_str());
        if (text == nullptr) {
            report.failed.push_back({section, argument, !isOrphan});
            failedKind = isOrphan ? failedKind : section.kind;
            continue;
        }
        if (before && (options.flags & QbSupportFlagSeparator) != 0) {
            Separate(report.text, *before, section);
        }
        report.text += text.get();
        before = section;
    }
    return report;
}

}  // namespace detail

/// Builds one section and returns its text, or nothing if the section failed.
///
/// `kind`, `flags` and `argument` are those of QbSupportGetInfo. An argument ends at its first NUL.
/// A host that does not call this function and the next one need not link the library.
inline std::optional<std::string> Section(int kind, unsigned int flags = kAllFlags,
                                          const std::string& argument = {}) {
    return detail::TextOf(detail::GetBuffer(&QbSupportGetInfo, &QbSupportReleaseBuffer, kind, flags,
                                            argument.c_str()));
}

/// Builds the whole report, or the chosen sections. Sections that fail are left out and named in
/// the result.
inline Report WholeReport(const ReportOptions& options = {}) {
    return detail::Compose(options, [](int kind, unsigned int flags, const char* argument) {
        return detail::GetBuffer(&QbSupportGetInfo, &QbSupportReleaseBuffer, kind, flags, argument);
    });
}

}  // namespace qbsupport

#endif
