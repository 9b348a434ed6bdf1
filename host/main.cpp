// qbreport: the whole support report, or chosen sections of it, to standard output or a file.
#include <cstdio>
#include <new>
#include <string>

#include "options.h"
#include "output.h"
#include "platform.h"
#include "progress.h"
#include "qbsupport/qbsupport.hpp"
#include "report.h"
#include "sections.h"

namespace {

enum ExitStatus { kSuccess = 0, kFailure = 1, kWrongUsage = 2 };

void Say(const std::string& message) {
    static_cast<void>(std::fputs(("qbreport: " + message + '\n').c_str(), stderr));
}

// The progress line would disturb a report that goes to the same screen.
bool WantsProgress(const Options& options) {
    return IsTerminal(stderr) && (!options.outputFile.empty() || !IsTerminal(stdout));
}

Report ComposeWithProgress(const qbsupport::Library& library, const std::vector<Call>& calls,
                           const Options& options) {
    Progress progress(WantsProgress(options));
    return ComposeReport(library, calls, options.flags, progress);
}

void SayFailed(const Call& call) {
    std::string message = "section '" + std::string(call.section->name) + "' (" +
                          std::to_string(call.section->kind) + ") left out: the library has";
    message += call.argument.empty() ? " nothing to report" : " no report on " + call.argument;
    Say(message);
}

ExitStatus Print(std::string (&print)(const std::string&), const std::string& text) {
    const std::string problem = print(text);
    if (problem.empty()) {
        return kSuccess;
    }
    Say("cannot write to standard output: " + problem);
    return kFailure;
}

ExitStatus Save(const std::string& report, const std::string& path) {
    const std::string problem = SaveReport(report, path);
    if (problem.empty()) {
        Say("report saved in " + FullPath(path));
        return kSuccess;
    }
    Say("cannot save the report in " + path + ": " + problem);
    return kFailure;
}

ExitStatus WriteReport(const Options& options) {
    const qbsupport::Library library = LoadLibraryBesideExecutable();
    if (!library.IsLoaded()) {
        Say(library.Error());
        return kFailure;
    }
    const std::vector<Call> calls = PlanCalls(options);
    const Report report = ComposeWithProgress(library, calls, options);
    for (const Call& call : report.failures) {
        SayFailed(call);
    }
    if (report.failures.size() == calls.size()) {
        return kFailure;
    }
    const ExitStatus status = options.outputFile.empty() ? Print(PrintReport, report.text)
                                                         : Save(report.text, options.outputFile);
    const bool complete = report.failures.empty() || options.sections.empty();
    return complete ? status : kFailure;
}

ExitStatus Run(int argc, char** argv) {
    ReportClosedPipes();
    Options options;
    options.appDirectory = ExecutableDirectory();
    const std::string problem = ParseOptions(argc, argv, options);
    if (!problem.empty()) {
        Say(problem + "; try 'qbreport --help'");
        return kWrongUsage;
    }
    switch (options.action) {
        case Action::kHelp:
            return Print(PrintText, HelpText());
        case Action::kVersion:
            return Print(PrintText, "qbreport " QBREPORT_VERSION "\n");
        case Action::kList:
            return Print(PrintText, SectionListText());
        case Action::kReport:
            break;
    }
    return WriteReport(options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        static_cast<void>(std::fputs("qbreport: out of memory\n", stderr));
        return kFailure;
    }
}
