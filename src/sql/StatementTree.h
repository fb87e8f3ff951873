// The statements, each the root of its tree.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "sql/Dialect.h"
#include "sql/QueryTree.h"

namespace kpTables::sql {

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
    Dialect dialect = Dialect::Jet;  ///< in which it is read
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
    std::string table;  ///< a table's name or, with FROM, perhaps an alias; "" when only the assignments name it
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

/// What belongs to the connection: BEGIN TRANSACTION, COMMIT, ROLLBACK, and SET of options that have that value in
/// every book.
struct SessionStatement : Statement {
    static constexpr StatementKind kKind = StatementKind::Session;
    enum class Action { Nothing, Begin, Commit, Rollback };
    Action action = Action::Nothing;
    std::string words = {};  ///< of an option, "NOCOUNT ON"
    SessionStatement() : Statement(kKind) {}
};

}  // namespace kpTables::sql
