#include "report.h"

#include <ctime>
#include <utility>

#include "platform.h"

qbsupport::ReportOptions DefaultReportOptions() {
    qbsupport::ReportOptions options;
    options.appDirectory = ExecutableDirectory();
    options.userAppKey = "Software\\Quenbar";
    options.machineAppKey = options.userAppKey;
    // They tell about the computer and hold nothing that a user might not want to send.
    options.variables = {"OS", "PROCESSOR_ARCHITECTURE", "NUMBER_OF_PROCESSORS"};
    options.modules = {"kernel32.dll", "user32.dll", "QBSUPPORT.dll"};
    return options;
}

qbsupport::ReportOptions ForLibrary(qbsupport::ReportOptions options) {
    for (std::string* const text : {&options.appDirectory, &options.userKey, &options.userAppKey,
                                    &options.machineAppKey, &options.process}) {
        *text = AnsiOf(*text);
    }
    for (std::vector<std::string>* const list : {&options.variables, &options.modules}) {
        for (std::string& text : *list) {
            text = AnsiOf(text);
        }
    }
    return options;
}

std::string FailureText(const qbsupport::FailedSection& failed) {
    std::string text = std::string("section '") + failed.section.name + "' (" +
                       std::to_string(failed.section.kind) + ") left out: ";
    if (!failed.tried) {
        return text + "its line on " + Utf8Of(failed.argument) + " belongs below '" +
               qbsupport::SectionKindOf(failed.section.continues).name + "'";
    }
    if (failed.argument.empty()) {
        return text + "the library has nothing to report";
    }
    text += "the library has no report on " + Utf8Of(failed.argument);
    return failed.section.kind == QbSupportModules
               ? text + ": no program of this name runs (letter case counts)"
               : text;
}

std::string NewReportName() {
    const std::time_t now = std::time(nullptr);
    char name[64] = {};
    static_cast<void>(std::strftime(name, sizeof(name), "Support report %Y-%m-%d %H.%M.%S.txt",
                                    std::localtime(&now)));
    return name;
}
