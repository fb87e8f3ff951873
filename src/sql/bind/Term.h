// Bound expressions: every column points to its source, every expression has its type, every conversion is a node of
// its own. Terms are immutable once made, so that they can be shared.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sql/Translation.h"
#include "sql/Tree.h"
#include "sql/Type.h"

namespace kpTables::sql::bind {

struct Query;
struct Source;

enum class TermKind {
    Literal,
    Parameter,
    Constant,
    Column,
    RowId,
    Arithmetic,
    Concatenation,
    Negation,
    Comparison,
    RowComparison,
    Between,
    InList,
    InQuery,
    Exists,
    ScalarQuery,
    Logic,
    Not,
    Call,
    Aggregate,
    Window,
    Case,
    DateOfParts,
    Conversion,
    RangeCheck,
    PredicateValue,
    Collation,
    Likely,
};

struct Term;
using TermPtr = std::shared_ptr<const Term>;
using Terms = std::vector<TermPtr>;

struct Term {
    Term(TermKind k, Type t, Terms parts);
    Term(const Term&) = default;
    Term& operator=(const Term&) = delete;
    /// A chain of operators may be thousands deep on its left: it is destroyed in a loop.
    virtual ~Term();
    virtual std::shared_ptr<Term> Clone() const = 0;

    const TermKind kind;
    Type type;
    /// Yields true, false or unknown; where a value is needed, a PredicateValue wraps it.
    bool predicate = false;
    bool constant;           ///< reads no row
    std::size_t offset = 0;  ///< in the statement's text
    Terms operands;          ///< only the first may be a long chain
};

/// The term as its own class, or nullptr when it is another.
template <class Node>
const Node* If(const Term* term) {
    return term && term->kind == Node::kKind ? static_cast<const Node*>(term) : nullptr;
}
template <class Node>
const Node* If(const TermPtr& term) {
    return If<Node>(term.get());
}
/// The term as its own class; the caller has checked kind.
template <class Node>
const Node& As(const Term& term) {
    return static_cast<const Node&>(term);
}

template <class Node, TermKind kOwn>
struct TermOf : Term {
    static constexpr TermKind kKind = kOwn;
    TermOf(Type t, Terms parts) : Term(kOwn, t, std::move(parts)) {}
    std::shared_ptr<Term> Clone() const override { return std::make_shared<Node>(static_cast<const Node&>(*this)); }
};

/// A literal whose binding depends on the other operand or its target column. A bound statement contains none.
struct LiteralTerm : TermOf<LiteralTerm, TermKind::Literal> {
    const Literal* literal;
    bool negative = false;    ///< a minus stands before it
    bool serverDate = false;  ///< cast to a date, a number counting from 1900-01-01
    LiteralTerm(const Literal& l, Type t) : TermOf(t, {}), literal(&l) { offset = l.offset; }
};

/// Leaves room between two parameters' sequences for those that a rule derives from one.
inline constexpr int kSequenceStep = 4;

/// A literal's value, bound as a binding says.
struct ParameterTerm : TermOf<ParameterTerm, TermKind::Parameter> {
    LiteralKind literal;
    std::string text;
    int ordinal;
    std::size_t literalOffset;  ///< offset is the function's when a function wraps the literal
    Binding binding;
    bool negative = false;  ///< Currency with a minus before it
    BoundPair pair = {};
    int sequence;  ///< parameters are numbered in this order
    ParameterTerm(const Literal& l, Binding b, Type t, int s)
        : TermOf(t, {}),
          literal(l.literal),
          text(l.text),
          ordinal(l.ordinal),
          literalOffset(l.offset),
          binding(b),
          sequence(s) {
        offset = l.offset;
    }
};

enum class ConstantKind { Null, Boolean, Truth, Number, Text };

/// A value fixed by the statement itself. Boolean is the value -1 or 0, Truth the predicate.
struct ConstantTerm : TermOf<ConstantTerm, TermKind::Constant> {
    ConstantKind constantKind;
    std::string text;
    ConstantTerm(ConstantKind k, std::string value, Type t) : TermOf(t, {}), constantKind(k), text(std::move(value)) {
        predicate = k == ConstantKind::Truth;
    }
};

/// A column of a table or of a query in FROM.
struct ColumnTerm : TermOf<ColumnTerm, TermKind::Column> {
    std::shared_ptr<const Source> source;
    std::size_t column;
    ColumnTerm(std::shared_ptr<const Source> s, std::size_t c);
    bool SameAs(const ColumnTerm& other) const { return source == other.source && column == other.column; }
};

/// The id of a table's row, ascending in insertion order.
struct RowIdTerm : TermOf<RowIdTerm, TermKind::RowId> {
    std::shared_ptr<const Source> source;
    explicit RowIdTerm(std::shared_ptr<const Source> s);
};

/// Divide takes doubles; the right one is never 0, unless the left one is Null.
enum class ArithmeticOperator { Add, Subtract, Multiply, Divide };

struct Arithmetic : TermOf<Arithmetic, TermKind::Arithmetic> {
    ArithmeticOperator op;
    Arithmetic(ArithmeticOperator o, TermPtr left, TermPtr right, Type t);
};

/// Texts, or whole numbers as they are, joined to one text.
struct Concatenation : TermOf<Concatenation, TermKind::Concatenation> {
    /// The effect of a Null.
    enum class Nulls {
        Spread,   ///< makes the whole Null
        AsEmpty,  ///< counts as an empty text: one of the operands is never Null
        Join,     ///< counts as an empty text, but two Nulls are Null
    };
    Nulls nulls;
    bool leftMayBeNull = false;  ///< of AsEmpty
    bool rightMayBeNull = false;
    Concatenation(Nulls n, TermPtr left, TermPtr right);
};

struct Negation : TermOf<Negation, TermKind::Negation> {
    Negation(TermPtr operand, Type t);
};

enum class ComparisonOperator { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Same, Different };

/// The equivalent operator with the sides swapped.
ComparisonOperator Mirrored(ComparisonOperator op);

/// Same and Different treat two Nulls as equal.
struct Comparison : TermOf<Comparison, TermKind::Comparison> {
    ComparisonOperator op;
    Comparison(ComparisonOperator o, TermPtr left, TermPtr right);
};

/// A year, a month and a day compared with three others: the first that differ decide.
struct RowComparison : TermOf<RowComparison, TermKind::RowComparison> {
    static constexpr std::size_t kParts = 3;
    ComparisonOperator op;
    RowComparison(ComparisonOperator o, Terms leftThenRight);
};

struct BetweenTerm : TermOf<BetweenTerm, TermKind::Between> {
    bool negated;
    BetweenTerm(TermPtr operand, TermPtr low, TermPtr high, bool no);
};

struct InListTerm : TermOf<InListTerm, TermKind::InList> {
    bool negated;
    InListTerm(TermPtr operand, Terms items, bool no);
};

struct InQueryTerm : TermOf<InQueryTerm, TermKind::InQuery> {
    bool negated;
    std::shared_ptr<Query> query;
    InQueryTerm(TermPtr operand, std::shared_ptr<Query> q, bool no);
};

struct ExistsTerm : TermOf<ExistsTerm, TermKind::Exists> {
    std::shared_ptr<Query> query;
    explicit ExistsTerm(std::shared_ptr<Query> q);
};

/// A query that yields one value.
struct ScalarQuery : TermOf<ScalarQuery, TermKind::ScalarQuery> {
    std::shared_ptr<Query> query;
    ScalarQuery(std::shared_ptr<Query> q, Type t);
};

enum class LogicOperator { And, Or };

/// Two or more conditions joined by one operator.
struct Logic : TermOf<Logic, TermKind::Logic> {
    LogicOperator op;
    bool isUnit = false;  ///< kept in parentheses for readability within another of its kind
    Logic(LogicOperator o, Terms conditions);
};

struct NotTerm : TermOf<NotTerm, TermKind::Not> {
    explicit NotTerm(TermPtr condition);
};

/// A function by its neutral name; a printer knows how its engine calls it.
struct CallTerm : TermOf<CallTerm, TermKind::Call> {
    std::string_view name;  ///< points to a string literal
    CallTerm(std::string_view n, Terms arguments, Type t);
};

enum class AggregateFunction { Count, Sum, Average, Minimum, Maximum, First, Last, StDev, StDevP, Var, VarP };

/// Over all rows of a group, or those that meet the filter.
struct Aggregate : TermOf<Aggregate, TermKind::Aggregate> {
    AggregateFunction function;
    bool distinct = false;
    bool allRows;  ///< Count(*): there is no argument
    bool filtered = false;
    Aggregate(AggregateFunction f, TermPtr argument, TermPtr filter, Type t);
    const Term* Argument() const { return allRows ? nullptr : operands.front().get(); }
    const Term* Filter() const { return filtered ? operands.back().get() : nullptr; }
};

/// An aggregate or a call over a window. operands: it, the keys of the partition, then those of the order.
struct WindowTerm : TermOf<WindowTerm, TermKind::Window> {
    std::size_t partitionKeys;
    std::vector<bool> descending;  ///< of each key of the order
    std::optional<sql::Window::Frame> frame;
    WindowTerm(Type t, Terms parts, std::size_t partition, std::vector<bool> directions,
               const std::optional<sql::Window::Frame>& rows);
};

/// operands: the operand if there is one, then pairs of condition and result, then the result of ELSE if there is one.
struct CaseTerm : TermOf<CaseTerm, TermKind::Case> {
    bool hasOperand;
    bool hasElse;
    CaseTerm(Terms parts, bool operand, bool otherwise, Type t);
};

/// The date of a year, a month and a day; Null when one of them is.
struct DateOfParts : TermOf<DateOfParts, TermKind::DateOfParts> {
    DateOfParts(TermPtr year, TermPtr month, TermPtr day);
};

/// The operand converted to another type. Between equally exact numbers it changes nothing but the type.
struct Conversion : TermOf<Conversion, TermKind::Conversion> {
    bool rounded = true;  ///< false: Currency to compare with, which may have more than four decimals
    Conversion(TermPtr operand, Type t);
};

/// An error unless the computed value is within its type's range.
struct RangeCheck : TermOf<RangeCheck, TermKind::RangeCheck> {
    explicit RangeCheck(const TermPtr& operand);
};

/// A predicate as the value -1 or 0.
struct PredicateValue : TermOf<PredicateValue, TermKind::PredicateValue> {
    explicit PredicateValue(const TermPtr& operand);
};

/// A computed text with the collation of the book's texts.
struct Collation : TermOf<Collation, TermKind::Collation> {
    explicit Collation(const TermPtr& operand);
};

/// A condition that most rows meet.
struct Likely : TermOf<Likely, TermKind::Likely> {
    explicit Likely(const TermPtr& operand);
};

// ---- Making and examining terms ----

TermPtr NullConstant(std::size_t offset = 0);
TermPtr NumberConstant(std::string text, Type type);
TermPtr TextConstant(std::string_view text, std::size_t offset = 0);
TermPtr TruthConstant(bool value, std::size_t offset);
/// The flag as a value: -1 or 0.
TermPtr FlagConstant(bool value, std::size_t offset);

TermPtr Call(std::string_view name, Terms arguments, Type type);
TermPtr Compare(ComparisonOperator op, TermPtr left, TermPtr right);
TermPtr ColumnOf(std::shared_ptr<const Source> source, std::size_t column, std::size_t offset = 0);
/// The term with another offset, or with other operands.
TermPtr At(const TermPtr& term, std::size_t offset);
TermPtr WithOperands(const Term& term, Terms operands);

/// The value of a condition that is constantly true or false; nullptr for any other term.
const ConstantTerm* KnownTruth(const Term& term);
bool IsTrue(const Term& term);

bool IsWhole(Type type) noexcept;    ///< Boolean, Short or Long
bool IsNumeric(Type type) noexcept;  ///< IsWhole, Double or Currency
/// Whether values of the first type are values of the second one unchanged.
bool IsWidening(Type from, Type to) noexcept;

/// The table's column that the term is, perhaps widened; nullptr for any other term.
const ColumnTerm* StoredColumn(const Term& term);
/// Structurally equal; parameters are equal when their literals and bindings are.
bool SameTerm(const Term& a, const Term& b);

}  // namespace kpTables::sql::bind
