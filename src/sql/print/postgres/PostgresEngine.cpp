#include "sql/print/postgres/PostgresEngine.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"
#include "sql/print/postgres/FunctionList.h"

namespace kpTables::sql::print::postgres {

namespace {

using bind::AggregateFunction;

Piece Call(std::string_view name, Piece operand) { return Function(name, {std::move(operand)}); }

Piece Cast(Piece operand, std::string_view type) {
    operand.text.append(" AS ").append(type);
    return Call("CAST", std::move(operand));
}

Piece Scaled(Piece operand, std::string_view op, std::string_view unit) {
    return Operation(std::move(operand), op, {std::string(unit)}, Precedence::Multiplicative);
}

constexpr std::string_view kReal = "double precision";

// Currency in units, a date as a number of days, a text as a number, any other value as it is.
Piece Number(Piece operand, Type from) {
    if (from == Type::Date) return Call("kp.date_number", std::move(operand));
    if (from == Type::Text || from == Type::Unknown) return Call("kp.to_double", std::move(operand));
    return from == Type::Currency ? Scaled(Cast(std::move(operand), kReal), "/", "10000") : std::move(operand);
}

Piece ToText(Piece operand, Type from) {
    switch (from) {
        case Type::Short:
        case Type::Long:
            return Cast(Cast(std::move(operand), "text"), kTextDomain);
        case Type::Boolean:
            return Call("kp.text_boolean", std::move(operand));
        case Type::Currency:
            return Call("kp.text_currency", std::move(operand));
        case Type::Date:
            return Call("kp.text_date", std::move(operand));
        default:
            return Cast(std::move(operand), kTextDomain);
    }
}

Piece ToBoolean(Piece operand, Type from) {
    Piece test = Test(Number(std::move(operand), from), "<>", {"0"}, Precedence::Equality);
    return {"-" + Cast(std::move(test), "integer").text, Precedence::Unary};
}

Piece ToCurrency(Piece operand, Type from, bool rounded) {
    if (bind::IsWhole(from)) return Scaled(Cast(std::move(operand), "bigint"), "*", "10000");
    Piece scaled = Scaled(Number(std::move(operand), from), "*", "10000");
    return rounded ? Cast(std::move(scaled), "bigint") : scaled;
}

std::string_view ParameterType(const bind::ParameterTerm& parameter) {
    switch (parameter.binding) {
        case Binding::Short:
        case Binding::Long:
        case Binding::DateYear:
        case Binding::DateMonth:
            return "integer";
        case Binding::Number:
            return parameter.type == Type::Long ? "bigint" : kReal;
        case Binding::Currency:
            return "bigint";
        case Binding::CurrencyBound:
            return parameter.literal == LiteralKind::Integer ? "bigint" : "numeric";
        case Binding::Boolean:
            return "smallint";
        case Binding::Date:
        case Binding::ServerDate:
            return "timestamp";
        case Binding::DateDay:
            return kReal;
        case Binding::Text:
            return kTextDomain;
    }
    return kTextDomain;
}

Piece Literal(const bind::ConstantTerm& constant) {
    switch (constant.constantKind) {
        case bind::ConstantKind::Text:
            return {QuotedText(constant.text) + "::" + std::string(kTextDomain)};
        case bind::ConstantKind::Truth:
            return {constant.text == "0" ? "FALSE" : "TRUE"};
        case bind::ConstantKind::Number:
            if (constant.type == Type::Double) return Cast({constant.text}, kReal);
            break;
        default:
            break;
    }
    return {constant.text, constant.text.front() == '-' ? Precedence::Unary : Precedence::Primary};
}

// The server cuts a longer name, and then two may be the same.
constexpr std::size_t kLongestName = 63;

std::uint64_t HashOf(std::string_view text) noexcept {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    return hash;
}

/// Functions that the server has itself with the same meaning.
constexpr std::array<std::string_view, 8> kWindowFunctions = {"row_number", "rank", "dense_rank",  "ntile",
                                                              "lag",        "lead", "first_value", "last_value"};

/// Of that many arguments; null where the extension has none.
const ExtensionFunction* Carried(std::string_view function, std::size_t arguments) {
    const auto found = std::ranges::find_if(ExtensionFunctions(), [&](const ExtensionFunction& each) {
        return each.name == function && CountArguments(each.parameters) == arguments;
    });
    return found == ExtensionFunctions().end() ? nullptr : &*found;
}

Piece CallCarried(const ExtensionFunction& function, const std::vector<Piece>& arguments) {
    std::string name(kExtension);
    name.append(".\"").append(function.name).append("\"");
    Piece call = Function(name, arguments);
    // The order of texts is the domain's.
    return function.result == "bpchar" ? Cast(std::move(call), kTextDomain) : call;
}

bool IsInSharedSchema(std::string_view function, std::size_t arguments) {
    return std::ranges::any_of(ServerFunctions(), [&](const ServerFunction& each) {
        return each.name == function && CountArguments(each.parameters) == arguments;
    });
}

class Postgres : public Engine {
public:
    explicit Postgres(bool hasExtension) noexcept : hasExtension_(hasExtension) {}

