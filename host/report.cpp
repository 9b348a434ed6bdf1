#include "report.h"

namespace {

std::vector<const Section*> ChosenSections(const Options& options) {
    if (!options.sections.empty()) {
        return options.sections;
    }
    std::vector<const Section*> sections;
    for (const Section& section : AllSections()) {
        if (IsInWholeReport(section)) {
            sections.push_back(&section);
        }
    }
    return sections;
}

// The variables tell about the computer and hold nothing that a user might not want to send.
std::vector<std::string> Variables(const Options& options) {
    return options.variables.empty()
               ? std::vector<std::string>{"OS", "PROCESSOR_ARCHITECTURE", "NUMBER_OF_PROCESSORS"}
               : options.variables;
}

std::vector<std::string> Modules(const Options& options) {
    return options.modules.empty()
               ? std::vector<std::string>{"kernel32.dll", "user32.dll", "QBSUPPORT.dll"}
               : options.modules;
}

// A section with several arguments is called once for each.
std::vector<std::string> Arguments(const Options& options, ArgumentSource source) {
    switch (source) {
        case ArgumentSource::kAppDirectory:
            return {options.appDirectory};
        case ArgumentSource::kUserKey:
            return {options.userKey};
        case ArgumentSource::kAppKey:
            return {options.appKey};
        case ArgumentSource::kVariables:
            return Variables(options);
        case ArgumentSource::kProcess:
            return {options.process};
        case ArgumentSource::kModules:
            return Modules(options);
        case ArgumentSource::kNone:
            break;
    }
    return {""};
}

// The separator is left out where the next line belongs directly below.
unsigned int FlagsFor(const std::vector<Call>& calls, std::size_t index, unsigned int flags) {
    const bool continued =
        index + 1 < calls.size() && IsContinuedBy(*calls[index].section, *calls[index + 1].section);
    return continued ? flags & ~static_cast<unsigned int>(QbSupportFlagSeparator) : flags;
}

// The library sets no single line apart, since it cannot know which one is the last of its group;
// the next heading would stick to it.
bool NeedsEmptyLine(const Section* before, const Section& section, unsigned int flags) {
    return (flags & QbSupportFlagSeparator) != 0 && before != nullptr && !HasSeparator(*before) &&
           !IsContinuedBy(*before, section);
}

}  // namespace

std::vector<Call> PlanCalls(const Options& options) {
    std::vector<Call> calls;
    for (const Section* const section : ChosenSections(options)) {
        for (const std::string& argument : Arguments(options, section->argument)) {
            calls.push_back({section, argument});
        }
    }
    return calls;
}

Report ComposeReport(const qbsupport::Library& library, const std::vector<Call>& calls,
                     unsigned int flags, Progress& progress) {
    Report report;
    const Section* before = nullptr;
    for (std::size_t index = 0; index < calls.size(); ++index) {
        const Call& call = calls[index];
        progress.Show(index + 1, calls.size(), call.section->name);
        const qbsupport::Buffer text = library.SectionBuffer(
            call.section->kind, FlagsFor(calls, index, flags), call.argument.c_str());
        if (text == nullptr) {
            report.failures.push_back(call);
            continue;
        }
        if (NeedsEmptyLine(before, *call.section, flags)) {
            report.text += "\r\n";
        }
        report.text += text.get();
        before = call.section;
    }
    return report;
}
