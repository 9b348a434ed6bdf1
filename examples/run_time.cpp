// Prints the whole report: run_time [LIBRARY]. Finds the library at run time, so that the program
// starts without it too.
#include <algorithm>
#include <iostream>
#include <string>

#include <qbsupport/loader.hpp>

int main(int count, char** arguments) {
    // A product passes the full path of the file that it installed, so that no other directory's
    // file can take its place.
    const qbsupport::Library library(count > 1 ? arguments[1] : qbsupport::kLibraryFileName);
    if (!library.IsLoaded()) {
        std::cerr << "No support report: " << library.Error() << '\n';
        return 1;
    }
    // Put your own program's directory, registry keys and modules here.
    qbsupport::ReportOptions options;
    options.appDirectory = "C:\\ProgramData";
    options.userAppKey = options.machineAppKey = "Software\\Microsoft";
    options.variables = {"NUMBER_OF_PROCESSORS"};
    options.modules = {"QBSUPPORT.dll"};
    options.progress = [](std::size_t step, std::size_t steps, const char* name) {
        std::cerr << step << '/' << steps << ' ' << name << '\n';
    };
    qbsupport::Report report = library.WholeReport(options);
    for (const qbsupport::FailedSection& failed : report.failed) {
        std::cerr << "left out: " << failed.section.name << ' ' << failed.argument << '\n';
    }
    // Standard output is in text mode, where each LF becomes CR LF by itself.
    report.text.erase(std::remove(report.text.begin(), report.text.end(), '\r'), report.text.end());
    std::cout << report.text;
    return 0;
}
