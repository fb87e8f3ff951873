#include "kpbook/commands/CommandTree.h"

#include <sstream>

#include "kpTables/LateBound.h"
#include "kpTables/text/Message.h"
#include "kpbook/commands/Reports.h"

namespace kpTables::kpbook::commands {

namespace {

/// The words of "FORMAT:{table,csv}"; none where the values are not listed.
std::vector<std::string> ChoicesIn(const std::string& type) {
    std::vector<std::string> choices;
    const auto begin = type.find('{');
    const auto end = type.find('}', begin);
    if (begin == type.npos || end == type.npos) return choices;
    std::istringstream list(type.substr(begin + 1, end - begin - 1));
    for (std::string choice; std::getline(list, choice, ',');) choices.push_back(choice);
    return choices;
}

std::vector<std::string> MethodNames() {
    std::vector<std::string> names;
    for (const auto& member : _CTables::Members()) {
        if (names.empty() || names.back() != member.name) names.emplace_back(member.name);
    }
    return names;
}

std::vector<std::string> NamesOfReports() {
    std::vector<std::string> names;
    for (const ReportKind& kind : ReportKinds()) names.emplace_back(kind.name);
    return names;
}

/// Words whose choices the command line does not check itself.
std::vector<std::string> KnownWords(const std::string& command, const std::string& word) {
    if ((command == "call" && word == "METHOD") || (command == "methods" && word == "NAME")) return MethodNames();
    if (command == "report" && word == "NAME") return NamesOfReports();
    return {};
}

OptionEntry EntryOf(const CLI::Option& option, const std::string& command) {
    OptionEntry entry;
    for (const auto& name : option.get_snames()) entry.names.push_back("-" + name);
    for (const auto& name : option.get_lnames()) entry.names.push_back("--" + name);
    entry.what = option.get_description();
    const std::string type = option.get_type_name();
    if (option.get_positional()) {
        entry.positional = option.get_name(true);
    } else if (option.get_type_size() != 0) {
        entry.value = type.substr(0, type.find(':'));
    }
    entry.choices = ChoicesIn(type);
    if (entry.choices.empty()) entry.choices = KnownWords(command, entry.positional);
    entry.required = option.get_required();
    entry.repeated = option.get_expected_max() > 1;
    return entry;
}

/// Takes the lines below "Examples:" out of a help text.
std::vector<std::string> TakeExamples(std::string& text) {
    const std::string_view examplesHeading = Translated("Examples:");
    std::vector<std::string> examples;
    std::istringstream lines(text);
    std::string rest;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == examplesHeading) {
            inside = true;
        } else if (inside && line.starts_with("  ")) {
            examples.push_back(line.substr(2));
        } else {
            inside = false;
            if (!line.empty() || !rest.ends_with("\n\n")) rest += line + "\n";
        }
    }
    text = std::move(rest);
    return examples;
}

CommandPage PageOf(const CLI::App& app, const std::string& name) {
    CommandPage page;
    page.name = name;
    page.what = app.get_description();
    page.description = app.get_footer();
    page.examples = TakeExamples(page.description);
    for (const CLI::Option* option : app.get_options()) {
        auto entry = EntryOf(*option, name);
        (entry.names.empty() ? page.words : page.options).push_back(std::move(entry));
    }
    return page;
}

void AddPages(const CLI::App& app, const std::string& name, std::vector<CommandPage>& pages) {
    const std::size_t own = pages.size();
    pages.push_back(PageOf(app, name));
    for (const CLI::App* command : app.get_subcommands({})) {
        pages[own].children.push_back(command->get_name());
        AddPages(*command, (name.empty() ? "" : name + " ") + command->get_name(), pages);
    }
}

}  // namespace

std::vector<CommandPage> ReadCommandTree(const CLI::App& app) {
    std::vector<CommandPage> pages;
    AddPages(app, "", pages);
    return pages;
}

}  // namespace kpTables::kpbook::commands
