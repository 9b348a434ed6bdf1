#include "options.h"

#include <string_view>

namespace {

std::string AddSections(Options& options, std::string_view list) {
    for (;;) {
        const std::size_t comma = list.find(',');
        const std::string_view name = list.substr(0, comma);
        const Section* const section = FindSection(name);
        if (section == nullptr) {
            return "unknown section '" + std::string(name) + "' (--list shows them all)";
        }
        options.sections.push_back(section);
        if (comma == std::string_view::npos) {
            return "";
        }
        list.remove_prefix(comma + 1);
    }
}

std::string SetOutputFile(Options& options, std::string_view file) {
    options.outputFile = file;
    return file.empty() ? "the output file's name is empty" : "";
}

template <std::string Options::*Text>
std::string SetText(Options& options, std::string_view value) {
    options.*Text = value;
    return "";
}

template <std::vector<std::string> Options::*List>
std::string AddText(Options& options, std::string_view value) {
    (options.*List).emplace_back(value);
    return "";
}

template <unsigned int Flag>
std::string ClearFlag(Options& options, std::string_view) {
    options.flags &= ~Flag;
    return "";
}

template <Action NewAction>
std::string SetAction(Options& options, std::string_view) {
    options.action = NewAction;
    return "";
}

struct OptionRule {
    char shortName;  // NUL for none
    const char* longName;
    const char* valueName;  // null when the option takes no value
    const char* help;
    // Takes the value in; returns what is wrong with it, or an empty text.
    std::string (*apply)(Options& options, std::string_view value);
};

constexpr OptionRule kRules[] = {
    {'o', "output", "FILE", "save the report in FILE, whole or not at all", SetOutputFile},
    {'s', "sections", "LIST", "only these, by name or number, comma-separated", AddSections},
    {'l', "list", nullptr, "list the sections and what each one takes", SetAction<Action::kList>},
    {'\0', "no-headings", nullptr, "leave out titles and their underlines",
     ClearFlag<QbSupportFlagHeadings>},
    {'\0', "no-separators", nullptr, "leave out the empty lines between sections",
     ClearFlag<QbSupportFlagSeparator>},
    {'\0', "no-indent", nullptr, "start every line in the first column",
     ClearFlag<QbSupportFlagIndent>},
    {'d', "app-directory", "DIR", "the application's directory (this program's)",
     SetText<&Options::appDirectory>},
    {'u', "user-key", "KEY", "the user's root registry key (Software)", SetText<&Options::userKey>},
    {'a', "app-key", "KEY", "the application's registry key (Software\\Quenbar)",
     SetText<&Options::appKey>},
    {'e', "variable", "NAME", "an environment variable; may be repeated",
     AddText<&Options::variables>},
    {'p', "process", "FILE", "list this running program's modules (this program's)",
     SetText<&Options::process>},
    {'m', "module", "FILE", "a file whose version to report; may be repeated",
     AddText<&Options::modules>},
    {'h', "help", nullptr, "show this text", SetAction<Action::kHelp>},
    {'V', "version", nullptr, "show this program's version", SetAction<Action::kVersion>},
};

// `name` is an argument without its "=value".
const OptionRule* FindRule(std::string_view name) {
    for (const OptionRule& rule : kRules) {
        const bool isShort = name.size() == 2 && name[0] == '-' && name[1] == rule.shortName;
        const bool isLong = name.starts_with("--") && name.substr(2) == rule.longName;
        if ((isShort && rule.shortName != '\0') || isLong) {
            return &rule;
        }
    }
    return nullptr;
}

// Reads the option at argv[index], and moves on to its value where that is the next argument.
std::string ParseOption(int argc, char** argv, int& index, Options& options) {
    const std::string_view argument = argv[index];
    if (argument.empty() || argument[0] != '-') {
        return "unexpected argument '" + std::string(argument) + "'";
    }
    const std::size_t equals = argument.find('=');
    const std::string name(argument.substr(0, equals));
    const OptionRule* const rule = FindRule(name);
    if (rule == nullptr) {
        return "unknown option '" + name + "'";
    }
    const bool hasValue = equals != std::string_view::npos;
    if (rule->valueName == nullptr) {
        return hasValue ? "option '" + name + "' takes no value" : rule->apply(options, "");
    }
    if (hasValue) {
        return rule->apply(options, argument.substr(equals + 1));
    }
    if (index + 1 == argc) {
        return "option '" + name + "' needs a value: " + rule->valueName;
    }
    return rule->apply(options, argv[++index]);
}

constexpr std::size_t kHelpColumn = 28;

std::string HelpLine(const OptionRule& rule) {
    std::string line = "  ";
    line += rule.shortName != '\0' ? std::string{'-', rule.shortName, ','} : "   ";
    line += std::string(" --") + rule.longName;
    if (rule.valueName != nullptr) {
        line += std::string(" ") + rule.valueName;
    }
    line.append(kHelpColumn - line.size(), ' ');
    return line + rule.help + '\n';
}

}  // namespace

std::string ParseOptions(int argc, char** argv, Options& options) {
    for (int index = 1; index < argc; ++index) {
        std::string problem = ParseOption(argc, argv, index, options);
        if (!problem.empty()) {
            return problem;
        }
    }
    return "";
}

std::string HelpText() {
    std::string text =
        "Usage: qbreport [options]\n"
        "Writes a support report about this computer to standard output.\n\n";
    for (const OptionRule& rule : kRules) {
        text += HelpLine(rule);
    }
    text +=
        "\nExit status: 0 when the report was written, 1 when that or a section asked for by\n"
        "name or number failed, 2 when the command line is wrong.\n";
    return text;
}
