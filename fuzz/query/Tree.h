// A query as the fuzzer makes it: every expression knows the kind of its values, so that it can be printed for a
// database without being bound first.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kpTables::fuzz::query {

enum class Kind { Whole, Number, Money, Text, Day };

enum class Node {
    Column,
    Constant,  ///< a number, a text without its quotes, or a day as 2004-03-07
    BillDay,   ///< the day that a bill's year, month and day make
    Add,
    Subtract,
    Join,    ///< of two texts
    Choice,  ///< of two values by a condition
    // Conditions.
    Compare,
    Between,
    InList,
    InQuery,
    IsNull,
    Exists,
    And,
    Or,
    Not,
    // Aggregates.
    Sum,
    Count,
    CountRows,
    Least,
    Greatest,
};

struct Select;

struct Expression {
    Node node = Node::Constant;
    Kind kind = Kind::Whole;
    std::string text;   ///< a column's name, a constant's value or a sign of comparison
    std::string table;  ///< the alias of the column's table
    std::vector<Expression> parts = {};
    std::shared_ptr<Select> query = {};
};

/// A table, a query, or a join of two sources.
struct Source {
    std::string table;
    std::string alias;
    std::shared_ptr<Select> query;
    std::string join;  ///< INNER, LEFT or RIGHT; "" for none
    std::shared_ptr<Source> left, right;
    Expression on;
};

struct Item {
    Expression value;
    std::string alias;
};

struct Select {
    bool distinct = false;
    std::vector<Item> items;
    Source from;
    std::optional<Expression> where;
    std::vector<Expression> groups;
    std::optional<Expression> having;
    std::vector<std::pair<std::size_t, bool>> order;  ///< items by number; true for descending
    std::shared_ptr<Select> united;                   ///< the other member of a UNION ...
    std::string joins = "UNION";                      ///< ... or of INTERSECT or EXCEPT
};

}  // namespace kpTables::fuzz::query
