// Shows the whole report, or saves it to a file: run_time [FILE]. Finds the library at run time, so
// that the program also starts without it. For Windows.
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include <qbsupport/loader.hpp>

// The library beside this program. With the full path, no file of that name in another directory
// can take its place.
static std::wstring LibraryPath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.rfind(L'\\') + 1) + L"QBSUPPORT.dll";
}

int main(int count, char** arguments) {
    const qbsupport::Library library(LibraryPath().c_str());
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
    const qbsupport::Report report = library.WholeReport(options);
    for (const qbsupport::FailedSection& failed : report.failed) {
        std::cerr << "left out: " << failed.section.name << ' ' << failed.argument << '\n';
    }

    // Always in binary, because the text contains its line ends.
    std::ofstream file;
    if (count > 1) {
        file.open(arguments[1], std::ios::binary);
    } else {
        _setmode(_fileno(stdout), _O_BINARY);
        SetConsoleOutputCP(GetACP());  // the report's code page, which the console keeps afterwards
    }
    std::ostream& output = count > 1 ? file : std::cout;
    output << report.text << std::flush;
    if (!output) {
        std::cerr << "The report cannot be written.\n";
    }
    return output ? 0 : 1;
}
