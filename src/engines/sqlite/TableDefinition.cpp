#include "engines/sqlite/TableDefinition.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace kpTables::engines::sqlite {

namespace {

enum class Kind { End, Name, Text, Word, Sign };

struct Piece {
    Kind kind = Kind::End;
    std::string text;  ///< of a quoted name or text without its quotes
};

/// Splits SQLite's DDL into names, texts, words and signs.
class Pieces {
public:
    explicit Pieces(std::string_view text) noexcept : rest_(text) {}

    Piece Next() {
        while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_[0]))) rest_.remove_prefix(1);
        if (rest_.empty()) return {};
        switch (const char first = rest_[0]) {
            case '"':
            case '`':
                return {Kind::Name, TakeQuoted(first)};
            case '[':
                return {Kind::Name, TakeBracketed()};
            case '\'':
                return {Kind::Text, TakeQuoted(first)};
            default:
                return IsWordCharacter(first) ? Piece{Kind::Word, TakeWord()} : Piece{Kind::Sign, Take(1)};
        }
    }

private:
    static bool IsWordCharacter(char c) noexcept {
        const auto byte = static_cast<unsigned char>(c);
        return std::isalnum(byte) || byte == '_' || byte >= 0x80;
    }

    std::string Take(std::size_t size) {
        const std::string text(rest_.substr(0, size));
        rest_.remove_prefix(std::min(size, rest_.size()));
        return text;
    }

    std::string TakeWord() {
        const auto end = std::find_if_not(rest_.begin(), rest_.end(), IsWordCharacter);
        return Take(static_cast<std::size_t>(end - rest_.begin()));
    }

    std::string TakeBracketed() {
        std::string name = Take(std::min(rest_.find(']'), rest_.size()));
        Take(1);
        return name.substr(1);
    }

    /// A quote inside is doubled.
    std::string TakeQuoted(char quote) {
        std::string text;
        Take(1);
        while (!rest_.empty()) {
            const bool doubled = rest_.size() > 1 && rest_[1] == quote;
            if (rest_[0] == quote && !doubled) break;
            text += rest_[0];
            Take(rest_[0] == quote ? 2 : 1);
        }
        Take(1);
        return text;
    }

    std::string_view rest_;
};

bool IsSign(const Piece& piece, char sign) noexcept { return piece.kind == Kind::Sign && piece.text[0] == sign; }
bool IsName(const Piece& piece) noexcept { return piece.kind == Kind::Name || piece.kind == Kind::Word; }

bool IsAs(const Piece& piece) noexcept {
    const auto same = [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; };
    constexpr std::string_view kAs = "AS";
    return piece.kind == Kind::Word && std::equal(piece.text.begin(), piece.text.end(), kAs.begin(), kAs.end(), same);
}

/// The name in a definition's AS (name); nothing when there is another expression, or none.
std::optional<std::string> StoredName(const std::vector<Piece>& column) {
    constexpr std::size_t kPieces = 4;
    for (std::size_t as = 1; as + kPieces <= column.size(); ++as) {
        if (!IsAs(column[as]) || !IsSign(column[as + 1], '(')) continue;
        const bool name = IsName(column[as + 2]) && IsSign(column[as + 3], ')');
        return name ? std::optional(column[as + 2].text) : std::nullopt;
    }
    return std::nullopt;
}

/// The definitions between the outer parentheses, one for each comma there.
std::vector<std::vector<Piece>> Definitions(std::string_view createTable) {
    std::vector<std::vector<Piece>> definitions;
    Pieces pieces(createTable);
    int depth = 0;
    for (Piece piece = pieces.Next(); piece.kind != Kind::End; piece = pieces.Next()) {
        if (IsSign(piece, ')') && --depth == 0) break;
        const bool begins = (depth == 0 && IsSign(piece, '(')) || (depth == 1 && IsSign(piece, ','));
        if (IsSign(piece, '(')) ++depth;
        if (begins) {
            definitions.emplace_back();
        } else if (depth > 0) {
            definitions.back().push_back(std::move(piece));
        }
    }
    return definitions;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> SecondNames(std::string_view createTable) {
    std::vector<std::pair<std::string, std::string>> names;
    for (const auto& column : Definitions(createTable)) {
        if (auto stored = StoredName(column)) names.emplace_back(column[0].text, std::move(*stored));
    }
    return names;
}

}  // namespace kpTables::engines::sqlite
