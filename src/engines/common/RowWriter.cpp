#include "engines/common/RowWriter.h"

#include <algorithm>
#include <utility>

#include "functions/DecimalFit.h"
#include "functions/TextLength.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines {

namespace {

[[noreturn]] void RaiseOverflow(const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow), complaint);
}

}  // namespace

RowWriter::RowWriter(WrittenTable table)
    : table_(std::move(table)),
      hasDecimals_(std::any_of(table_.columns.begin(), table_.columns.end(),
                               [](const WrittenTable::Column& column) { return column.precision > 0; })) {}

std::int64_t RowWriter::Insert(const ColumnSet& set, WrittenValues values) {
    CheckLengths(set, values);
    const std::int64_t rowId = hasDecimals_ ? InsertRow(set, Fit(set, values).values) : InsertRow(set, values);
    if (!table_.rowIdColumn || std::in_range<std::int32_t>(rowId)) return rowId;
    DeleteRow(rowId);
    const std::string& column = table_.columns[static_cast<std::size_t>(*table_.rowIdColumn)].name;
    RaiseOverflow(Message("Overflow: the counter '{1}' has no values left", column));
}

void RowWriter::InsertLater(const ColumnSet& set, WrittenValues values, std::int64_t row, const RefusedRow& refused) {
    CheckLengths(set, values);
    if (hasDecimals_) return InsertRowLater(set, Fit(set, values).values, row, refused);
    InsertRowLater(set, values, row, refused);
}

void RowWriter::Change(const RowKey& row, const ColumnSet& set, WrittenValues values) {
    CheckLengths(set, values);
    if (hasDecimals_) return ChangeRow(row, set, Fit(set, values).values);
    ChangeRow(row, set, values);
}

RowWriter::Fitted RowWriter::Fit(const ColumnSet& set, WrittenValues values) const {
    Fitted fitted{{values.begin(), values.end()}, {}};
    std::size_t given = 0;
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        const Variant*& value = fitted.values[given++];
        const WrittenTable::Column& column = table_.columns[i];
        const auto* amount = value->If<Currency>();
        if (column.precision == 0 || !amount) continue;
        const std::int64_t scaled = functions::DecimalAmount(amount->Scaled(), column.scale);
        if (const auto complaint = functions::DecimalComplaint(scaled, column.precision, column.scale);
            !complaint.empty())
            RaiseOverflow(Message("Overflow in the column '{1}': {2}", column.name, complaint));
        value = &fitted.rounded.emplace_back(Currency::FromScaled(scaled));
    }
    return fitted;
}

void RowWriter::CheckLengths(const ColumnSet& set, WrittenValues values) const {
    auto value = values.begin();
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        if (!set.Has(static_cast<int>(i))) continue;
        const auto* text = (*value++)->If<std::string>();
        if (!text) continue;
        const WrittenTable::Column& column = table_.columns[i];
        if (const auto complaint = functions::LengthComplaint(*text, column.length, column.name))
            RaiseOverflow(*complaint);
    }
}

}  // namespace kpTables::engines
