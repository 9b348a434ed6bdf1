// The command line.
#ifndef QBREPORT_OPTIONS_H
#define QBREPORT_OPTIONS_H

#include <string>
#include <vector>

#include "qbsupport/qbsupport.hpp"

struct Options {
    /// What to print instead of a report, such as help. Empty if a report is wanted.
    std::string text;
    /// Where the report goes. Empty for standard output.
    std::string outputFile;
    qbsupport::ReportOptions report;
    /// The kinds that the user named, directly or by an option for their argument.
    std::vector<int> namedKinds;
};

/// Reads the command line, without the program's name, into `options`. Returns what is wrong with
/// it, or an empty text.
std::string ParseOptions(std::vector<std::string> arguments, Options& options);

#endif
