#include "engines/sqlite/RowReader.h"

#include <sqlite3.h>

#include <cmath>
#include <string>
#include <utility>

#include "kpTables/Date.h"
#include "kpTables/Error.h"

namespace kpTables::engines::sqlite {

namespace {

using recordset::RowStore;

/// Beyond it, a double is out of Currency's range.
constexpr double kCurrencyLimit = 9223372036854775807.0;

std::string_view TextOf(sqlite3_value* cell) noexcept {
    // A blob is read as the bytes of a text: it is not a value that a book stores.
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(cell));
    const auto size = static_cast<std::size_t>(sqlite3_value_bytes(cell));
    return bytes ? std::string_view(bytes, size) : std::string_view();
}

void PutDateText(RowStore& rows, int column, std::string_view text) {
    auto date = Date::ParseIso(text);
    if (!date) date = Date::Parse(text);
    if (date) {
        rows.PutDate(column, date->Serial());
    } else {
        rows.PutText(column, text);
    }
}

[[noreturn]] void RaiseOverflow(std::string_view shown) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow), ErrorText(ErrorNumber::Overflow),
                        std::string(shown));
}

/// A sum of money that overflowed comes from SQLite as a double.
std::int64_t WholeTenThousandths(double value, std::string_view shown) {
    if (!(std::abs(value) < kCurrencyLimit)) RaiseOverflow(shown);
    return static_cast<std::int64_t>(std::nearbyint(value));
}

void PutReal(RowStore& rows, int column, VarType type, double value, std::string_view shown) {
    if (type == VarType::Currency) return rows.PutCurrency(column, WholeTenThousandths(value, shown));
    if (type == VarType::Boolean) return rows.PutBoolean(column, value != 0);
    // SQLite yields an infinity where a sum or a product is too large.
    if (!std::isfinite(value)) RaiseOverflow(shown);
    rows.PutDouble(column, value);
}

/// Fetches a cell's value from the statement once and reads it unprotected: a connection serves one thread at a time.
void PutCell(RowStore& rows, int column, VarType type, sqlite3_stmt* row, std::string_view shown) {
    sqlite3_value* const cell = sqlite3_column_value(row, column);
    switch (sqlite3_value_type(cell)) {
        case SQLITE_NULL:
            return;  // a row begins with Nulls
        case SQLITE_INTEGER:
            if (type == VarType::Currency) return rows.PutCurrency(column, sqlite3_value_int64(cell));
            return rows.PutLong(column, sqlite3_value_int64(cell));
        case SQLITE_FLOAT:
            return PutReal(rows, column, type, sqlite3_value_double(cell), shown);
        default:
            if (type == VarType::Date) return PutDateText(rows, column, TextOf(cell));
            return rows.PutText(column, TextOf(cell));
    }
}

VarType TypeOfCell(sqlite3_stmt* row, int column) noexcept {
    switch (sqlite3_column_type(row, column)) {
        case SQLITE_NULL:
            return VarType::Empty;
        case SQLITE_INTEGER:
            return VarType::Long;
        case SQLITE_FLOAT:
            return VarType::Double;
        default:
            return VarType::String;
    }
}

/// Finds the types that only the rows show. It reads as many rows as needed, and the caller starts again.
recordset::FieldsPtr WithDecidedTypes(PreparedStatement& statement, std::vector<FieldInfo> fields,
                                      std::string_view shown) {
    std::size_t open = 0;
    for (const FieldInfo& field : fields) open += field.type == VarType::Empty;
    while (open > 0 && statement.Step(shown)) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].type != VarType::Empty) continue;
            fields[i].type = TypeOfCell(statement.Get(), static_cast<int>(i));
            open -= fields[i].type != VarType::Empty;
        }
    }
    statement.Reset();
    return recordset::ShareFields(std::move(fields));
}

bool AnyUndecided(const std::vector<FieldInfo>& fields) noexcept {
    for (const FieldInfo& field : fields) {
        if (field.type == VarType::Empty) return true;
    }
    return false;
}

void AppendRows(PreparedStatement& statement, RowStore& rows, std::string_view shown, const engines::Limits& limits) {
    const std::vector<FieldInfo>& fields = rows.Fields();
    const ResetAtEnd reset(statement);
    sqlite3_stmt* const row = statement.Get();
    while (statement.Step(shown)) {
        limits.CountRow(rows, shown);
        rows.BeginRow();
        for (std::size_t i = 0; i < fields.size(); ++i) {
            PutCell(rows, static_cast<int>(i), fields[i].type, row, shown);
        }
    }
}

}  // namespace

std::unique_ptr<RowStore> ReadRows(PreparedStatement& statement, recordset::FieldsPtr fields, std::string_view shown,
                                   const engines::Limits& limits) {
    if (AnyUndecided(*fields)) fields = WithDecidedTypes(statement, *fields, shown);
    return engines::Limits::Within(shown, [&](std::unique_ptr<RowStore>& rows) {
        rows = std::make_unique<RowStore>(std::move(fields));
        limits.ApplyTo(*rows);
        AppendRows(statement, *rows, shown, limits);
    });
}

}  // namespace kpTables::engines::sqlite
