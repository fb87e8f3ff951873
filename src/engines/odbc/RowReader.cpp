#include "engines/odbc/RowReader.h"

#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

using recordset::RowStore;

constexpr std::size_t kRowsBetweenQuestions = 1024;

[[noreturn]] void RaiseOfCell(DatabaseErrorNumber number, const std::string& complaint, std::string_view shown) {
    throw DatabaseError(static_cast<std::int32_t>(number), complaint, std::string(shown));
}

void PutAmount(RowStore& rows, int column, const std::string& digits, std::string_view shown) {
    try {
        rows.PutCurrency(column, Currency::FromDecimalText(digits).Scaled());
    } catch (const Error& error) {
        const auto number = error.Number() == static_cast<std::int32_t>(ErrorNumber::Overflow)
                                ? DatabaseErrorNumber::Overflow
                                : DatabaseErrorNumber::TypeMismatch;
        RaiseOfCell(number, Message("The server's amount {1} is no Currency", digits), shown);
    }
}

void PutReal(RowStore& rows, int column, double value, std::string_view shown) {
    if (!std::isfinite(value)) RaiseOfCell(DatabaseErrorNumber::Overflow, ErrorText(ErrorNumber::Overflow), shown);
    rows.PutDouble(column, value);
}

bool IsDecimal(SQLSMALLINT type) noexcept { return type == SQL_DECIMAL || type == SQL_NUMERIC; }

/// A row begins with Nulls: only a value is put.
void PutCell(RowStore& rows, int column, const ColumnDescription& from, Query& query, std::string_view shown) {
    switch (FieldTypeOf(from)) {
        case VarType::Boolean:
            if (const auto flag = query.Flag(column)) rows.PutBoolean(column, *flag);
            return;
        case VarType::Integer:
        case VarType::Long:
            // Not every driver knows the wide ones.
            if (from.type == SQL_BIGINT) {
                if (const auto whole = query.WideWhole(column)) rows.PutLong(column, *whole);
            } else if (const auto whole = query.Whole(column)) {
                rows.PutLong(column, *whole);
            }
            return;
        case VarType::Currency:
            if (const auto digits = query.Digits(column)) PutAmount(rows, column, *digits, shown);
            return;
        case VarType::Date:
            if (const auto moment = query.Moment(column)) rows.PutDate(column, moment->Serial());
            return;
        case VarType::Double: {
            if (!IsDecimal(from.type)) {
                if (const auto real = query.Real(column)) PutReal(rows, column, *real, shown);
                return;
            }
            const auto digits = query.Digits(column);
            double value = 0;
            if (!digits) return;
            std::from_chars(digits->data(), digits->data() + digits->size(), value);
            return PutReal(rows, column, value, shown);
        }
        default:
            if (const auto text = query.Text(column)) rows.PutText(column, *text);
    }
}

void ReadInto(RowStore& rows, const std::vector<ColumnDescription>& columns, Query& query, const Session& session,
              const engines::Limits& limits, std::string_view shown) {
    while (query.Fetch()) {
        limits.CountRow(rows, shown);
        if (rows.Rows() % kRowsBetweenQuestions == kRowsBetweenQuestions - 1 && session.IsInterrupted())
            RaiseOfCell(DatabaseErrorNumber::Cancelled, Message("The statement was interrupted"), shown);
        rows.BeginRow();
        for (std::size_t i = 0; i < columns.size(); ++i) PutCell(rows, static_cast<int>(i), columns[i], query, shown);
    }
}

}  // namespace

VarType FieldTypeOf(const ColumnDescription& column) noexcept {
    constexpr SQLSMALLINT kMostDigitsOfCurrency = 4;
    constexpr SQLULEN kDigitsOfLong = 9;
    switch (column.type) {
        case SQL_BIT:
            return VarType::Boolean;
        case SQL_TINYINT:
        case SQL_SMALLINT:
            return VarType::Integer;
        case SQL_INTEGER:
        case SQL_BIGINT:
            return VarType::Long;
        case SQL_REAL:
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return VarType::Double;
        case SQL_DECIMAL:
        case SQL_NUMERIC:
            if (column.digits == 0) return column.size <= kDigitsOfLong ? VarType::Long : VarType::Double;
            return column.digits <= kMostDigitsOfCurrency ? VarType::Currency : VarType::Double;
        case SQL_TYPE_DATE:
        case SQL_TYPE_TIME:
        case SQL_TYPE_TIMESTAMP:
            return VarType::Date;
        default:
            return VarType::String;
    }
}

std::vector<FieldInfo> FieldsOf(Query& query) {
    std::vector<FieldInfo> fields;
    const int columns = query.Columns();
    for (int i = 0; i < columns; ++i) {
        const ColumnDescription column = query.Describe(i);
        fields.push_back({column.name, FieldTypeOf(column)});
    }
    return fields;
}

std::unique_ptr<RowStore> ReadRows(Query& query, const Session& session, std::vector<FieldInfo> fields,
                                   const engines::Limits& limits, std::string_view shown) {
    std::vector<ColumnDescription> columns;
    const int count = query.Columns();
    for (int i = 0; i < count; ++i) columns.push_back(query.Describe(i));
    return engines::Limits::Within(shown, [&](std::unique_ptr<RowStore>& rows) {
        rows = std::make_unique<RowStore>(std::move(fields));
        limits.ApplyTo(*rows);
        ReadInto(*rows, columns, query, session, limits, shown);
    });
}

}  // namespace kpTables::engines::odbc
