// What both programs make of the library: the report that they write unless told otherwise.
#ifndef QBREPORT_REPORT_H
#define QBREPORT_REPORT_H

#include <string>

#include "qbsupport/qbsupport.hpp"

/// The report without any options given. Its texts are in UTF-8.
qbsupport::ReportOptions DefaultReportOptions();

/// The same options with their texts as the library takes them.
qbsupport::ReportOptions ForLibrary(qbsupport::ReportOptions options);

/// Says which section a report had to do without, and why.
std::string FailureText(const qbsupport::FailedSection& failed);

/// A name for a new report of this moment.
std::string NewReportName();

#endif
