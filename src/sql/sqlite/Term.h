// An expression turned into SQLite's text, with what the expressions around it need to know.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sql/Tree.h"
#include "sql/Type.h"

namespace kpTables::sql {

/// How tightly SQLite binds a text's outermost operator, loosest first.
enum class Precedence {
    Or,
    And,
    Not,
    Equality,
    Relational,
    Additive,
    Multiplicative,
    Concatenation,
    Collation,
    Unary,
    Primary,
};

/// The three columns of a date that is kept as year, month and day.
struct DateColumns {
    std::string year;
    std::string month;
    std::string day;
};

struct Term {
    std::string text;  ///< empty while literal is set
    Type type = Type::Unknown;
    Precedence precedence = Precedence::Primary;
    bool predicate = false;  ///< the text answers 1, 0 or Null; as a value it would be -1 or 0
    bool column = false;     ///< a table's column as it is stored, with its collation
    bool constant = false;   ///< reads no column
    bool present = false;    ///< never Null
    std::size_t offset = 0;  ///< in the statement's text

    /// A literal whose binding waits for the other operand or the column it goes to.
    const Literal* literal = nullptr;
    bool negative = false;    ///< the literal has a minus before it
    bool serverDate = false;  ///< the literal is cast to a date, a number counting from 1900-01-01

    std::optional<bool> truth;  ///< a predicate that is known
    std::shared_ptr<const DateColumns> dateColumns;
};

/// A term with this text that reads no column.
Term ConstantTerm(std::string text, Type type, std::size_t offset = 0);

/// The text, in parentheses when it binds more loosely than that.
std::string Enclosed(const Term& term, Precedence atLeast);

/// "left op right", grouping to the left.
Term OperatorTerm(Term left, std::string_view op, const Term& right, Precedence precedence, Type type);

/// A comparison or another test of two values.
Term TestTerm(Term left, std::string_view op, const Term& right, Precedence precedence);

/// "name(argument, ...)".
Term FunctionTerm(std::string_view name, const std::vector<Term>& arguments, Type type);

/// With the collation of texts, unless it has it already, as a column does. Other types are returned as they are.
Term CollatedTerm(Term term);

}  // namespace kpTables::sql
