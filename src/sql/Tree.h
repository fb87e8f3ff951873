// The tree of one statement: one small class per node, children owned by unique_ptr.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/Dialect.h"
#include "sql/Type.h"

namespace kpTables::sql {

struct Query;

// ---- Expressions ----

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
    bool tries = false;   ///< TRY_CAST: Null where the value is none of the type
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

// ---- Tables ----

enum class TableKind { Named, Derived, Join };

struct TableExpression {
    virtual ~TableExpression() = default;
    const TableKind kind;
    std::size_t offset;

protected:
    TableExpression(TableKind k, std::size_t at) : kind(k), offset(at) {}
};
using TablePtr = std::unique_ptr<TableExpression>;

struct NamedTable : TableExpression {
    static constexpr TableKind kKind = TableKind::Named;
    std::string name;
    std::string alias;  ///< "" when none
    NamedTable(std::string n, std::string a, std::size_t at = 0)
        : TableExpression(kKind, at), name(std::move(n)), alias(std::move(a)) {}
};

struct DerivedTable : TableExpression {
    static constexpr TableKind kKind = TableKind::Derived;
    std::unique_ptr<Query> query;
    std::string alias;
    DerivedTable(std::unique_ptr<Query> q, std::string a, std::size_t at = 0);
    ~DerivedTable() override;
};

enum class JoinKind { Inner, Left, Right, Full };

struct JoinedTable : TableExpression {
    static constexpr TableKind kKind = TableKind::Join;
    JoinKind join;
    TablePtr left;
    TablePtr right;
    ExpressionPtr on;
    JoinedTable(JoinKind j, TablePtr l, TablePtr r, ExpressionPtr condition, std::size_t at = 0)
        : TableExpression(kKind, at), join(j), left(std::move(l)), right(std::move(r)), on(std::move(condition)) {}
};

// ---- Queries ----

struct SelectItem {
    ExpressionPtr expression;
    std::string alias;  ///< "" when none
};

/// One SELECT.
struct SelectCore {
    bool distinct = false;
    bool distinctRow = false;  ///< of several tables: a row for each combination of the rows that are shown
    ExpressionPtr top;         ///< number literal, or null
    bool percent = false;      ///< TOP n PERCENT; else the number is whole
    bool withTies = false;     ///< TOP n WITH TIES: and the rows that are equal to the last one in the order
    std::vector<SelectItem> items;
    std::vector<TablePtr> from;  ///< separated by commas; empty for a SELECT without FROM
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
};

/// How a member of a chain is joined to those before it.
enum class SetOperation { Union, UnionAll, Intersect, Except };

/// One member of a UNION chain and how it is joined to those before it. A member in parentheses, or with an ORDER BY
/// that does not end the statement, is a query of its own, as are members that INTERSECT joins before UNION does.
struct Query {
    struct Member {
        SetOperation operation = SetOperation::Union;  ///< unused for the first member
        std::unique_ptr<SelectCore> core;              ///< either a core ...
        std::unique_ptr<Query> nested;                 ///< ... or a query with its own order
    };
    std::vector<Member> members;  ///< at least one; joined from left to right
    std::vector<OrderItem> orderBy;
    ExpressionPtr skip;   ///< of OFFSET ... ROWS: whole-number literal, or null
    ExpressionPtr fetch;  ///< of FETCH NEXT ... ROWS ONLY, likewise
    std::size_t offset = 0;
};

/// A query with a name: WITH name (columns) AS (query).
struct CommonTable {
    std::string name;
    std::vector<std::string> columns;  ///< their names; empty: those of the query
    std::unique_ptr<Query> query;
    std::size_t offset = 0;
};

// ---- Statements ----

enum class StatementKind {
    Select,
    SelectInto,
    Transform,
    Insert,
    Update,
    Delete,
    CreateTable,
    CreateIndex,
    DropTable,
    DropIndex,
    AddColumn,
    AlterColumn,
    DropColumn,
    Session
};

struct Statement {
    virtual ~Statement() = default;
    const StatementKind kind;
    Dialect dialect = Dialect::Jet;  ///< that it is read in
    /// Ordinals of the literals that are part of the tree without a node of their own (a type's length): their values,
    /// too, determine the statement's meaning.
    std::vector<int> fixedLiterals;
    std::vector<CommonTable> with;  ///< each may refer to those before it

protected:
    explicit Statement(StatementKind k) : kind(k) {}
};
using StatementPtr = std::unique_ptr<Statement>;

struct SelectStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Select;
    std::unique_ptr<Query> query;
    SelectStatement() : Statement(kKind) {}
};

/// SELECT ... INTO table FROM ...: a new table of the query's rows.
struct SelectIntoStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::SelectInto;
    std::string table;
    std::unique_ptr<Query> query;
    std::size_t offset = 0;  ///< of the table's name
    SelectIntoStatement() : Statement(kKind) {}
};

/// TRANSFORM aggregate SELECT ... PIVOT expression [IN (values)].
struct TransformStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Transform;
    SelectItem aggregate;
    std::unique_ptr<Query> query;  ///< one core, optionally ordered
    ExpressionPtr pivot;
    std::vector<ExpressionPtr> values;  ///< of IN; empty when taken from the data
    TransformStatement() : Statement(kKind) {}
};

