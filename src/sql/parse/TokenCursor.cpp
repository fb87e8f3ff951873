#include "sql/parse/TokenCursor.h"

#include <algorithm>
#include <charconv>

#include "kpTables/text/Message.h"
#include "sql/Position.h"
#include "sql/parse/Keywords.h"

namespace kpTables::sql::parse {

namespace {

constexpr int kDeepest = 200;
constexpr int kMostChained = 20000;

/// Whether the token can follow a query in parentheses that is itself a member of a query.
bool FollowsQuery(const Token& token) {
    if (token.kind == TokenKind::Word)
        return SameWord(token.text, "UNION") || SameWord(token.text, "ORDER") || SameWord(token.text, "INTERSECT") ||
               SameWord(token.text, "EXCEPT");
    if (token.kind == TokenKind::Operator) return token.text == ")" || token.text == ";";
    return token.kind == TokenKind::End;
}

}  // namespace

TokenCursor::TokenCursor(std::string_view text, std::span<const NamedLiteral> named, Dialect dialect)
    : text_(text), dialect_(dialect), stream_(Tokenize(text, named, dialect)) {
    FindQueries();
}

/// "((SELECT" may open a query in parentheses or a value and a table that begin with one: what follows the closing
/// parenthesis decides, so the tokens are examined from last to first.
void TokenCursor::FindQueries() {
    const std::vector<Token>& tokens = stream_.tokens;
    startsQuery_.assign(tokens.size(), 0);
    std::vector<std::size_t> closing;
    for (std::size_t i = tokens.size(); i-- > 0;) {
        const Token& token = tokens[i];
        if (token.kind == TokenKind::Word) {
            startsQuery_[i] = SameWord(token.text, "SELECT");
        } else if (token.kind == TokenKind::Operator && token.text == ")") {
            closing.push_back(i);
        } else if (token.kind == TokenKind::Operator && token.text == "(" && !closing.empty()) {
            startsQuery_[i] = startsQuery_[i + 1] && FollowsQuery(tokens[closing.back() + 1]);
            closing.pop_back();
        }
    }
}

const Token& TokenCursor::Peek(std::size_t ahead) const {
    const std::size_t last = stream_.tokens.size() - 1;
    return stream_.tokens[at_ + ahead < last ? at_ + ahead : last];
}

const Token& TokenCursor::Take() {
    const Token& token = Peek();
    if (token.kind != TokenKind::End) ++at_;
    return token;
}

bool TokenCursor::At(std::string_view word, std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Word && SameWord(token.text, word);
}

bool TokenCursor::AtOperator(std::string_view sign, std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Operator && token.text == sign;
}

bool TokenCursor::AtName(std::size_t ahead) const {
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::QuotedName || (token.kind == TokenKind::Word && !IsReserved(token.text));
}

bool TokenCursor::AtQuery(std::size_t ahead) const {
    return at_ + ahead < startsQuery_.size() && startsQuery_[at_ + ahead] != 0;
}

bool TokenCursor::Accept(std::string_view word) {
    if (!At(word)) return false;
    Take();
    return true;
}

bool TokenCursor::AcceptOperator(std::string_view sign) {
    if (!AtOperator(sign)) return false;
    Take();
    return true;
}

void TokenCursor::Expect(std::string_view word) {
    if (!Accept(word)) FailExpecting(word);
}

void TokenCursor::ExpectOperator(std::string_view sign) {
    if (!AcceptOperator(sign)) FailExpecting("'" + std::string(sign) + "'");
}

std::string TokenCursor::TakeName(const char* what) {
    if (!AtName()) Fail(what);
    return std::string(Take().text);
}

void TokenCursor::MakeInner(const TokenCursor& outer, std::size_t offset, std::vector<ExpressionPtr> replacements) {
    isInner_ = true;
    depth_ = outer.depth_;
    base_ = offset;
    for (Token& token : stream_.tokens) token.offset += offset;
    replacements_ = std::move(replacements);
}

ExpressionPtr TokenCursor::TakeReplacement(const Token& variable) {
    for (std::size_t i = 0; i < replacements_.size(); ++i)
        if (variable.text == "@@_" + std::to_string(i)) return std::move(replacements_[i]);
    return nullptr;
}

bool TokenCursor::AreReplaced() const {
    return std::all_of(replacements_.begin(), replacements_.end(), [](const ExpressionPtr& each) { return !each; });
}

const LiteralValue& TokenCursor::ValueOf(const Token& literal) const {
    return stream_.literals[static_cast<std::size_t>(literal.ordinal)];
}

int TokenCursor::TakeNumber(const char* what, int least, int most) {
    const Token& token = Peek();
    if (token.kind != TokenKind::Literal || token.literal != LiteralKind::Integer) Fail(what);
    int number = -1;
    const std::string& digits = ValueOf(token).text;
    const char* end = digits.data() + digits.size();
    if (std::from_chars(digits.data(), end, number).ec != std::errc() || number < least || number > most) Fail(what);
    FixLiteral(token);
    Take();
    return number;
}

void TokenCursor::Fail(const char* what) const { FailExpecting(Translated(what)); }

void TokenCursor::FailExpecting(std::string_view what) const { FailAt(Peek(), Message("expected {1}", what)); }

void TokenCursor::FailAt(const Token& token, std::string_view complaint) const {
    // The message quotes a name with its brackets.
    const bool quoted = token.kind == TokenKind::QuotedName;
    const std::size_t offset = token.offset - base_;
    const std::string_view spelling = quoted ? text_.substr(offset, token.text.size() + 2) : token.text;
    throw SyntaxError(text_, offset, spelling, complaint);
}

void TokenCursor::FailUnsupported(const Token& token, std::string_view what) const {
    throw SqlError(ErrorKind::Unsupported,
                   Message("{1} is not supported ({2})", what, PlaceText(Locate(text_, token.offset - base_))),
                   token.offset, true);
}

void TokenCursor::CountChained() {
    if (++chained_ > kMostChained) FailAt(Peek(), Message("the statement has too many operators"));
}

void TokenCursor::Enter() {
    if (depth_ >= kDeepest) FailAt(Peek(), Message("the statement is nested too deeply"));
    ++depth_;
}

}  // namespace kpTables::sql::parse