    std::string Name(std::string_view name) const override { return Engine::Name(ServerName(name)); }

    std::string Parameter(int number, const bind::ParameterTerm& parameter) const override {
        return "$" + std::to_string(number) + "::" + std::string(ParameterType(parameter));
    }

    std::string FunctionName(std::string_view function) const override {
        if (function == "coalesce") return "COALESCE";
        if (function == "last_counter") return "lastval";
        if (function == "ymd") return "kp.ymd";
        if (std::ranges::find(kWindowFunctions, function) != kWindowFunctions.end()) return std::string(function);
        const bool known = std::ranges::any_of(
            ServerFunctions(), [function](const ServerFunction& each) { return each.name == function; });
        return known ? "kp." + Engine::Name(function) : std::string();
    }

    Piece Called(const bind::CallTerm& call, const std::vector<Piece>& arguments) const override {
        const ExtensionFunction* const carried = Carried(call.name, arguments.size());
        if (carried && hasExtension_) return CallCarried(*carried, arguments);
        if (!carried || IsInSharedSchema(call.name, arguments.size())) return Engine::Called(call, arguments);
        throw SqlError(ErrorKind::Unsupported,
                       Message("a server has the function '{1}' with the extension kptables alone, which the server's "
                               "administrator adds to the database (CREATE EXTENSION kptables)",
                               call.name),
                       call.offset);
    }

    std::string BookList(bind::BookList list) const override {
        // The engine's own tables begin with kp_.
        const std::string own =
            " WHERE t.relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = current_schema()) AND t.relkind = 'r' "
            "AND t.relname NOT LIKE 'kp\\_%'";
        const std::string name = "CAST(CAST(t.relname AS text) AS kp.text) AS \"table_name\"";
        if (list == bind::BookList::Tables)
            return "SELECT " + name + ", CAST(t.oid AS bigint) AS \"table_id\" FROM pg_class AS t" + own;
        return "SELECT " + name +
               ", CAST(CAST(c.attname AS text) AS kp.text) AS \"column_name\", CAST(c.attnum AS integer) AS \"position\", "
               "CAST(CASE WHEN c.attnotnull THEN 'NO' ELSE 'YES' END AS kp.text) AS \"nullable\", "
               "CAST(CASE split_part(CAST(y.typname AS text), '(', 1) WHEN 'int4' THEN 'int' WHEN 'int2' THEN 'smallint' "
               "WHEN 'float8' THEN 'float' WHEN 'currency' THEN 'money' WHEN 'date' THEN 'datetime' WHEN 'flag' THEN 'bit' "
               "WHEN 'text' THEN 'nvarchar' ELSE split_part(CAST(y.typname AS text), '(', 1) END AS kp.text) AS \"type\", "
               "CASE WHEN y.typname LIKE 'text(%' THEN CAST(substring(y.typname FROM '[0-9]+') AS integer) "
               "WHEN y.typname = 'text' THEN -1 END AS \"length\" FROM pg_class AS t "
               "JOIN pg_attribute AS c ON c.attrelid = t.oid AND c.attnum > 0 AND NOT c.attisdropped "
               "AND c.attgenerated = '' JOIN pg_type AS y ON y.oid = c.atttypid" +
               own;
    }

    std::string AggregateName(AggregateFunction function) const override {
        constexpr std::array<std::string_view, 11> kNames = {"COUNT",      "SUM",       "AVG",     "MIN",
                                                             "MAX",        "array_agg", "kp.last", "stddev_samp",
                                                             "stddev_pop", "var_samp",  "var_pop"};
        return std::string(kNames[static_cast<std::size_t>(function)]);
    }

    Piece Constant(const bind::ConstantTerm& constant) const override { return Literal(constant); }

    Piece Condition(const bind::Term& term, Piece piece) const override {
        if (term.predicate) return piece;
        return Test(std::move(piece), "<>", {"0"}, Precedence::Equality);
    }

    Piece Item(const bind::Term& term, Piece piece) const override {
        return term.predicate ? PredicateValue(piece) : piece;
    }

    Piece PredicateValue(const Piece& predicate) const override {
        return {"-" + Cast(predicate, "integer").text, Precedence::Unary};
    }

    Piece Widened(const bind::Arithmetic& operation, Piece left) const override {
        return operation.type == Type::Double ? Cast(std::move(left), kReal) : Cast(std::move(left), "bigint");
    }