struct InsertStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Insert;
    std::string table;
    std::vector<std::string> columns;  ///< empty: all, in the table's order
    std::vector<std::size_t> columnOffsets;
    std::vector<std::vector<ExpressionPtr>> rows;  ///< of VALUES (...), (...)
    std::unique_ptr<Query> query;                  ///< or those of a query; without either, a row of defaults
    std::size_t offset = 0;                        ///< of the table's name
    InsertStatement() : Statement(kKind) {}
};

/// "UPDATE table SET ...", "UPDATE table SET ... FROM tables", "UPDATE tables SET ...".
struct UpdateStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Update;
    struct Assignment {
        std::string table;  ///< qualifier, "" when none
        std::string column;
        ExpressionPtr value;
        std::size_t offset = 0;
    };
    std::string table;  ///< a table's name or, with FROM, perhaps an alias; "" when the assignments tell
    std::string alias;
    ExpressionPtr top;  ///< of UPDATE TOP (n): whole-number literal, or null
    std::vector<Assignment> assignments;
    std::vector<TablePtr> from;  ///< the tables of a join; else empty
    ExpressionPtr where;
    std::size_t offset = 0;
    UpdateStatement() : Statement(kKind) {}
};

/// "Delete From T", "Delete * From T", "Delete T From tables"; TRUNCATE TABLE.
struct DeleteStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Delete;
    std::string table;  ///< as in UpdateStatement; never ""
    std::string alias;
    std::vector<TablePtr> from;  ///< the tables of a join; else empty
    bool truncates = false;      ///< the counter starts anew
    ExpressionPtr top;           ///< of DELETE TOP (n), as in UpdateStatement
    ExpressionPtr where;
    std::size_t offset = 0;
    DeleteStatement() : Statement(kKind) {}
};

struct ColumnDefinition {
    std::string name;
    TypeName type;
    bool notNull = false;
    bool primaryKey = false;
    bool unique = false;
    ExpressionPtr defaultValue;  ///< null when none
    /// Of a computed column, an alias: the column whose value it returns. "" for a stored column.
    std::string source;
    std::size_t offset = 0;
};

struct CreateTableStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::CreateTable;
    std::string table;
    std::vector<ColumnDefinition> columns;
    std::vector<std::string> primaryKey;               ///< of CONSTRAINT ... PRIMARY KEY (a, b)
    std::vector<std::vector<std::string>> uniqueKeys;  ///< of CONSTRAINT ... UNIQUE (a, b)
    std::size_t offset = 0;
    CreateTableStatement() : Statement(kKind) {}
};

struct CreateIndexStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::CreateIndex;
    struct Key {
        std::string column;
        bool descending = false;
    };
    bool unique = false;
    std::string index;
    std::string table;
    std::vector<Key> keys;
    std::size_t offset = 0;
    CreateIndexStatement() : Statement(kKind) {}
};

struct DropTableStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::DropTable;
    std::string table;
    bool ifExists = false;
    std::size_t offset = 0;
    DropTableStatement() : Statement(kKind) {}
};

/// DROP INDEX name ON table.
struct DropIndexStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::DropIndex;
    std::string index;
    std::string table;
    std::size_t offset = 0;
    DropIndexStatement() : Statement(kKind) {}
};

/// ALTER TABLE name ADD COLUMN definition, definition ...
struct AddColumnStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::AddColumn;
    std::string table;
    std::vector<ColumnDefinition> columns;
    std::size_t offset = 0;
    AddColumnStatement() : Statement(kKind) {}
};

/// ALTER TABLE name ALTER COLUMN definition.
struct AlterColumnStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::AlterColumn;
    std::string table;
    ColumnDefinition column;
    std::size_t offset = 0;
    AlterColumnStatement() : Statement(kKind) {}
};

/// ALTER TABLE name DROP COLUMN column, column ...
struct DropColumnStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::DropColumn;
    std::string table;
    std::vector<std::string> columns;
    std::vector<std::size_t> columnOffsets;
    std::size_t offset = 0;
    DropColumnStatement() : Statement(kKind) {}
};

/// What belongs to the connection: BEGIN TRANSACTION, COMMIT, ROLLBACK, and options that are as they are set.
struct SessionStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Session;
    enum class Action { Nothing, Begin, Commit, Rollback };
    Action action = Action::Nothing;
    std::string words = {};  ///< of an option, "NOCOUNT ON"
    SessionStatement() : Statement(kKind) {}
};

// Query is a complete type here, so nodes that own one can be made and destroyed.
inline InQuery::InQuery(bool no, ExpressionPtr e, std::unique_ptr<Query> q, std::size_t at)
    : Expression(kKind, at), negated(no), operand(std::move(e)), query(std::move(q)) {}
inline InQuery::~InQuery() = default;
inline Quantified::Quantified(BinaryOperator o, bool every, ExpressionPtr e, std::unique_ptr<Query> q, std::size_t at)
    : Expression(kKind, at), op(o), all(every), operand(std::move(e)), query(std::move(q)) {}
inline Quantified::~Quantified() = default;
inline Exists::Exists(std::unique_ptr<Query> q, std::size_t at) : Expression(kKind, at), query(std::move(q)) {}
inline Exists::~Exists() = default;
inline Subquery::Subquery(std::unique_ptr<Query> q, std::size_t at) : Expression(kKind, at), query(std::move(q)) {}
inline Subquery::~Subquery() = default;
inline DerivedTable::DerivedTable(std::unique_ptr<Query> q, std::string a, std::size_t at)
    : TableExpression(kKind, at), query(std::move(q)), alias(std::move(a)) {}
inline DerivedTable::~DerivedTable() = default;

}  // namespace kpTables::sql
