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

// An option that sets the argument of `kinds`.
struct ArgumentOption {
    CLI::Option* option;
    std::vector<int> kinds;
};

std::string NoteOn(const SectionKind& section, const std::vector<ArgumentOption>& options) {
    for (const auto& [option, kinds] : options) {
        if (std::ranges::count(kinds, section.kind) != 0) {
            const auto policy = option->get_multi_option_policy();
            return option->get_name() + ' ' + option->get_type_name() +
                   (policy == CLI::MultiOptionPolicy::TakeAll ? ", repeatable" : "");
        }
    }
    return IsInWholeReport(section) ? "" : "not in the whole report: it always fails";
}

std::string SectionList(const std::vector<ArgumentOption>& options) {
    constexpr std::size_t kNoteColumn = 24;
    std::string list;
    for (const SectionKind& section : kSectionKinds) {
        std::string line = section.kind < 10 ? " " : "";
        line += std::to_string(section.kind) + "  " + section.name;
        const std::string note = NoteOn(section, options);
        line.resize(std::max(line.size(), note.empty() ? 0 : kNoteColumn), ' ');
        list += line + note + '\n';
    }
    return list;
}

// An option that may be repeated. The first value replaces the default ones.
template <typename Value>
CLI::Option* AddList(CLI::App& app, const char* names, const char* type, std::vector<Value>& values,
                     const std::string& help, const std::string& standard) {
    return app.add_option(names, values, help + "; may be repeated (default: " + standard + ')')
        ->type_name(type)
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false);
}

std::vector<ArgumentOption> AddArgumentOptions(CLI::App& app, qbsupport::ReportOptions& report) {
    const auto text = [&app](const char* names, const char* type, std::string& value,
                             const std::string& help, const std::string& standard) {
        return app.add_option(names, value, help + " (default: " + standard + ')')->type_name(type);
    };
    const auto list = [&app](const char* names, const char* type, std::vector<std::string>& values,
                             const char* help) {
        return AddList(app, names, type, values, help, CLI::detail::join(values, ", "));
    };
    return {
        {text("-d,--app-directory", "DIR", report.appDirectory, "the application's directory",
              "this program's"),
         {QbSupportAppDirectory}},
        {text("-u,--user-key", "KEY", report.userKey, "the user's root registry key",
              report.userKey),
         {QbSupportRegistry}},
        {text("-a,--app-key", "KEY", report.userAppKey, "the application's registry key",
              report.userAppKey),
         {QbSupportUserAppKey, QbSupportMachineAppKey}},
        {list("-e,--variable", "NAME", report.variables, "an environment variable"),
         {QbSupportEnvironment}},
        {text("-p,--process", "FILE", report.process, "the running program whose modules to list",
              "this program"),
         {QbSupportModules}},
        {list("-m,--module", "FILE", report.modules, "a file whose version to report"),
         {QbSupportModule}},
    };
}

void AddOptions(CLI::App& app, Options& options) {
    app.add_option("-o,--output", options.outputFile,
                   "save the report in FILE, whole or not at all (default: -, standard output)")
        ->type_name("FILE")
        ->check(RefuseEmptyName);
    AddList(app, "-s,--sections", "LIST", options.report.kinds,
            "only these, by name or number, comma-separated", "all but reserved")
        ->delimiter(',')
        ->transform(CLI::Validator(TakeSection, ""));
    const auto leaveOut = [&](const char* name, unsigned int flag, const char* help) {
        app.add_flag_callback(name, [&options, flag] { options.report.flags &= ~flag; }, help);
    };
    leaveOut("--no-headings", QbSupportFlagHeadings, "leave out titles and their underlines");
    leaveOut("--no-separators", QbSupportFlagSeparator, "leave out the lines between sections");
    leaveOut("--no-indent", QbSupportFlagIndent, "start every line in the first column");
}

std::string Parse(CLI::App& app, std::vector<std::string> arguments, std::string& text) {
    // CLI11 takes them from the end.
    std::ranges::reverse(arguments);
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
        "Exit status:\n"
        "  0  the report was written\n"
        "  1  the report was not written, or a section that was asked for by name, number or\n"
        "     argument failed, or QBSUPPORT.dll is missing, damaged or another library\n"
        "  2  the command line is wrong");
    AddOptions(app, options);
    qbsupport::ReportOptions& report = options.report;
    const std::vector<ArgumentOption> argumentOptions = AddArgumentOptions(app, report);
    app.add_flag_callback(
        "-l,--list", [&] { options.text = SectionList(argumentOptions); },
        "list the sections and what each one takes");

    std::string problem = Parse(app, std::move(arguments), options.text);
    report.machineAppKey = report.userAppKey;
    if (options.outputFile == "-") {
        options.outputFile.clear();
    }
    options.namedKinds = report.kinds;
    for (const auto& [option, kinds] : argumentOptions) {
        if (option->count() > 0) {
            options.namedKinds.insert(options.namedKinds.end(), kinds.begin(), kinds.end());
        }
    }
    return problem;
}
