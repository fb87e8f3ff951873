#include "sql/print/sqlite/SqliteEngine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "sql/print/sqlite/DeclaredType.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sql::print::sqlite {

namespace {

using bind::AggregateFunction;

struct OwnName {
    std::string_view function;
    std::string_view name;
};

/// The functions that SQLite has itself; all others are registered under a name of ours.
constexpr std::array<OwnName, 16> kOwnNames = {{
    {"abs", "abs"},
    {"coalesce", "COALESCE"},
    {"dense_rank", "dense_rank"},
    {"first_value", "first_value"},
    {"lag", "lag"},
    {"last_counter", "last_insert_rowid"},
    {"last_value", "last_value"},
    {"lead", "lead"},
    {"length", "length"},
    {"ltrim", "ltrim"},
    {"ntile", "ntile"},
    {"rank", "rank"},
    {"row_number", "row_number"},
    {"rtrim", "rtrim"},
    {"substr", "substr"},
    {"trim", "trim"},
}};

Piece Scaled(Piece operand, std::string_view op, std::string_view unit) {
    return Operation(std::move(operand), op, {std::string(unit)}, Precedence::Multiplicative);
}

Piece Call(std::string_view name, Piece operand) { return Function(name, {std::move(operand)}); }

// Currency in units, a date as a number of days, any other value as it is.
Piece Number(Piece operand, Type from) {
    if (from == Type::Date) return Call("kp_date_number", std::move(operand));
    return from == Type::Currency ? Scaled(std::move(operand), "/", "10000.0") : std::move(operand);
}

Piece ToText(Piece operand, Type from) {
    switch (from) {
        case Type::Short:
        case Type::Long:
            operand.text += " AS TEXT";
            return Call("CAST", std::move(operand));
        case Type::Boolean:
            return Call("kp_text_boolean", std::move(operand));
        case Type::Currency:
            return Call("kp_text_currency", std::move(operand));
        case Type::Date:
            return Call("kp_text_date", std::move(operand));
        default:
            return Call("kp_text_double", std::move(operand));
    }
}

Piece ToBoolean(Piece operand, Type from) {
    if (!bind::IsNumeric(from)) return Call("kp_to_boolean", Number(std::move(operand), from));
    return {"-(" + Test(std::move(operand), "<>", {"0"}, Precedence::Equality).text + ")", Precedence::Unary};
}

Piece ToCurrency(Piece operand, Type from, bool rounded) {
    if (!rounded) return Scaled(std::move(operand), "*", "10000.0");
    if (bind::IsWhole(from)) return Scaled(std::move(operand), "*", "10000");
    return Call("kp_to_currency", Number(std::move(operand), from));
}

// Groups by one key come in its order, and look-ups for them keep it. By several keys they may come in the order of an
// index with the keys in another sequence.
bool ComesByItsGroups(const bind::Select& select) {
    if (select.from.size() != 1 || select.orderBy.size() != 1) return false;
    const bind::Table* table = select.from.front().get();
    for (; !table->source; table = table->left.get())
        if (table->method != bind::JoinMethod::Lookup && table->method != bind::JoinMethod::Left) return false;
    const auto& query = table->source->query;
    const auto* key = bind::If<bind::ColumnTerm>(select.orderBy.front().term);
    if (!query || query->members.size() != 1 || !key || key->source != table->source) return false;
    const bind::Select& groups = query->members.front().select;
    return groups.groupBy.size() == 1 && bind::SameTerm(*groups.groupBy.front(), *groups.items[key->column].term);
}

class Sqlite : public Engine {
public:
    std::string Parameter(int number, const bind::ParameterTerm&) const override {
        return "?" + std::to_string(number);
    }

    std::string FunctionName(std::string_view function) const override {
        for (const auto& [known, name] : kOwnNames)
            if (known == function) return std::string(name);
        return "kp_" + std::string(function);
    }

    std::string AggregateName(AggregateFunction function) const override {
        constexpr std::array<std::string_view, 11> kNames = {
            "COUNT", "SUM", "AVG", "MIN", "MAX", "kp_first", "kp_last", "kp_stdev", "kp_stdevp", "kp_var", "kp_varp"};
        return std::string(kNames[static_cast<std::size_t>(function)]);
    }

    std::string_view ComparisonSign(bind::ComparisonOperator op) const override {
        if (op == bind::ComparisonOperator::Same) return "IS";
        return op == bind::ComparisonOperator::Different ? "IS NOT" : Engine::ComparisonSign(op);
    }

    Piece Converted(Piece operand, const bind::Conversion& conversion) const override {
        const Type from = conversion.operands.front()->type;
        if (from == Type::Null || bind::IsWidening(from, conversion.type)) return operand;
        switch (conversion.type) {
            case Type::Short:
                return Call("kp_to_short", Number(std::move(operand), from));
            case Type::Long:
                return Call("kp_to_long", Number(std::move(operand), from));
            case Type::Double:
                if (from == Type::Currency || from == Type::Date) return Number(std::move(operand), from);
                return Call("kp_to_double", std::move(operand));
            case Type::Currency:
                return ToCurrency(std::move(operand), from, conversion.rounded);
            case Type::Boolean:
                return ToBoolean(std::move(operand), from);
            case Type::Date:
                return Call("kp_to_date", Number(std::move(operand), from));
            case Type::Text:
                return ToText(std::move(operand), from);
            default:
                return operand;
        }
    }

