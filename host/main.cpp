// qbreport: the whole support report, or chosen sections of it, to standard output or a file.
#include <conio.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "options.h"
#include "output.h"
#include "platform.h"
#include "report.h"
#include "text.h"

namespace {

enum ExitStatus { kSuccess = 0, kFailure = 1, kWrongUsage = 2 };

void Say(const std::string& message) {
    static_cast<void>(PrintText(STD_ERROR_HANDLE, "qbreport: " + message + '\n'));
}

// Replaces the line that was shown before.
void ShowLine(std::string line) {
    line.resize(40, ' ');
    static_cast<void>(PrintText(STD_ERROR_HANDLE, '\r' + line + '\r'));
}

void ShowProgress(std::size_t step, std::size_t count, const char* name) {
    ShowLine("qbreport: " + std::to_string(step) + '/' + std::to_string(count) + ' ' + name);
}

// Names the sections that are missing. True if the user asked for none of them.
bool SayFailed(const std::vector<qbsupport::FailedSection>& failed, const Options& options) {
    const std::vector<int>& named = options.namedKinds;
    return std::ranges::count_if(failed, [&named](const auto& section) {
               Say(FailureText(section));
               return std::ranges::count(named, section.section.kind) != 0;
           }) == 0;
}

// Says why a text could not be written.
bool IsPrinted(const std::string& problem) {
    if (!problem.empty()) {
        Say("cannot write to standard output: " + problem);
    }
    return problem.empty();
}

// Saves the report in the first of the files that can be written.
bool Save(const std::string& report, const std::vector<std::wstring>& files) {
    return std::ranges::any_of(files, [&report](const std::wstring& file) {
        const std::string problem = SaveReport(report, file);
        const std::string name = Narrow(CP_UTF8, FullPath(file));
        Say(problem.empty() ? "report saved in " + name
                            : "cannot save the report in " + name + ": " + problem);
        return problem.empty();
    });
}

ExitStatus WriteReport(const Options& options, bool toNewFile) {
    const bool toFile = toNewFile || !options.outputFile.empty();
    // Progress would disturb a report on the same screen.
    const bool showsProgress = IsConsole(GetStdHandle(STD_ERROR_HANDLE)) &&
                               (toFile || !IsConsole(GetStdHandle(STD_OUTPUT_HANDLE)));
    qbsupport::ReportOptions reportOptions = options.report;
    if (showsProgress) {
        reportOptions.progress = ShowProgress;
    }
    std::string problem;
    const qbsupport::Report report = ComposeReport(std::move(reportOptions), problem);
    if (showsProgress) {
        ShowLine("");
    }
    if (!problem.empty()) {
        Say(problem);
        return kFailure;
    }
    const bool isComplete = SayFailed(report.failed, options);
    if (report.text.empty() && !report.failed.empty()) {
        return kFailure;
    }
    const bool isWritten = toNewFile ? Save(report.text, NewReportPaths())
                           : toFile  ? Save(report.text, {Widen(CP_UTF8, options.outputFile)})
                                     : IsPrinted(PrintReport(report.text));
    return isWritten && isComplete ? kSuccess : kFailure;
}

ExitStatus Run(std::vector<std::string> arguments) {
    Options options;
    options.report = DefaultReportOptions();
    if (arguments.empty() && IsConsole(GetStdHandle(STD_OUTPUT_HANDLE)) &&
        IsConsole(GetStdHandle(STD_ERROR_HANDLE)) && OwnsConsole()) {
        // The window of a double click closes with the program, so the report goes to a file, and
        // the user gets time to read where it is.
        const ExitStatus status = WriteReport(options, true);
        if (IsSessionVisible()) {
            Say("press a key to close this window");
            static_cast<void>(_getwch());
        }
        return status;
    }
    const std::string problem = ParseOptions(std::move(arguments), options);
    if (!problem.empty()) {
        Say(problem + "; try 'qbreport --help'");
        return kWrongUsage;
    }
    if (!options.text.empty()) {
        return IsPrinted(PrintText(STD_OUTPUT_HANDLE, options.text)) ? kSuccess : kFailure;
    }
    return WriteReport(options, false);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    PrepareProcess();
    try {
        std::vector<std::string> texts;
        for (int index = 1; index < count; ++index) {
            texts.push_back(Narrow(CP_UTF8, arguments[index]));
        }
        return Run(std::move(texts));
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "qbreport: %s\n", error.what()));
    }
    return kFailure;
}
