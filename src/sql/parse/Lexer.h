// Splits text into tokens, for the union of both dialects.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sql/Dialect.h"
#include "sql/Tree.h"

namespace kpTables::sql::parse {

enum class TokenKind { Word, QuotedName, Literal, Operator, Variable, End };

struct Token {
    TokenKind kind;
    std::string_view text;  ///< as written in the statement (a quoted name without its brackets)
    std::size_t offset;
    LiteralKind literal = LiteralKind::Null;  ///< of a Literal: Integer, Decimal, Text or Date
    int ordinal = -1;                         ///< of a Literal: its number among the statement's literals
};

/// A statement's tokens (the last one is End), with its literals' values by ordinal.
struct TokenStream {
    std::vector<Token> tokens;
    std::vector<LiteralValue> literals;
};

/// Raises SqlError for a character, a quote or a date that cannot be read, and for a name without a value.
TokenStream Tokenize(std::string_view text, std::span<const NamedLiteral> named = {}, Dialect dialect = Dialect::Jet);

}  // namespace kpTables::sql::parse