    Piece Checked(Piece operand, Type type) const override {
        return Call(type == Type::Long     ? "kp_to_long"
                    : type == Type::Double ? "kp_to_double"
                                           : "kp_cur_fit",
                    std::move(operand));
    }

    Piece Collated(Piece text) const override {
        return {Enclosed(std::move(text), Precedence::Collation).append(" COLLATE ").append(kTextCollation),
                Precedence::Collation};
    }

    Piece Concatenated(const bind::Concatenation& node, Piece left, Piece right) const override {
        if (node.nulls == bind::Concatenation::Nulls::Join)
            return Function("kp_join", {std::move(left), std::move(right)});
        const auto present = [](Piece piece) { return Function("COALESCE", {std::move(piece), {"''"}}); };
        if (node.leftMayBeNull) left = present(std::move(left));
        if (node.rightMayBeNull) right = present(std::move(right));
        return Operation(std::move(left), "||", std::move(right), Precedence::Concatenation);
    }

    Piece Aggregated(const bind::Aggregate& aggregate, Piece call) const override {
        const bool whole = aggregate.function == AggregateFunction::Sum && bind::IsWhole(aggregate.Argument()->type);
        return whole ? Piece{"CAST(" + call.text + " AS REAL)"} : call;
    }

    Piece Likely(Piece condition) const override { return Call("likely", std::move(condition)); }

    std::size_t LongestChain() const override { return 100; }

    std::string RowIdName(const CatalogTable& table) const override {
        for (const char* name : {"rowid", "_rowid_"})
            if (!FindColumn(table, name)) return name;
        return "oid";
    }

    // Without statistics SQLite prefers to scan a table in id order over searching an index and sorting the rows found.
    std::string RowIdKey(std::string rowId, bool filtered) const override { return filtered ? "+" + rowId : rowId; }

    // SQLite does not reorder a cross join, so it keeps the order of the rows.
    std::string_view JoinWord(bind::JoinMethod method) const override {
        return method == bind::JoinMethod::Lookup ? " CROSS JOIN " : Engine::JoinWord(method);
    }

    // No index covers an expression.
    std::string GroupKey(std::string key, bool sorted) const override { return sorted ? "+" + key : key; }

    bool KeepsOrder(const bind::Select& select) const override { return ComesByItsGroups(select); }

    // SQLite takes an offset behind a limit only.
    std::string Limit(std::optional<long long> rows, long long skip) const override {
        constexpr long long kAll = -1;
        return Engine::Limit(rows ? rows : kAll, skip);
    }

    std::string BookList(bind::BookList list) const override {
        // The engine's own tables begin with kp_.
        const std::string own =
            " WHERE t.type = 'table' AND t.name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"
            " AND t.name NOT LIKE 'kp\\_%' ESCAPE '\\'";
        if (list == bind::BookList::Tables)
            return "SELECT t.name AS \"table_name\", t.rowid AS \"table_id\" FROM sqlite_schema AS t" + own;
        return "SELECT t.name AS \"table_name\", c.name AS \"column_name\", c.cid + 1 AS \"position\", "
               "CASE WHEN c.\"notnull\" OR c.pk > 0 THEN 'NO' ELSE 'YES' END AS \"nullable\", " +
               TypeNameOfDeclared("c.type") +
               " AS \"type\", CASE WHEN c.type LIKE 'TEXT(%' THEN CAST(substr(c.type, 6) AS INTEGER) "
               "WHEN c.type = 'LONGTEXT' THEN -1 END AS \"length\" "
               "FROM sqlite_schema AS t JOIN pragma_table_xinfo(t.name) AS c" +
               own + " AND c.hidden = 0";
    }

    std::string CounterRestart(const CatalogTable& table) const override {
        return "UPDATE sqlite_sequence SET seq = 0 WHERE name = " + Text(table.name);
    }

    std::string ColumnDefinition(const bind::Definition& column, const std::string& defaultText) const override {
        return sqlite::ColumnText(column, defaultText);
    }

    std::string ColumnText(const std::string& /*table*/, const bind::Definition& column,
                           const std::string& defaultText) const override {
        return sqlite::ColumnText(column, defaultText);
    }

    std::string KeyText(const bind::SchemaChange& change) const override { return sqlite::KeyText(change); }
};

}  // namespace

const Engine& SqliteEngine() {
    static const Sqlite engine;
    return engine;
}

std::string QuotedName(std::string_view name) { return SqliteEngine().Name(name); }

std::string QuotedText(std::string_view text) { return SqliteEngine().Text(text); }

}  // namespace kpTables::sql::print::sqlite
