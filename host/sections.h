// The report's sections as the command line names them.
#ifndef QBREPORT_SECTIONS_H
#define QBREPORT_SECTIONS_H

#include <span>
#include <string>
#include <string_view>

// Which of the user's values a section takes as its argument.
enum class ArgumentSource {
    kNone,
    kAppDirectory,
    kUserKey,
    kAppKey,
    kVariables,
    kProcess,
    kModules
};

struct Section {
    int kind;
    const char* name;
    ArgumentSource argument;
    // The kind of the section whose last lines this one's line goes on with, or 0.
    int continues;
    // The option that gives the argument, or what else there is to know.
    const char* note;
};

/// All sections in kind order; they live as long as the program.
std::span<const Section> AllSections();

/// The section with this name or kind number, or null.
const Section* FindSection(std::string_view nameOrNumber);

/// Whether the section belongs to a whole report: all but the reserved one, which always fails.
bool IsInWholeReport(const Section& section);

/// Whether the line of `next` belongs directly below the text of `section`.
bool IsContinuedBy(const Section& section, const Section& next);

/// Whether the library ends the section in an empty line when it is asked for separators.
bool HasSeparator(const Section& section);

/// The table that --list prints.
std::string SectionListText();

#endif
