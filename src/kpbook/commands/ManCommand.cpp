#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Suggestion.h"
#include "kpbook/commands/CommandTree.h"
#include "kpbook/commands/CompletionCommand.h"
#include "kpbook/output/Output.h"
#include "text/Path.h"

namespace kpTables::kpbook::commands {

namespace {

/// A text as roff shows it unchanged.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '\\') {
            escaped += "\\e";
        } else if (character == '-') {
            escaped += "\\-";
        } else if (character == '\'') {
            escaped += "\\(aq";
        } else {
            escaped += character;
        }
    }
    // A line that begins with a point would be a request.
    return escaped.starts_with('.') ? "\\&" + escaped : escaped;
}

std::string Lines(const std::string& text) {
    std::string roff;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        roff += (line.empty() ? "" : line.starts_with(' ') ? "\\&" + Escaped(line) : Escaped(line)) + "\n";
    }
    while (roff.ends_with("\n\n")) roff.pop_back();
    return roff;
}

/// "kpbook-bill-add"
std::string PageName(const CommandPage& page) {
    std::string name = page.name.empty() ? "kpbook" : "kpbook-" + page.name;
    std::ranges::replace(name, ' ', '-');
    return name;
}

std::string OptionText(const OptionEntry& option) {
    std::string text = ".TP\n";
    for (std::size_t i = 0; i < option.names.size(); ++i) {
        text += (i > 0 ? ", " : "") + ("\\fB" + Escaped(option.names[i]) + "\\fR");
    }
    if (!option.positional.empty()) text += "\\fI" + Escaped(option.positional) + "\\fR";
    if (!option.value.empty()) text += " \\fI" + Escaped(option.value) + "\\fR";
    return text + "\n" + Lines(option.what + (option.required ? Message(" (required)") : ""));
}

std::string Synopsis(const CommandPage& page) {
    std::string text = ".B kpbook\n";
    if (page.name.empty()) return text + ".I COMMAND\n[\\fI" + Message("OPTIONS") + "\\fR]\n";
    text += ".B " + Escaped(page.name) + "\n";
    if (!page.children.empty()) text += "\\fICOMMAND\\fR\n";
    for (const auto& word : page.words) {
        const std::string name = "\\fI" + Escaped(word.positional) + "\\fR" + (word.repeated ? "..." : "");
        text += (word.required ? name : "[" + name + "]") + "\n";
    }
    return text + "[\\fI" + Message("OPTIONS") + "\\fR]\n";
}

std::string PageText(const CommandPage& page, const std::vector<CommandPage>& pages) {
    std::string text = ".TH " + Escaped(PageName(page)) + " 1 \"\" \"kpbook " KPBOOK_VERSION "\" \"kpbook\"\n";
    text += ".SH " + Message("NAME") + "\n" + Escaped(PageName(page)) + " \\- " + Escaped(page.what) + "\n";
    text += ".SH " + Message("SYNOPSIS") + "\n" + Synopsis(page);
    if (!page.description.empty())
        text += ".SH " + Message("DESCRIPTION") + "\n.nf\n" + Lines(page.description) + ".fi\n";
    if (page.name.empty()) {
        text += ".SH " + Message("COMMANDS") + "\n";
        for (const auto& each : pages) {
            if (!each.name.empty()) text += ".TP\n\\fB" + Escaped(each.name) + "\\fR\n" + Lines(each.what);
        }
    }
    text += ".SH " + Message("OPTIONS") + "\n";
    for (const auto& word : page.words) text += OptionText(word);
    for (const auto& option : page.options) text += OptionText(option);
    if (!page.examples.empty()) {
        text += ".SH " + Message("EXAMPLES") + "\n.nf\n";
        for (const auto& example : page.examples) text += Lines(example);
        text += ".fi\n";
    }
    text += ".SH " + Message("EXIT STATUS") + "\n" + Message("0 for success, 1 for a failed call, 2 for wrong usage.") +
            "\n.SH " + Message("SEE ALSO") + "\n";
    std::string others;
    for (const auto& each : pages) {
        if (each.name == page.name || (!page.name.empty() && !each.name.empty())) continue;
        others += ".BR " + Escaped(PageName(each)) + " (1)\n";
    }
    return text + others;
}

void WriteText(const std::string& text, const std::string& path) {
    output::Output output(path);
    output.Write(text);
    output.Close();
}

}  // namespace

void AddMan(CLI::App& app, ManOptions& options) {
    auto* command = AddCommand(app, "man", "Write the manual page of a command, or all pages into a folder",
                               "The pages are installed under share/man; man kpbook-sql shows that of sql.\n\n"
                               "Examples:\n"
                               "  kpbook man > kpbook.1\n"
                               "  kpbook man sql > kpbook-sql.1\n"
                               "  kpbook man --folder pages");
    command->add_option("COMMAND", options.command, "The command; default: kpbook itself")->check(kUtf8)->type_name("");
    command->add_option("--folder", options.folder, "Write every page into this folder")->type_name("DIR");
}

int Man(const CLI::App& tree, const ManOptions& options, const GlobalOptions& global) {
    const auto pages = ReadCommandTree(tree);
    if (!options.folder.empty()) {
        std::error_code failure;
        std::filesystem::create_directories(text::PathOf(options.folder), failure);
        if (failure) throw CommandError(Message("{1}: cannot be made: {2}", options.folder, SystemMessage(failure)));
        for (const auto& page : pages) {
            WriteText(PageText(page, pages),
                      (text::PathOf(options.folder) / text::PathOf(PageName(page) + ".1")).string());
        }
        return kSucceeded;
    }
    std::vector<std::string_view> names;
    for (const auto& page : pages) {
        if (page.name == options.command) {
            WriteText(PageText(page, pages), global.outputPath);
            return kSucceeded;
        }
        names.push_back(page.name);
    }
    throw CommandError(Message("there is no command {1}{2}", options.command, DidYouMean(options.command, names)));
}

}  // namespace kpTables::kpbook::commands
