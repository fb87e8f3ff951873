// The expressions of a statement's tree.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/Type.h"

namespace kpTables::sql {

struct Query;

enum class ExpressionKind {
    Literal,
    Column,
    Star,
    Variable,
    Unary,
    Binary,
    Like,
    Between,
    InList,
    InQuery,
    Quantified,
    IsNull,
    Exists,
    Subquery,
    Call,
    Window,
    Cast,
    Case,
};

struct Expression {
    virtual ~Expression() = default;
    const ExpressionKind kind;
    std::size_t offset;  ///< byte position in the text; 0 for a node made by a rewrite

protected:
    Expression(ExpressionKind k, std::size_t at) : kind(k), offset(at) {}
};
using ExpressionPtr = std::unique_ptr<Expression>;

/// The node as its own class; the caller has checked kind.
template <class Node>
const Node& As(const Expression& e) {
    return static_cast<const Node&>(e);
}
template <class Node>
Node& As(Expression& e) {
    return static_cast<Node&>(e);
}
/// The node as its own class, or nullptr when it is another.
template <class Node>
const Node* If(const Expression* e) {
    return e && e->kind == Node::kKind ? static_cast<const Node*>(e) : nullptr;
}
template <class Node>
Node* If(Expression* e) {
    return e && e->kind == Node::kKind ? static_cast<Node*>(e) : nullptr;
}

enum class LiteralKind { Null, Boolean, Integer, Decimal, Text, Date };

/// The value of one literal of a statement's text, as Literal::text holds it.
struct LiteralValue {
    LiteralKind kind;
    std::string text;
    std::size_t offset = 0;  ///< of the literal in the statement's text
};

/// The value that a name in the statement's text stands for: @name or :name, without regard to case.
struct NamedLiteral {
    std::string name;  ///< without the sign
    LiteralValue value;
};
using NamedLiterals = std::vector<NamedLiteral>;

/// A constant. text is its value, not its spelling: 12.5, it's (quotes undoubled), True; of a date the text between the
/// # signs, which the engine reads.
struct Literal : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Literal;
    LiteralKind literal;
    std::string text;
    int ordinal;  ///< which literal of the statement's text, from 0; -1 for one made by a rewrite
    Literal(LiteralKind k, std::string value, int n, std::size_t at = 0)
        : Expression(kKind, at), literal(k), text(std::move(value)), ordinal(n) {}
};

/// A column's name, qualified by a table or alias if there is one.
struct Column : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Column;
    std::string table;
    std::string name;
    Column(std::string t, std::string n, std::size_t at = 0)
        : Expression(kKind, at), table(std::move(t)), name(std::move(n)) {}
};

/// "*" or "Lst.*"; also the argument of Count(*).
struct Star : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Star;
    std::string table;
    explicit Star(std::string t, std::size_t at = 0) : Expression(kKind, at), table(std::move(t)) {}
};

/// "@@IDENTITY"; name without the two signs.
struct Variable : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Variable;
    std::string name;
    explicit Variable(std::string n, std::size_t at = 0) : Expression(kKind, at), name(std::move(n)) {}
};

enum class UnaryOperator { Minus, Plus, Not };

struct Unary : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Unary;
    UnaryOperator op;
    ExpressionPtr operand;
    Unary(UnaryOperator o, ExpressionPtr e, std::size_t at = 0) : Expression(kKind, at), op(o), operand(std::move(e)) {}
};

enum class BinaryOperator {
    Power,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Add,
    Subtract,
    Concatenate,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
};

/// "a And b And c" nests to the left, perhaps thousands of operators deep: walk the left side in a loop.
struct Binary : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Binary;
    BinaryOperator op;
    ExpressionPtr left;
    ExpressionPtr right;
    Binary(BinaryOperator o, ExpressionPtr l, ExpressionPtr r, std::size_t at = 0)
        : Expression(kKind, at), op(o), left(std::move(l)), right(std::move(r)) {}
    ~Binary() override {
        // One operand at a time, so that a long chain is not destroyed recursively.
        while (Binary* inner = If<Binary>(left.get())) left = ExpressionPtr(std::move(inner->left));
    }
};

struct Like : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Like;
    bool negated;
    ExpressionPtr operand;
    ExpressionPtr pattern;
    ExpressionPtr escape;  ///< null when there is none
    Like(bool no, ExpressionPtr e, ExpressionPtr p, ExpressionPtr sign, std::size_t at = 0)
        : Expression(kKind, at), negated(no), operand(std::move(e)), pattern(std::move(p)), escape(std::move(sign)) {}
};

struct Between : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Between;
    bool negated;
    ExpressionPtr operand;
    ExpressionPtr low;
    ExpressionPtr high;
    Between(bool no, ExpressionPtr e, ExpressionPtr l, ExpressionPtr h, std::size_t at = 0)
        : Expression(kKind, at), negated(no), operand(std::move(e)), low(std::move(l)), high(std::move(h)) {}
};

