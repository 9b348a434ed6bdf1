// What both programs make of the library: the report that they write unless told otherwise.
#ifndef QBREPORT_REPORT_H
#define QBREPORT_REPORT_H

#include <string>
#include <vector>

#include "qbsupport/qbsupport.hpp"

/// The report without any options given. Its texts are in UTF-8.
qbsupport::ReportOptions DefaultReportOptions();

/// Composes a report, with options in UTF-8, by the library that lies beside this program and no
/// other. `problem` says why there is none, or is empty. To be called once.
qbsupport::Report ComposeReport(qbsupport::ReportOptions options, std::string& problem);

/// Says which section a report had to do without, and why.
std::string FailureText(const qbsupport::FailedSection& failed);

/// Where a new report goes if the user did not say, best first: among the user's documents, beside
/// the program, among the temporary files. A directory that Windows does not tell is left out.
std::vector<std::wstring> NewReportPaths();

#endif
