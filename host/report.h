// The report of both programs, and the library that composes it.
#ifndef QBREPORT_REPORT_H
#define QBREPORT_REPORT_H

#include <string>
#include <vector>

#include "qbsupport/qbsupport.hpp"

/// The options if the user gives none. Their texts are in UTF-8.
qbsupport::ReportOptions DefaultReportOptions();

/// Composes a report with the library beside this program. The options are in UTF-8. If there is no
/// report, `problem` says why; otherwise it is empty. Call this only once.
qbsupport::Report ComposeReport(qbsupport::ReportOptions options, std::string& problem);

/// A message that names the missing section and says why it is missing.
std::string FailureText(const qbsupport::FailedSection& failed);

/// The files to try for a new report if the user named none: first among the user's documents, then
/// beside the program, then among the temporary files. Directories that Windows does not give are
/// left out.
std::vector<std::wstring> NewReportPaths();

#endif
