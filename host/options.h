// The command line.
#ifndef QBREPORT_OPTIONS_H
#define QBREPORT_OPTIONS_H

#include <string>
#include <vector>

#include "qbsupport/qbsupport.hpp"
#include "sections.h"

enum class Action { kReport, kHelp, kVersion, kList };

struct Options {
    Action action = Action::kReport;
    // Where the report goes; empty for standard output.
    std::string outputFile;
    // The sections that the user named, in that order; none for the whole report.
    std::vector<const Section*> sections;
    unsigned int flags = qbsupport::kAllFlags;

    // What the sections take as arguments, where the user gave it.
    std::string appDirectory;
    std::string userKey = "Software";
    std::string appKey = "Software\\Quenbar";
    std::string process;
    std::vector<std::string> variables;
    std::vector<std::string> modules;
};

/// Reads the command line into `options`. Returns what is wrong with it, or an empty text.
std::string ParseOptions(int argc, char** argv, Options& options);

/// What --help prints.
std::string HelpText();

#endif
