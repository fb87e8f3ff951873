#include "sql/sqlite/Session.h"

#include <algorithm>
#include <charconv>

#include "sql/SqlError.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

const CatalogTable& Session::Table(const std::string& name, std::size_t offset) const {
    if (const auto* table = catalog_.Find(name)) return *table;
    throw SqlError(ErrorKind::UnknownTable, "unknown table '" + name + "'", offset);
}

std::string Session::Parameter(const Literal& literal, Binding binding, bool negative) {
    translation_.parameters.push_back({literal.ordinal, binding, literal.offset, negative});
    return "?" + std::to_string(translation_.parameters.size());
}

void Session::Fix(const Literal& literal) {
    auto& fixed = translation_.fixedLiterals;
    if (literal.ordinal >= 0 && std::find(fixed.begin(), fixed.end(), literal.ordinal) == fixed.end())
        fixed.push_back(literal.ordinal);
}

long long Session::WholeNumber(const Expression& expression) {
    const auto* literal = If<Literal>(&expression);
    long long value = 0;
    if (literal && literal->literal == LiteralKind::Integer) {
        const char* end = literal->text.data() + literal->text.size();
        const auto read = std::from_chars(literal->text.data(), end, value);
        if (read.ec == std::errc() && read.ptr == end) {
            Fix(*literal);
            return value;
        }
    }
    throw SqlError(ErrorKind::Syntax, "a whole number is expected", expression.offset);
}

std::string Session::FreshName() { return QuoteForSqlite("query " + std::to_string(++freshNames_)); }

const CatalogColumn* FindColumn(const CatalogTable& table, const std::string& name) {
    const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                    [&](const CatalogColumn& c) { return SameName(c.name, name); });
    return found == table.columns.end() ? nullptr : &*found;
}

const CatalogColumn& RequireColumn(const CatalogTable& table, const std::string& name, std::size_t offset) {
    if (const auto* column = FindColumn(table, name)) return *column;
    throw SqlError(ErrorKind::UnknownColumn, "unknown column '" + name + "' in table '" + table.name + "'", offset);
}

const CatalogColumn& RequireStoredColumn(const CatalogTable& table, const std::string& name, std::size_t offset) {
    const CatalogColumn& column = RequireColumn(table, name, offset);
    if (!column.computed) return column;
    if (const auto* stored = column.source.empty() ? nullptr : FindColumn(table, column.source)) return *stored;
    throw SqlError(ErrorKind::Unsupported, "the column '" + column.name + "' is computed and takes no value", offset);
}

}  // namespace kpTables::sql
