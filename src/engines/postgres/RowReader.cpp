#include "engines/postgres/RowReader.h"

#include <bit>
#include <cmath>
#include <string>
#include <utility>

#include "engines/postgres/ServerType.h"
#include "kpTables/Date.h"
#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

namespace {

using recordset::RowStore;

double RealOf(std::string_view bytes) noexcept {
    if (bytes.size() == sizeof(float)) return std::bit_cast<float>(WholeOf<std::uint32_t>(bytes));
    return std::bit_cast<double>(WholeOf<std::uint64_t>(bytes));
}

/// Digits to the base 10000 behind the number of digits, the first one's power, the sign and the scale.
double NumericOf(std::string_view bytes) {
    constexpr std::size_t kShort = sizeof(std::int16_t);
    constexpr std::uint16_t kNegative = 0x4000;
    constexpr int kBase = 10000;
    const auto part = [&](std::size_t index) { return WholeOf<std::uint16_t>(bytes.substr(index * kShort)); };
    const int digits = part(0);
    const auto weight = static_cast<std::int16_t>(part(1));
    std::string text;
    for (int i = 0; i < digits; ++i) {
        const std::string digit = std::to_string(part(4 + static_cast<std::size_t>(i)) + kBase);
        text += digit.substr(1);
    }
    if (text.empty()) return 0;
    text += "e" + std::to_string((weight - digits + 1) * 4);
    const double value = std::stod(text);
    return part(2) == kNegative ? -value : value;
}

double SerialOf(std::int64_t days, double timeOfDay) noexcept {
    constexpr std::int64_t kYear2000 = 36526;
    const auto day = static_cast<double>(days + kYear2000);
    return day >= 0 ? day + timeOfDay : day - timeOfDay;
}

double SerialOfTimestamp(std::int64_t microseconds) noexcept {
    constexpr std::int64_t kDay = 86'400'000'000;
    std::int64_t days = microseconds / kDay;
    std::int64_t rest = microseconds % kDay;
    if (rest < 0) {
        rest += kDay;
        --days;
    }
    return SerialOf(days, static_cast<double>(rest) / static_cast<double>(kDay));
}

[[noreturn]] void RaiseCellOverflow(std::string_view shown) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow), ErrorText(ErrorNumber::Overflow),
                        std::string(shown));
}

void PutReal(RowStore& rows, int column, VarType type, double value, std::string_view shown) {
    constexpr double kCurrencyLimit = 9223372036854775807.0;
    if (!std::isfinite(value)) RaiseCellOverflow(shown);
    if (type == VarType::Boolean) return rows.PutBoolean(column, value != 0);
    if (type != VarType::Currency) return rows.PutDouble(column, value);
    if (!(std::abs(value) < kCurrencyLimit)) RaiseCellOverflow(shown);
    rows.PutCurrency(column, static_cast<std::int64_t>(std::nearbyint(value)));
}

void PutWhole(RowStore& rows, int column, VarType type, std::int64_t value) {
    if (type == VarType::Currency) return rows.PutCurrency(column, value);
    rows.PutLong(column, value);
}

/// A cell of the last row, which begins with Nulls. bytes: no data for Null.
void PutCell(RowStore& rows, int column, VarType type, Oid serverType, std::string_view bytes, std::string_view shown) {
    if (!bytes.data()) return;
    switch (serverType) {
        case kInteger2:
            return PutWhole(rows, column, type, WholeOf<std::int16_t>(bytes));
        case kInteger4:
            return PutWhole(rows, column, type, WholeOf<std::int32_t>(bytes));
        case kInteger8:
            return PutWhole(rows, column, type, WholeOf<std::int64_t>(bytes));
        case kTransaction:
            return PutWhole(rows, column, type, WholeOf<std::uint32_t>(bytes));
        case kReal4:
        case kReal8:
            return PutReal(rows, column, type, RealOf(bytes), shown);
        case kNumeric:
            return PutReal(rows, column, type, NumericOf(bytes), shown);
        case kBoolean:
            return PutWhole(rows, column, type, bytes[0] != 0 ? -1 : 0);
        case kDate:
            return rows.PutDate(column, SerialOf(WholeOf<std::int32_t>(bytes), 0));
        case kTimestamp:
            return rows.PutDate(column, SerialOfTimestamp(WholeOf<std::int64_t>(bytes)));
        default:
            return rows.PutText(column, bytes);
    }
}

VarType TypeOfColumn(Oid type) noexcept {
    switch (type) {
        case kInteger2:
        case kInteger4:
        case kInteger8:
            return VarType::Long;
        case kReal4:
        case kReal8:
        case kNumeric:
            return VarType::Double;
        case kBoolean:
            return VarType::Boolean;
        case kDate:
        case kTimestamp:
            return VarType::Date;
        default:
            return VarType::String;
    }
}

recordset::FieldsPtr WithTypesOf(const Result& row, recordset::FieldsPtr fields) {
    bool open = false;
    for (const FieldInfo& field : *fields) open = open || field.type == VarType::Empty;
    if (!open) return fields;
    std::vector<FieldInfo> decided = *fields;
    for (std::size_t i = 0; i < decided.size(); ++i) {
        if (decided[i].type == VarType::Empty) decided[i].type = TypeOfColumn(row.TypeOf(static_cast<int>(i)));
    }
    return recordset::ShareFields(std::move(decided));
}

void AppendRow(RowStore& rows, const Result& read, int row, std::string_view shown) {
    rows.BeginRow();
    for (int i = 0; i < rows.Columns(); ++i) {
        PutCell(rows, i, rows.Fields()[static_cast<std::size_t>(i)].type, read.TypeOf(i), read.ValueOrNull(row, i),
                shown);
    }
}

}  // namespace

std::unique_ptr<RowStore> ReadRows(const Query& query, recordset::FieldsPtr fields, std::string_view shown,
                                   const engines::Limits& limits) {
    return engines::Limits::Within(shown, [&](std::unique_ptr<RowStore>& rows) {
        query([&](const Result& read, int row) {
            if (!rows) {
                rows = std::make_unique<RowStore>(WithTypesOf(read, fields));
                limits.ApplyTo(*rows);
            }
            limits.CountRow(*rows, shown);
            AppendRow(*rows, read, row, shown);
        });
        if (!rows) rows = std::make_unique<RowStore>(std::move(fields));
    });
}

}  // namespace kpTables::engines::postgres
