#include "kpbook/commands/HelpLanguage.h"

#include <optional>
#include <string_view>
#include <vector>

#include "kpTables/text/Message.h"

namespace kpTables::kpbook::commands {

namespace {

/// The library's sentences; of several that match, the first is meant.
constexpr const char* kSentences[] = {
    Translatable("A subcommand is required"),
    Translatable("{1} is required"),
    Translatable("{1}: Value {2} not in range {3} to {4}"),
    Translatable("{1}: Number less or equal to 0: ({2})"),
    Translatable("{1}: {2} not in {{3}}"),
    Translatable("{1}: {2} required {3} missing"),
    Translatable("{1}: too many inputs for a flag"),
    Translatable("{1}: Should be true/false or a number"),
    Translatable("{1} requires {2}"),
    Translatable("{1} excludes {2}"),
    Translatable("The following argument was not expected: {1}"),
    Translatable("The following arguments were not expected: {1}"),
    Translatable("Could not convert: {1} = {2}"),
    Translatable("Expected exactly {1} arguments to {2}, got {3}"),
    Translatable("Expected at least {1} arguments to {2}, got {3}"),
    Translatable("{1}: At least {2} required but received {3}"),
    Translatable("{1}: At Most {2} required but received {3}"),
    Translatable("{1} was given a disallowed flag override"),
};

/// Descriptions that the library gives its own options.
[[maybe_unused]] constexpr const char* kOwnOptions[] = {
    Translatable("Print this help message and exit"),
    Translatable("Display program version information and exit"),
};

/// The place of the next gap, "{1}"; none: the end.
std::size_t NextGap(std::string_view sentence, std::size_t from) {
    for (std::size_t at = from; at + 2 < sentence.size(); ++at) {
        if (sentence[at] == '{' && sentence[at + 1] >= '1' && sentence[at + 1] <= '9' && sentence[at + 2] == '}') {
            return at;
        }
    }
    return sentence.size();
}

/// What stands in the gaps of a sentence, which has them in their order, if the text is that sentence.
std::optional<std::vector<std::string_view>> ReadGaps(std::string_view sentence, std::string_view text) {
    std::vector<std::string_view> found;
    std::size_t gap = NextGap(sentence, 0);
    if (!text.starts_with(sentence.substr(0, gap))) return std::nullopt;
    text.remove_prefix(gap);
    while (gap < sentence.size()) {
        const std::size_t begin = gap + 3;
        gap = NextGap(sentence, begin);
        const std::string_view after = sentence.substr(begin, gap - begin);
        const bool isLast = gap == sentence.size();
        if (isLast && !text.ends_with(after)) return std::nullopt;
        const std::size_t end = isLast ? text.size() - after.size() : text.find(after);
        if (end == text.npos) return std::nullopt;
        found.push_back(text.substr(0, end));
        text.remove_prefix(end + after.size());
    }
    return found;
}

}  // namespace

void TranslateHelp(CLI::App& app) {
    for (const char* label :
         {Translatable("Usage"), Translatable("OPTIONS"), Translatable("SUBCOMMAND"), Translatable("Positionals"),
          Translatable("REQUIRED"), Translatable("Needs"), Translatable("Excludes")}) {
        app.get_formatter()->label(label, Translated(label));
    }
    for (CLI::Option* option : app.get_options()) {
        option->description(Translated(option->get_description().c_str()));
        if (option->get_group() == "Options") option->group(Translated("Options"));
    }
    for (CLI::App* command : app.get_subcommands({})) {
        command->group(Translated("Subcommands"));
        TranslateHelp(*command);
    }
}

std::string TranslatedError(const std::string& text) {
    for (const char* sentence : kSentences) {
        const char* const translated = Translated(sentence);
        if (translated == sentence) continue;
        if (const auto found = ReadGaps(sentence, text)) {
            const std::vector<GapValue> values(found->begin(), found->end());
            return FillGaps(translated, values);
        }
    }
    return text;
}

}  // namespace kpTables::kpbook::commands
