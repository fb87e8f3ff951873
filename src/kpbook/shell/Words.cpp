#include "kpbook/shell/Words.h"

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"

namespace kpTables::kpbook::shell {

namespace {

bool IsBlank(char character) { return character == ' ' || character == '\t' || character == '\r'; }

}  // namespace

std::vector<std::string> SplitWords(std::string_view line) {
    std::vector<std::string> words(1);
    bool begun = false;
    char quote = '\0';
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char character = line[i];
        if (quote != '\0') {
            const bool doubled = character == quote && i + 1 < line.size() && line[i + 1] == quote;
            if (character == quote && !doubled) {
                quote = '\0';
            } else {
                words.back() += character;
                i += doubled ? 1 : 0;
            }
        } else if (character == '"' || character == '\'') {
            quote = character;
            begun = true;
        } else if (!IsBlank(character)) {
            words.back() += character;
            begun = true;
        } else if (begun) {
            words.emplace_back();
            begun = false;
        }
    }
    if (quote != '\0') throw CommandError(Message("the quote in the line is not closed"));
    if (!begun && words.size() > 1) words.pop_back();
    return words;
}

}  // namespace kpTables::kpbook::shell