struct InList : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::InList;
    bool negated;
    ExpressionPtr operand;
    std::vector<ExpressionPtr> items;  ///< never empty: an empty list is a syntax error
    InList(bool no, ExpressionPtr e, std::vector<ExpressionPtr> list, std::size_t at = 0)
        : Expression(kKind, at), negated(no), operand(std::move(e)), items(std::move(list)) {}
};

struct InQuery : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::InQuery;
    bool negated;
    ExpressionPtr operand;
    std::unique_ptr<Query> query;
    InQuery(bool no, ExpressionPtr e, std::unique_ptr<Query> q, std::size_t at = 0);
    ~InQuery() override;
};

/// "operand < ALL (query)", or with ANY.
struct Quantified : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Quantified;
    BinaryOperator op;
    bool all;
    ExpressionPtr operand;
    std::unique_ptr<Query> query;
    Quantified(BinaryOperator o, bool every, ExpressionPtr e, std::unique_ptr<Query> q, std::size_t at = 0);
    ~Quantified() override;
};

struct IsNull : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::IsNull;
    bool negated;
    ExpressionPtr operand;
    IsNull(bool no, ExpressionPtr e, std::size_t at = 0) : Expression(kKind, at), negated(no), operand(std::move(e)) {}
};

struct Exists : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Exists;
    std::unique_ptr<Query> query;
    explicit Exists(std::unique_ptr<Query> q, std::size_t at = 0);
    ~Exists() override;
};

/// A query in parentheses that yields one value.
struct Subquery : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Subquery;
    std::unique_ptr<Query> query;
    explicit Subquery(std::unique_ptr<Query> q, std::size_t at = 0);
    ~Subquery() override;
};

/// A function or an aggregate; name as it was written.
struct Call : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Call;
    std::string name;
    bool distinct;
    std::vector<ExpressionPtr> arguments;
    Call(std::string n, bool d, std::vector<ExpressionPtr> args, std::size_t at = 0)
        : Expression(kKind, at), name(std::move(n)), distinct(d), arguments(std::move(args)) {}
};

struct OrderItem {
    ExpressionPtr expression;
    bool descending = false;
};

/// Where a window's frame begins or ends.
struct FrameBound {
    enum class Kind { UnboundedPreceding, Preceding, CurrentRow, Following, UnboundedFollowing };
    Kind kind = Kind::CurrentRow;
    int rows = 0;  ///< of Preceding and Following
};

/// "function(...) OVER (PARTITION BY ... ORDER BY ... frame)".
struct Window : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Window;
    struct Frame {
        bool byRows = true;  ///< ROWS, else RANGE
        FrameBound first = {FrameBound::Kind::UnboundedPreceding, 0};
        FrameBound last = {};
    };
    std::unique_ptr<Call> call;
    std::vector<ExpressionPtr> partitionBy;
    std::vector<OrderItem> orderBy;
    std::optional<Frame> frame;
    Window(std::unique_ptr<Call> c, std::size_t at) : Expression(kKind, at), call(std::move(c)) {}
};

/// A type's name as a cast or a column definition writes it.
struct TypeName {
    Type type = Type::Unknown;
    int length = 0;         ///< of TEXT(n) and char(n); 0 when none is given
    bool counter = false;   ///< COUNTER: the engine assigns the value
    bool memo = false;      ///< text without a limit
    bool fixed = false;     ///< char(n) and nchar(n): padded with blanks to its length
    int precision = 0;      ///< of DECIMAL(p,s), a Currency: its digits; 0 for any other type
    int scale = 0;          ///< of DECIMAL(p,s): those behind the point, from 0 to 4
    bool cuts = false;      ///< of BIGINT, a DECIMAL(19,0): a cast truncates
    bool dayOnly = false;   ///< of the server's DATE
    bool timeOnly = false;  ///< of the server's TIME

    bool operator==(const TypeName&) const = default;
};

struct Cast : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Cast;
    ExpressionPtr operand;
    TypeName type;
    ExpressionPtr style;  ///< of CONVERT; null when none
    bool tries = false;   ///< TRY_CAST: Null where the value cannot be converted
    Cast(ExpressionPtr e, TypeName t, ExpressionPtr s, std::size_t at = 0)
        : Expression(kKind, at), operand(std::move(e)), type(t), style(std::move(s)) {}
};

struct Case : Expression {
    static constexpr ExpressionKind kKind = ExpressionKind::Case;
    struct When {
        ExpressionPtr condition;
        ExpressionPtr result;
    };
    ExpressionPtr operand;  ///< null in the searched form
    std::vector<When> whens;
    ExpressionPtr otherwise;  ///< null when there is no ELSE
    explicit Case(std::size_t at = 0) : Expression(kKind, at) {}
};

}  // namespace kpTables::sql
