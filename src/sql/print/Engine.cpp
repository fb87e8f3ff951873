#include "sql/print/Engine.h"

#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"

namespace kpTables::sql::print {

namespace {

std::string Quoted(std::string_view text, char quote) {
    std::string quoted(1, quote);
    for (const char c : text) {
        quoted += c;
        if (c == quote) quoted += c;
    }
    quoted += quote;
    return quoted;
}

}  // namespace

std::string Engine::Name(std::string_view name) const { return Quoted(name, '"'); }

std::string Engine::Text(std::string_view text) const { return Quoted(text, '\''); }

Piece Engine::Called(const bind::CallTerm& call, const std::vector<Piece>& arguments) const {
    const std::string name = FunctionName(call.name);
    if (!name.empty()) return Function(name, arguments);
    throw SqlError(ErrorKind::Unsupported,
                   "the book's engine does not have the function '" + std::string(call.name) + "'", call.offset);
}

std::string_view Engine::ComparisonSign(bind::ComparisonOperator op) const {
    using enum bind::ComparisonOperator;
    switch (op) {
        case Equal:
            return "=";
        case NotEqual:
            return "<>";
        case Less:
            return "<";
        case LessEqual:
            return "<=";
        case Greater:
            return ">";
        case GreaterEqual:
            return ">=";
        case Same:
            return "IS NOT DISTINCT FROM";
        case Different:
            return "IS DISTINCT FROM";
    }
    return {};
}

Piece Engine::Constant(const bind::ConstantTerm& constant) const {
    if (constant.constantKind == bind::ConstantKind::Text) return {Text(constant.text)};
    return {constant.text, constant.text.front() == '-' ? Precedence::Unary : Precedence::Primary};
}

Piece Engine::Condition(const bind::Term&, Piece piece) const { return piece; }

Piece Engine::Item(const bind::Term&, Piece piece) const { return piece; }

Piece Engine::Widened(const bind::Arithmetic&, Piece left) const { return left; }

bool Engine::ReadsDependentColumns() const { return true; }

bool Engine::KeepsTies() const { return true; }

bool Engine::LeavesTextOrder() const { return false; }

bool Engine::ReadsCells() const { return false; }

Piece Engine::PredicateValue(const Piece& predicate) const { return {"-(" + predicate.text + ")", Precedence::Unary}; }

Piece Engine::Likely(Piece condition) const { return condition; }

std::string_view Engine::JoinWord(bind::JoinMethod method) const {
    return method == bind::JoinMethod::Left    ? " LEFT JOIN "
           : method == bind::JoinMethod::Right ? " RIGHT JOIN "
           : method == bind::JoinMethod::Full  ? " FULL JOIN "
                                               : " INNER JOIN ";
}

std::string Engine::GroupKey(std::string key, bool) const { return key; }

std::string Engine::OrderKey(std::string key, bool descending) const {
    return descending ? key.append(" DESC") : std::move(key);
}

std::string Engine::RowIdKey(std::string rowId, bool) const { return rowId; }

bool Engine::KeepsOrder(const bind::Select&) const { return false; }

std::string Engine::Limit(std::optional<long long> rows, long long skip) const {
    std::string text = rows ? " LIMIT " + std::to_string(*rows) : std::string();
    if (skip > 0) text += " OFFSET " + std::to_string(skip);
    return text;
}

std::string Engine::BookList(bind::BookList) const {
    throw SqlError(ErrorKind::Unsupported, Message("a list of the book's tables is not supported by this engine"), 0);
}

std::string Engine::CounterRestart(const CatalogTable&) const {
    throw SqlError(ErrorKind::Unsupported,
                   Message("TRUNCATE of a table with a counter is not supported by this engine"), 0);
}

std::string Engine::ColumnDefinition(const bind::Definition&, const std::string&) const {
    throw SqlError(ErrorKind::Unsupported, Message("ALTER COLUMN is not supported by this engine"), 0);
}

std::string Engine::BehindTable(const std::string&, const bind::SchemaChange&) const { return {}; }

std::string Engine::NameList(const std::vector<std::string>& names) const {
    std::string list;
    for (const auto& name : names) list.append(list.empty() ? "(" : ", ").append(Name(name));
    return list + ")";
}

const bind::Definition* RowIdHolder(const bind::SchemaChange& change) {
    for (const bind::Definition& column : change.columns) {
        if (column.HoldsRowId()) return &column;
    }
    return nullptr;
}

}  // namespace kpTables::sql::print
