#include "sql/Position.h"

#include "kpTables/text/Message.h"

namespace kpTables::sql {

namespace {

constexpr std::size_t kLongestToken = 40;

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::string Shortened(std::string_view token) {
    if (token.size() <= kLongestToken) return std::string(token);
    std::size_t end = kLongestToken;
    while (end > 0 && IsContinuation(token[end])) --end;
    return std::string(token.substr(0, end)) + "...";
}

}  // namespace

Position Locate(std::string_view text, std::size_t offset) {
    Position at;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++at.line;
            at.column = 1;
        } else if (!IsContinuation(text[i])) {
            ++at.column;
        }
    }
    return at;
}

std::string PlaceText(Position at) { return Message("line {1}, column {2}", at.line, at.column); }

SqlError SyntaxError(std::string_view text, std::size_t offset, std::string_view token, std::string_view complaint) {
    const std::string place = PlaceText(Locate(text, offset));
    const std::string message =
        !token.empty()          ? Message("Syntax error at {1} near \"{2}\": {3}", place, Shortened(token), complaint)
        : offset >= text.size() ? Message("Syntax error at {1} at the end: {2}", place, complaint)
                                : Message("Syntax error at {1}: {2}", place, complaint);
    return SqlError(ErrorKind::Syntax, message, offset, true);
}

}  // namespace kpTables::sql
