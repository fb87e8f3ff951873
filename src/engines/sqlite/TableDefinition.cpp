#include "engines/sqlite/TableDefinition.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace kpTables::engines::sqlite {

namespace {

constexpr std::string_view kConstraints[] = {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"};

enum class Kind { End, Name, Text, Word, Sign };

struct Piece {
    Kind kind = Kind::End;
    std::string text;  ///< of a quoted name or text without its quotes
};

/// Splits SQLite's DDL into names, texts, words and signs.
class Pieces {
public:
    explicit Pieces(std::string_view text) noexcept : rest_(text) {}

    /// What follows the last piece.
    std::string_view Rest() const noexcept { return rest_; }

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

bool IsWord(const Piece& piece, std::string_view word) noexcept {
    const auto same = [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; };
    return piece.kind == Kind::Word && std::equal(piece.text.begin(), piece.text.end(), word.begin(), word.end(), same);
}

/// A part of a definition: its pieces, and the text from the first to the last.
struct Part {
    std::vector<Piece> pieces;
    std::string_view text;
};

/// The name in a definition's AS (name); nothing when there is another expression, or none.
std::optional<std::string> StoredName(const std::vector<Piece>& column) {
    constexpr std::size_t kPieces = 4;
    for (std::size_t as = 1; as + kPieces <= column.size(); ++as) {
        if (!IsWord(column[as], "AS") || !IsSign(column[as + 1], '(')) continue;
        const bool name = IsName(column[as + 2]) && IsSign(column[as + 3], ')');
        return name ? std::optional(column[as + 2].text) : std::nullopt;
    }
    return std::nullopt;
}

std::string_view Trimmed(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The parts between the outer parentheses, one for each comma there.
std::vector<Part> SplitDefinition(std::string_view createTable) {
    std::vector<Part> parts;
    Pieces pieces(createTable);
    int depth = 0;
    const char* begin = nullptr;  // of the last part
    const char* end = nullptr;    // of the last piece
    const auto finish = [&] {
        if (!parts.empty()) parts.back().text = Trimmed({begin, static_cast<std::size_t>(end - begin)});
    };
    for (Piece piece = pieces.Next(); piece.kind != Kind::End; piece = pieces.Next()) {
        if (IsSign(piece, ')') && --depth == 0) break;
        const bool begins = (depth == 0 && IsSign(piece, '(')) || (depth == 1 && IsSign(piece, ','));
        if (IsSign(piece, '(')) ++depth;
        if (begins) {
            finish();
            parts.emplace_back();
            begin = pieces.Rest().data();
        } else if (depth > 0) {
            parts.back().pieces.push_back(std::move(piece));
        }
        end = pieces.Rest().data();
    }
    finish();
    return parts;
}

/// Whether a part defines no column.
bool IsConstraint(const Piece& first) noexcept {
    return std::any_of(std::begin(kConstraints), std::end(kConstraints),
                       [&](std::string_view word) { return IsWord(first, word); });
}

}  // namespace

std::vector<std::pair<std::string, std::string>> SecondNames(std::string_view createTable) {
    std::vector<std::pair<std::string, std::string>> names;
    for (const Part& column : SplitDefinition(createTable)) {
        if (auto stored = StoredName(column.pieces)) names.emplace_back(column.pieces[0].text, std::move(*stored));
    }
    return names;
}

std::vector<TablePart> TableParts(std::string_view createTable) {
    std::vector<TablePart> parts;
    for (const Part& part : SplitDefinition(createTable)) {
        const bool column = !part.pieces.empty() && !IsConstraint(part.pieces[0]);
        parts.push_back({column ? part.pieces[0].text : std::string(), std::string(part.text)});
    }
    return parts;
}

}  // namespace kpTables::engines::sqlite
