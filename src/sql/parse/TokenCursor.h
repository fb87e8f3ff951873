// The parser's position in the tokens, with the tests and errors that all rules share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sql/parse/Lexer.h"

namespace kpTables::sql::parse {

class TokenCursor {
public:
    explicit TokenCursor(std::string_view text, std::span<const NamedLiteral> named = {},
                         Dialect dialect = Dialect::Jet);

    Dialect TextDialect() const noexcept { return dialect_; }

    const Token& Peek(std::size_t ahead = 0) const;
    const Token& Take();

    bool At(std::string_view word, std::size_t ahead = 0) const;
    bool AtOperator(std::string_view sign, std::size_t ahead = 0) const;
    /// Whether a name can be read here: a word that is not reserved, or one in brackets.
    bool AtName(std::size_t ahead = 0) const;
    /// Whether a query begins here, perhaps after opening parentheses of its own.
    bool AtQuery(std::size_t ahead = 0) const;
    bool AtEnd() const { return Peek().kind == TokenKind::End; }

    bool Accept(std::string_view word);
    bool AcceptOperator(std::string_view sign);
    void Expect(std::string_view word);
    void ExpectOperator(std::string_view sign);
    /// Takes a name; what describes it in the error: "a table's name".
    std::string TakeName(const char* what);

    const LiteralValue& ValueOf(const Token& literal) const;
    /// -1 in a text inside another one, such as a domain function's argument: its literals have no number in the outer
    /// text.
    int OrdinalOf(const Token& literal) const { return isInner_ ? -1 : literal.ordinal; }

    /// Reads a text that the literal at that offset of another text contains; the expressions stand for @@_0, @@_1
    /// and so on in it.
    void MakeInner(const TokenCursor& outer, std::size_t offset, std::vector<ExpressionPtr> replacements);
    /// The expression that the variable stands for, or null.
    ExpressionPtr TakeReplacement(const Token& variable);
    /// Whether every one has been taken.
    bool AreReplaced() const;
    /// The literal's value is part of the statement's meaning.
    void FixLiteral(const Token& literal) {
        if (!isInner_) fixedLiterals_.push_back(literal.ordinal);
    }
    /// Takes a whole number that becomes part of the tree without a node of its own.
    int TakeNumber(const char* what, int least, int most);
    std::vector<int> TakeFixedLiterals() { return std::move(fixedLiterals_); }

    /// The table that SELECT ... INTO makes.
    struct NewTable {
        std::string name;
        std::size_t offset = 0;
    };
    /// The next SELECT may have an INTO.
    void AllowNewTable() { newTableAllowed_ = true; }
    bool TakeNewTableAllowed() { return std::exchange(newTableAllowed_, false); }
    void MakeTable(NewTable table) { newTable_ = std::move(table); }
    const std::optional<NewTable>& MadeTable() const { return newTable_; }

    /// Raises SqlError at the next token (or the given one): "expected <what>"; what is translated.
    [[noreturn]] void Fail(const char* what) const;
    [[noreturn]] void FailAt(const Token& token, std::string_view complaint) const;
    [[noreturn]] void FailUnsupported(const Token& token, std::string_view what) const;

    /// Counts an operator that follows another one in its chain; there is a limit, as each deepens the tree by a level.
    void CountChained();

    /// Counts nesting levels while it lives; a limit keeps any text from exhausting the stack.
    class Nesting {
    public:
        explicit Nesting(TokenCursor& cursor) : cursor_(cursor) {}
        ~Nesting() { cursor_.depth_ -= levels_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        void Deepen() {
            cursor_.Enter();
            ++levels_;
        }

    private:
        TokenCursor& cursor_;
        int levels_ = 0;
    };

private:
    [[noreturn]] void FailExpecting(std::string_view what) const;
    void FindQueries();
    void Enter();

    std::string_view text_;
    Dialect dialect_;
    TokenStream stream_;
    std::vector<std::uint8_t> startsQuery_;  ///< by token
    std::vector<int> fixedLiterals_;
    std::optional<NewTable> newTable_;
    bool newTableAllowed_ = false;
    bool isInner_ = false;
    std::size_t base_ = 0;  ///< the offset of the text in the other one
    std::vector<ExpressionPtr> replacements_;
    std::size_t at_ = 0;
    int depth_ = 0;
    int chained_ = 0;
};

}  // namespace kpTables::sql::parse
