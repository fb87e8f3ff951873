#include "sql/Position.h"

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

SqlError SyntaxError(std::string_view text, std::size_t offset, std::string_view token, std::string_view complaint) {
    const Position at = Locate(text, offset);
    std::string message = "Syntax error at line " + std::to_string(at.line) + ", column " + std::to_string(at.column);
    if (!token.empty())
        message += " near \"" + Shortened(token) + '"';
    else if (offset >= text.size())
        message += " at the end";
    message += ": ";
    message += complaint;
    return SqlError(ErrorKind::Syntax, message, offset, true);
}

}  // namespace kpTables::sql
