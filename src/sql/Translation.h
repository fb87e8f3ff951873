// One statement translated to an engine's text, to be prepared once and bound often.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sql/Tree.h"
#include "sql/Type.h"

namespace kpTables::sql {

/// How a literal's value becomes the value that is bound.
enum class Binding {
    Short,          ///< 16-bit whole number; a text or a decimal is converted, half to even
    Long,           ///< 32-bit whole number, likewise
    Number,         ///< a whole number if it is one, else a double; a text is read as a number
    Currency,       ///< exact ten-thousandths for a stored value: rounded half to even, error 6 out of range
    CurrencyBound,  ///< ten-thousandths for a comparison: not rounded (12.34567 binds 123456.7)
    Boolean,        ///< -1 for any number but 0, and for the text True
    Date,           ///< ISO text, from a date, a text that reads as one, or a number of days (1899-12-30 is 0)
    ServerDate,     ///< as Date, a number counting days from 1900-01-01
    DateYear,       ///< one part of the date, as a whole number
    DateMonth,
    DateDay,  ///< the day, with the time of day as its fraction
    Text,     ///< the text; a number in its text form
};

/// One of two bounds that may stand in any order, as BETWEEN takes them in Jet's dialect: of the parameter's literal
/// and the other one, the lower or the higher is bound.
struct BoundPair {
    int other = -1;  ///< its ordinal; -1: the parameter is no such bound
    bool isHigher = false;

    bool operator==(const BoundPair&) const = default;
};

struct Parameter {
    int literal = 0;  ///< ordinal of the literal in the statement's text
    Binding binding = Binding::Text;
    std::size_t offset = 0;  ///< of the literal in the text that was first translated, for messages
    bool negative = false;   ///< Currency with a minus before it: negating the lowest one would overflow
    BoundPair pair = {};
};

struct ResultColumn {
    std::string name;
    Type type = Type::Unknown;
    std::string qualifier = {};  ///< of a column of one of several tables: the table's name in the statement
};

/// The order of a query's rows where the engine leaves it to the client; without keys, rows come in order.
struct ClientOrder {
    struct Key {
        std::size_t column;  ///< from 0, the hidden ones included
        bool descending = false;
    };
    std::vector<Key> keys;     ///< the first decides
    std::vector<Type> hidden;  ///< of further columns, behind those of the result, that only the order reads
};

/// A column whose type changes, in the engine's words.
struct ColumnChange {
    std::string table;
    std::string column;
    std::string definition;  ///< as CREATE TABLE has it
    std::string value;       ///< of a row of the table, converted to the new type
};

struct Translation {
    StatementKind kind = StatementKind::Select;
    std::string text;                   ///< with numbered parameters
    std::vector<Parameter> parameters;  ///< by their numbers, from 1
    std::vector<ResultColumn> columns;  ///< of a query, in order; else empty
    ClientOrder order = {};             ///< of a query
    bool hasOneRow = false;             ///< of a query: it has one row at most
    /// Literals whose value shaped the text (a TOP, an ordinal, a pattern that a rewrite examined): the translation is
    /// valid for another text of the same shape only if these have the same values.
    std::vector<int> fixedLiterals;
    /// Statements without parameters that belong to it, to be run after it in the same transaction.
    std::vector<std::string> further = {};
    /// Of ALTER COLUMN, instead of a text.
    std::optional<ColumnChange> columnChange = std::nullopt;
};

/// How the rows of a query of cells, one for each group and pivot value, become a TRANSFORM's. Its columns are the
/// shown ones, the pivot value, the cell, and then keys that tell the groups apart; the rows come group by group, a
/// group's by its pivot values.
struct CellLayout {
    std::vector<bool> isSum;  ///< of a shown column: added up over a group's rows, else the same in all of them
    std::optional<std::string> total;  ///< the name of a column behind them with the sum of the cells
    int keys = 0;

    int Pivot() const noexcept { return static_cast<int>(isSum.size()); }
    int Cell() const noexcept { return Pivot() + 1; }
    int FirstKey() const noexcept { return Pivot() + 2; }
};

struct CellsTranslation {
    Translation translation;
    CellLayout layout;
};

}  // namespace kpTables::sql