    Piece Converted(Piece operand, const bind::Conversion& conversion) const override {
        const Type from = conversion.operands.front()->type;
        if (from == Type::Null) return operand;
        switch (conversion.type) {
            case Type::Short:
                if (bind::IsWidening(from, Type::Short)) return operand;
                return Cast(Number(std::move(operand), from), "smallint");
            case Type::Long:
                if (bind::IsWidening(from, Type::Long)) return operand;
                return Cast(Number(std::move(operand), from), "integer");
            case Type::Double:
                return bind::IsWhole(from) ? Cast(std::move(operand), kReal) : Number(std::move(operand), from);
            case Type::Currency:
                return ToCurrency(std::move(operand), from, conversion.rounded);
            case Type::Boolean:
                return ToBoolean(std::move(operand), from);
            case Type::Date:
                if (from == Type::Text || from == Type::Unknown) return Own("to_date", std::move(operand));
                return Call("kp.to_date", Cast(Number(std::move(operand), from), kReal));
            case Type::Text:
                return from == Type::Double ? Own("text_double", std::move(operand)) : ToText(std::move(operand), from);
            default:
                return operand;
        }
    }

    // The server itself refuses sums and products that run over.
    Piece Checked(Piece operand, Type type) const override {
        return type == Type::Long ? Cast(std::move(operand), "integer") : operand;
    }

    // Columns, parameters and computed texts have the collation of their domain.
    Piece Collated(Piece text) const override { return text; }

    Piece Concatenated(const bind::Concatenation& node, Piece left, Piece right) const override {
        const auto text = [](const bind::TermPtr& term, Piece piece) {
            return bind::IsWhole(term->type) ? ToText(std::move(piece), Type::Long) : piece;
        };
        left = text(node.operands[0], std::move(left));
        right = text(node.operands[1], std::move(right));
        const bool spreads = node.nulls == bind::Concatenation::Nulls::Spread;
        return Function(spreads ? "kp.concat" : "kp.join", {std::move(left), std::move(right)});
    }

    Piece Aggregated(const bind::Aggregate& aggregate, Piece call) const override {
        switch (aggregate.function) {
            case AggregateFunction::First:
                return {"(" + call.text + ")[1]"};
            case AggregateFunction::Sum:
                return Cast(std::move(call), aggregate.type == Type::Currency ? "bigint" : kReal);
            case AggregateFunction::Average:
            case AggregateFunction::StDev:
            case AggregateFunction::StDevP:
            case AggregateFunction::Var:
            case AggregateFunction::VarP:
                return Cast(std::move(call), kReal);
            default:
                return call;
        }
    }

    std::size_t LongestChain() const override { return 100; }

    bool ReadsDependentColumns() const override { return false; }

    bool KeepsTies() const override { return false; }

    // Its collation is slow, and depends on the version of a library.
    bool LeavesTextOrder() const override { return true; }

    bool ReadsCells() const override { return true; }

    std::string RowIdName(const CatalogTable& table) const override {
        return Name(table.rowId.empty() ? kHiddenRowId : std::string_view(table.rowId));
    }

    // In both dialects Null comes before every value.
    std::string OrderKey(std::string key, bool descending) const override {
        return key.append(descending ? " DESC NULLS LAST" : " NULLS FIRST");
    }

    std::string CounterRestart(const CatalogTable& table) const override {
        return "ALTER TABLE " + Name(table.name) + " ALTER COLUMN " + Name(table.rowId) + " RESTART WITH 1";
    }

    std::string ColumnDefinition(const bind::Definition& column, const std::string& defaultText) const override {
        return ColumnChangeText(column, defaultText);
    }

    std::string ColumnText(const std::string& table, const bind::Definition& column,
                           const std::string& defaultText) const override {
        return postgres::ColumnText(table, column, defaultText);
    }

    std::string KeyText(const bind::SchemaChange& change) const override { return postgres::KeyText(change); }

    std::string BehindTable(const std::string& table, const bind::SchemaChange& change) const override {
        return CounterTrigger(table, change);
    }

private:
    /// A call of a function of one argument that both have.
    Piece Own(std::string_view function, Piece operand) const {
        const ExtensionFunction* const carried = hasExtension_ ? Carried(function, 1) : nullptr;
        return carried ? CallCarried(*carried, {std::move(operand)})
                       : Call("kp." + std::string(function), std::move(operand));
    }

    bool hasExtension_;
};

}  // namespace

const Engine& PostgresEngine(bool hasExtension) {
    static const Postgres alone(false);
    static const Postgres extended(true);
    return hasExtension ? extended : alone;
}

std::string QuotedName(std::string_view name) { return PostgresEngine().Name(name); }

std::string QuotedText(std::string_view text) { return PostgresEngine().Text(text); }

std::string ServerName(std::string_view name) {
    // The column of an empty text in a cross-tab has no name, and the server takes none.
    if (name.empty()) return "~";
    if (name.size() <= kLongestName) return std::string(name);
    constexpr std::size_t kDigits = 8;
    constexpr std::string_view kHexadecimal = "0123456789abcdef";
    std::size_t kept = kLongestName - kDigits - 1;
    while (kept > 0 && (static_cast<unsigned char>(name[kept]) & 0xC0U) == 0x80U) --kept;
    std::string shortened(name.substr(0, kept));
    shortened += '~';
    std::uint64_t hash = HashOf(name);
    for (std::size_t i = 0; i < kDigits; ++i, hash >>= 4U) shortened += kHexadecimal[hash & 0xFU];
    return shortened;
}

}  // namespace kpTables::sql::print::postgres
