// The report: sections in a row, as the library writes them.
#ifndef QBREPORT_REPORT_H
#define QBREPORT_REPORT_H

#include <string>
#include <vector>

#include "options.h"
#include "progress.h"
#include "qbsupport/qbsupport.hpp"

// One call of the library.
struct Call {
    const Section* section;
    std::string argument;
};

struct Report {
    std::string text;
    // The calls that gave no text.
    std::vector<Call> failures;
};

/// The calls that the options ask for, in order.
std::vector<Call> PlanCalls(const Options& options);

/// Makes the calls and joins what they give; a call that fails is left out. Nothing is added to the
/// library's texts but, with separators, an empty line between a group of single lines and what
/// comes next.
Report ComposeReport(const qbsupport::Library& library, const std::vector<Call>& calls,
                     unsigned int flags, Progress& progress);

#endif
