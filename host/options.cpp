#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

namespace {

using qbsupport::kSectionKinds;
using qbsupport::SectionKind;

// Replaces a section's name by its number.
std::string TakeSection(std::string& nameOrNumber) {
    const std::string wanted = CLI::detail::to_lower(CLI::detail::trim_copy(nameOrNumber));
    for (const SectionKind& section : kSectionKinds) {
        const std::string number = std::to_string(section.kind);
        if (wanted == section.name || wanted == number) {
            nameOrNumber = number;
            return "";
        }
    }
    return "unknown section '" + wanted + "' (--list shows them all)";
}

std::string RefuseEmptyName(const std::string& name) {
    return name.empty() ? "the file's name is empty" : "";
}

const char* NoteOn(int kind) {
    switch (kind) {
        case QbSupportUname:
        case QbSupportLimits:
            return "heading only";
        case QbSupportAppDirectory:
            return "--app-directory DIR";
        case QbSupportRegistry:
            return "--user-key KEY";
        case QbSupportUserAppKey:
        case QbSupportMachineAppKey:
            return "--app-key KEY";
        case QbSupportEnvironment:
            return "--variable NAME, repeatable";
        case QbSupportModules:
            return "--process FILE";
        case QbSupportModule:
            return "--module FILE, repeatable";
        case QbSupportReserved:
            return "always fails; not in the whole report";
        default:
            return "";
    }
}

std::string SectionList() {
    constexpr std::size_t kNoteColumn = 24;
    std::string list;
    for (const SectionKind& section : kSectionKinds) {
        std::string line = section.kind < 10 ? " " : "";
        line += std::to_string(section.kind) + "  " + section.name;
        if (*NoteOn(section.kind) != '\0') {
            line.append(kNoteColumn - line.size(), ' ');
            line += NoteOn(section.kind);
        }
        list += line + '\n';
    }
    return list;
}

// An option that sets the argument of `kinds`.
struct ArgumentOption {
    CLI::Option* option;
    std::vector<int> kinds;
};

// The variables and modules replace those of a report without options.
CLI::Option* AddList(CLI::App& app, const char* names, std::vector<std::string>& list,
                     const char* help) {
    return app.add_option(names, list, help)->expected(1)->take_all()->allow_extra_args(false);
}

std::vector<ArgumentOption> AddArgumentOptions(CLI::App& app, qbsupport::ReportOptions& report) {
    return {
        {app.add_option("-d,--app-directory", report.appDirectory,
                        "the application's directory (this program's)")
             ->type_name("DIR"),
         {QbSupportAppDirectory}},
        {app.add_option("-u,--user-key", report.userKey, "the user's root registry key (Software)")
             ->type_name("KEY"),
         {QbSupportRegistry}},
        {app.add_option("-a,--app-key", report.userAppKey,
                        "the application's registry key (Software\\Quenbar)")
             ->type_name("KEY"),
         {QbSupportUserAppKey, QbSupportMachineAppKey}},
        {AddList(app, "-e,--variable", report.variables, "an environment variable; may be repeated")
             ->type_name("NAME"),
         {QbSupportEnvironment}},
        {app.add_option("-p,--process", report.process,
                        "list this running program's modules (this program's)")
             ->type_name("FILE"),
         {QbSupportModules}},
        {AddList(app, "-m,--module", report.modules,
                 "a file whose version to report; may be repeated")
             ->type_name("FILE"),
         {QbSupportModule}},
    };
}

void AddOptions(CLI::App& app, Options& options) {
    app.add_option("-o,--output", options.outputFiles,
                   "save the report in FILE, whole or not at all; - is standard output")
        ->type_name("FILE")
        ->expected(1)
        ->allow_extra_args(false)
        ->check(RefuseEmptyName);
    app.add_option("-s,--sections", options.report.kinds,
                   "only these, by name or number, comma-separated")
        ->type_name("LIST")
        ->delimiter(',')
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false)
        ->transform(CLI::Validator(TakeSection, ""));
    app.add_flag_callback(
        "-l,--list", [&options] { options.text = SectionList(); },
        "list the sections and what each one takes");
    const auto leaveOut = [&](const char* name, unsigned int flag, const char* help) {
        app.add_flag_callback(name, [&options, flag] { options.report.flags &= ~flag; }, help);
    };
    leaveOut("--no-headings", QbSupportFlagHeadings, "leave out titles and their underlines");
    leaveOut("--no-separators", QbSupportFlagSeparator,
             "leave out the empty lines between sections");
    leaveOut("--no-indent", QbSupportFlagIndent, "start every line in the first column");
}

std::string Parse(CLI::App& app, std::vector<std::string> arguments, std::string& text) {
    // CLI11 takes them from the end.
    std::reverse(arguments.begin(), arguments.end());
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        text = app.help();
    } catch (const CLI::CallForVersion& version) {
        text = std::string(version.what()) + '\n';
    } catch (const CLI::ParseError& error) {
        return error.what();
    }
    return "";
}

}  // namespace

std::string ParseOptions(std::vector<std::string> arguments, Options& options) {
    CLI::App app("Writes a support report about this computer to standard output.", "qbreport");
    app.allow_windows_style_options();
    app.set_help_flag("-h,-?,--help", "show this text");
    app.set_version_flag("-V,--version", "qbreport " QBREPORT_VERSION,
                         "show this program's version");
    app.footer(
        "Exit status: 0 when the report was written, 1 when that or a section failed that was\n"
        "asked for by name, number or argument, 2 when the command line is wrong.");
    AddOptions(app, options);
    const std::vector<ArgumentOption> argumentOptions = AddArgumentOptions(app, options.report);

    std::string problem = Parse(app, std::move(arguments), options.text);
    qbsupport::ReportOptions& report = options.report;
    report.machineAppKey = report.userAppKey;
    if (options.outputFiles == std::vector<std::string>{"-"}) {
        options.outputFiles.clear();
    }
    options.namedKinds = report.kinds;
    const bool showsModules =
        report.kinds.empty() ||
        std::count(report.kinds.begin(), report.kinds.end(), QbSupportModule) > 0;
    if (app.count("--module") > 0 && showsModules) {
        options.namedModules = report.modules;
    }
    for (const auto& [option, kinds] : argumentOptions) {
        if (option->count() > 0) {
            options.namedKinds.insert(options.namedKinds.end(), kinds.begin(), kinds.end());
        }
    }
    return problem;
}
