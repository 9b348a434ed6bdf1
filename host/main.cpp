// qbreport: the whole support report, or chosen sections of it, to standard output or a file.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "options.h"
#include "output.h"
#include "platform.h"
#include "progress.h"
#include "report.h"

namespace {

enum ExitStatus { kSuccess = 0, kFailure = 1, kWrongUsage = 2 };

void Say(const std::string& message) {
    static_cast<void>(WriteText(stderr, "qbreport: " + message + '\n'));
}

// The progress line would disturb a report that goes to the same screen.
bool WantsProgress(const Options& options) {
    return IsTerminal(stderr) && (!options.outputFiles.empty() || !IsTerminal(stdout));
}

qbsupport::Report Compose(const qbsupport::Library& library, const Options& options) {
    Progress progress(WantsProgress(options));
    qbsupport::ReportOptions report = ForLibrary(options.report);
    report.progress = [&progress](std::size_t step, std::size_t count, const char* name) {
        progress.Show(step, count, name);
    };
    return library.WholeReport(report);
}

// Names the sections that are missing. Whether they are all that the user did not ask for.
bool SayFailed(const std::vector<qbsupport::FailedSection>& failed, const Options& options) {
    bool isComplete = true;
    for (const qbsupport::FailedSection& section : failed) {
        Say(FailureText(section));
        isComplete = isComplete && std::count(options.namedKinds.begin(), options.namedKinds.end(),
                                              section.section.kind) == 0;
    }
    return isComplete;
}

// A module that is not found is no failed section to the library, which writes so in its line.
bool SayNotFound(const qbsupport::Library& library, const std::vector<std::string>& modules) {
    bool isComplete = true;
    for (const std::string& module : modules) {
        const std::string line =
            library.Section(QbSupportModule, 0, AnsiOf(module)).value_or(std::string());
        if (!module.empty() &&
            line.find("[Modul or version info not found!]") != std::string::npos) {
            Say("module " + module + " not found, or it has no version");
            isComplete = false;
        }
    }
    return isComplete;
}

ExitStatus Print(std::string (&print)(const std::string&), const std::string& text) {
    const std::string problem = print(text);
    if (problem.empty()) {
        return kSuccess;
    }
    Say("cannot write to standard output: " + problem);
    return kFailure;
}

bool SaveIn(const std::string& path, const std::string& report) {
    const std::string problem = SaveReport(report, path);
    Say(problem.empty() ? "report saved in " + FullPath(path)
                        : "cannot save the report in " + path + ": " + problem);
    return problem.empty();
}

ExitStatus Save(const std::string& report, const std::vector<std::string>& paths) {
    const auto saves = [&report](const std::string& path) { return SaveIn(path, report); };
    return std::any_of(paths.begin(), paths.end(), saves) ? kSuccess : kFailure;
}

ExitStatus WriteReport(const Options& options) {
    const qbsupport::Library library = LoadLibraryBesideExecutable();
    if (!library.IsLoaded()) {
        Say(Utf8Of(library.Error()));
        return kFailure;
    }
    const qbsupport::Report report = Compose(library, options);
    bool isComplete = SayFailed(report.failed, options);
    isComplete = SayNotFound(library, options.namedModules) && isComplete;
    if (report.text.empty() && !report.failed.empty()) {
        return kFailure;
    }
    const ExitStatus status = options.outputFiles.empty() ? Print(PrintReport, report.text)
                                                          : Save(report.text, options.outputFiles);
    return isComplete ? status : kFailure;
}

// The window of a double click closes with the program, so the report goes to a file, and the user
// gets time to read where it is.
ExitStatus SaveForExplorer(Options& options) {
    options.outputFiles = NewReportPaths();
    const ExitStatus status = WriteReport(options);
    Say("press a key to close this window");
    WaitForKey();
    return status;
}

ExitStatus Run(std::vector<std::string> arguments) {
    PrepareProcess();
    Options options;
    options.report = DefaultReportOptions();
    if (arguments.empty() && OwnsConsole()) {
        return SaveForExplorer(options);
    }
    const std::string problem = ParseOptions(std::move(arguments), options);
    if (!problem.empty()) {
        Say(problem + "; try 'qbreport --help'");
        return kWrongUsage;
    }
    return options.text.empty() ? WriteReport(options) : Print(PrintText, options.text);
}

}  // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t** argv) {
#else
int main(int argc, char** argv) {
#endif
    try {
        return Run(Utf8Arguments(argc, argv));
    } catch (const std::bad_alloc&) {
        static_cast<void>(std::fputs("qbreport: out of memory\n", stderr));
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "qbreport: %s\n", error.what()));
    }
    return kFailure;
}
