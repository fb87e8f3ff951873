#include "engines/odbc/NamedMarkers.h"

#include <algorithm>
#include <cstddef>

#include "sql/Names.h"

namespace kpTables::engines::odbc {

namespace {

/// The byte behind what begins at a byte and is to stay: a text, a name in quotes or brackets, or a comment.
std::size_t EndOfUntouched(std::string_view text, std::size_t at) {
    const auto behind = [&](std::string_view end, std::size_t from) {
        const auto found = text.find(end, from);
        return found == text.npos ? text.size() : found + end.size();
    };
    switch (text[at]) {
        case '\'':
        case '"':
        case '`':
            return behind(text.substr(at, 1), at + 1);
        case '[':
            return behind("]", at + 1);
        case '-':
            return text.substr(at, 2) == "--" ? behind("\n", at) : at + 1;
        case '/':
            return text.substr(at, 2) == "/*" ? behind("*/", at) : at + 1;
        default:
            return at + 1;
    }
}

bool IsOfName(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           static_cast<unsigned char>(c) > 0x7F;
}

}  // namespace

std::string WithMarkers(std::string_view text, const NamedValues& values, Parameters& parameters) {
    std::string marked;
    for (std::size_t at = 0; at < text.size();) {
        const bool sign = text[at] == '@' || text[at] == ':';
        const bool alone = at == 0 || text[at - 1] != text[at];
        if (sign && alone) {
            std::size_t end = at + 1;
            while (end < text.size() && IsOfName(text[end])) ++end;
            const std::string_view name = text.substr(at + 1, end - at - 1);
            const auto found =
                std::ranges::find_if(values, [&](const NamedValue& value) { return sql::SameName(value.name, name); });
            if (!name.empty() && found != values.end()) {
                parameters.Add(found->value);
                marked += '?';
            } else {
                marked += text.substr(at, end - at);
            }
            at = end;
            continue;
        }
        const std::size_t end = EndOfUntouched(text, at);
        marked += text.substr(at, end - at);
        at = end;
    }
    return marked;
}

}  // namespace kpTables::engines::odbc
