#include "report.h"

#include <ctime>
#include <cwchar>
#include <utility>

#include "platform.h"
#include "qbsupport/loader.hpp"
#include "text.h"

#include <shlobj.h>

namespace {

// The same options with their texts in the library's code page.
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

}  // namespace

qbsupport::ReportOptions DefaultReportOptions() {
    qbsupport::ReportOptions options;
    std::wstring directory = ProgramDirectory();
    // "C:" alone would be the current directory of that drive.
    if (!directory.ends_with(L":\\")) {
        directory.pop_back();
    }
    options.appDirectory = Narrow(CP_UTF8, directory);
    options.userAppKey = "Software\\Quenbar";
    options.machineAppKey = options.userAppKey;
    // These describe the computer and contain nothing that a user might not want to send.
    options.variables = {"OS", "PROCESSOR_ARCHITECTURE", "NUMBER_OF_PROCESSORS"};
    options.modules = {"kernel32.dll", "user32.dll", "QBSUPPORT.dll"};
    return options;
}

qbsupport::Report ComposeReport(qbsupport::ReportOptions options, std::string& problem) {
    const std::wstring directory = ProgramDirectory();
    // In wide characters, because the ANSI code page may lack characters of the path.
    const std::wstring file = directory + Widen(CP_UTF8, qbsupport::kLibraryFileName);
    const qbsupport::Library library(file.c_str());
    if (!library.IsLoaded()) {
        problem = Utf8Of(library.Error());
        if (GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES) {
            // This happens if the user starts the program inside the archive.
            problem = "QBSUPPORT.dll is not in the folder of this program, " +
                      Narrow(CP_UTF8, directory) +
                      ". Unpack the whole archive first, then start the program from there";
        }
        return {};
    }
    qbsupport::Report report = library.WholeReport(ForLibrary(std::move(options)));
    LoadFromWindowsOnly();
    return report;
}

std::string FailureText(const qbsupport::FailedSection& failed) {
    const auto& [section, argument, tried] = failed;
    const std::string on = argument.empty() ? "" : " on " + Utf8Of(argument);
    const std::string text = std::string("section '") + section.name + "' (" +
                             std::to_string(section.kind) + ") left out: ";
    if (!tried) {
        return text + "its line" + on + " belongs below '" +
               qbsupport::SectionKindOf(section.continues).name + "'";
    }
    const bool isProgram = section.kind == QbSupportModules && !argument.empty();
    return text + "the library has no report" + on +
           (isProgram ? ": no program of this name runs (letter case counts)" : "");
}

std::vector<std::wstring> NewReportPaths() {
    const std::time_t now = std::time(nullptr);
    wchar_t name[64] = L"";
    static_cast<void>(
        std::wcsftime(name, 64, L"Support report %Y-%m-%d %H.%M.%S.txt", std::localtime(&now)));
    std::vector<std::wstring> paths;
    wchar_t directory[MAX_PATH + 1] = L"";
    const auto getFolder =
        SystemFunction<decltype(&SHGetFolderPathW)>(L"shell32.dll", "SHGetFolderPathW");
    if (getFolder != nullptr &&
        getFolder(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, directory) == S_OK) {
        paths.push_back(directory + std::wstring(L"\\") + name);
    }
    paths.push_back(ProgramDirectory() + name);
    if (GetTempPathW(MAX_PATH + 1, directory) != 0) {
        paths.push_back(std::wstring(directory) + name);
    }
    return paths;
}
