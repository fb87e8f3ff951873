// Splits the text into its smallest pieces, for both Tokenize and Shape, so that they cannot disagree.
#pragma once

#include <cstddef>
#include <list>
#include <span>
#include <string>
#include <string_view>

#include "sql/Dialect.h"
#include "sql/parse/Lexer.h"

namespace kpTables::sql::parse {

struct Lexeme {
    TokenKind kind = TokenKind::End;
    LiteralKind literal = LiteralKind::Null;  ///< of a Literal
    std::size_t begin = 0;
    std::size_t end = 0;
    bool blankBefore = false;
    const LiteralValue* given = nullptr;  ///< what a name stands for; Null, True and False are Words
};

/// Whether the text is one name whose characters need no brackets.
bool IsBareName(std::string_view text);

class Scanner {
public:
    /// named: the values of the names in the text, which must live as long as this.
    explicit Scanner(std::string_view text, std::span<const NamedLiteral> named = {}, Dialect dialect = Dialect::Jet)
        : text_(text), named_(named), dialect_(dialect) {}

    /// Names without a value are Variables, not errors.
    void AllowAnyName() { anyName_ = true; }

    /// The next piece; End after the last. Raises SqlError for what cannot be read.
    Lexeme Next();

    /// The piece as written in the text; for a name that stands for Null, True or False, that word.
    std::string_view TextOf(const Lexeme& piece) const;
    /// A literal's value: without its quotes or signs, doubled quotes undoubled.
    std::string ValueOf(const Lexeme& piece) const;

private:
    /// Blanks and comments; false when there is none.
    bool SkipBlanks();
    bool SkipComment();
    void ScanDeclarations();
    void ReplaceDeclared(Lexeme& piece) const;
    bool NameBeginsAt(std::size_t at) const;
    std::size_t NameCharacter(std::size_t at) const;
    std::size_t EndOfName(std::size_t at) const;
    void ScanName(Lexeme& piece);
    void ScanQuotedName(Lexeme& piece);
    void ScanVariable(Lexeme& piece);
    void ScanParameter(Lexeme& piece);
    void TakeGiven(Lexeme& piece) const;
    void ScanNumber(Lexeme& piece);
    void ScanText(Lexeme& piece);
    void ScanDate(Lexeme& piece);
    void ScanOperator(Lexeme& piece);
    bool DigitAt(std::size_t at) const { return at < text_.size() && text_[at] >= '0' && text_[at] <= '9'; }
    [[noreturn]] void Fail(std::size_t at, std::size_t length, const char* complaint) const;

    std::string_view text_;
    std::span<const NamedLiteral> named_;
    Dialect dialect_;
    std::size_t at_ = 0;
    bool anyName_ = false;
    /// The parameters that "PARAMETERS name type, ...;" declares, with their values.
    std::list<NamedLiteral> declared_;
    bool afterName_ = false;  ///< the last piece was a name that ends here: a point qualifies it and starts no number
};

}  // namespace kpTables::sql::parse
