#include "kpbook/commands/CommandSyntax.h"

#include "kpTables/text/Message.h"
#include "kpbook/Utf8.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

namespace {

/// CLI11 takes "[a,b]" as a list of two words, "-.5" as an option and "++" as the end of a command. A mark in front of
/// such a word prevents that; each option removes it.
constexpr char kMark = '\x01';
constexpr const char* kBook = "BOOK";

bool NeedsMark(std::string_view word) {
    return (word.starts_with('[') && word.ends_with(']')) || word.starts_with("-.") || word == "++" ||
           word.starts_with(kMark);
}

}  // namespace

const CLI::Validator kDate(
    [](std::string& text) {
        if (Date::ParseIso(text) || Date::Parse(text)) return std::string();
        return Message("'{1}' is no date", text);
    },
    "");

const CLI::Validator kUtf8(
    [](std::string& text) { return IsValidUtf8(text) ? std::string() : Message("not valid UTF-8"); }, "");

std::optional<Date> DateOf(const std::string& text) {
    if (text.empty()) return std::nullopt;
    const auto iso = Date::ParseIso(text);
    return iso ? iso : Date::Parse(text);
}

std::vector<std::string> MarkedWords(const std::vector<std::string>& words) {
    std::vector<std::string> marked;
    for (std::size_t i = words.size(); i-- > 1;) {
        std::string word = words[i];
        if (NeedsMark(word)) word.insert(word.begin(), kMark);
        marked.push_back(std::move(word));
    }
    return marked;
}

void UnmarkWords(CLI::App& app) {
    const CLI::Validator unmark(
        [](std::string& word) {
            if (word.starts_with(kMark)) word.erase(0, 1);
            return std::string();
        },
        "");
    for (CLI::Option* option : app.get_options()) {
        if (option->get_items_expected_max() > 0) option->transform(unmark);
    }
    for (CLI::App* command : app.get_subcommands({})) UnmarkWords(*command);
}

const CLI::App& AskedCommand(const CLI::App& app) {
    const auto asked = app.get_subcommands();
    return asked.empty() ? app : AskedCommand(*asked.front());
}

std::string BookOf(const CLI::App& command) {
    const auto* book = command.get_option_no_throw(kBook);
    return book && book->count() > 0 ? book->as<std::string>() : std::string();
}

CLI::Option* AddMonth(CLI::App& command, const std::string& option, std::int16_t& month, const std::string& what) {
    return command.add_option(option, month, what)->check(CLI::Range(1, kLastMonth))->type_name("M");
}

void AddBook(CLI::App& command, std::string& book) {
    command.add_option(kBook, book, "The book's file")->required()->type_name("");
}

CLI::App* AddCommand(CLI::App& app, const std::string& name, const std::string& what, const std::string& footer) {
    auto* command = app.add_subcommand(name, Translated(what.c_str()));
    command->fallthrough();
    command->footer(
        std::string(Translated(footer.c_str())) + "\n\n" +
        Message("Options of every command (-O, -o, --trace, --sql, --today, --answer, --timeout, ...): kpbook --help"));
    return command;
}

}  // namespace kpTables::kpbook::commands
