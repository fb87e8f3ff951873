#include "engines/common/RowWriter.h"

#include <utility>

#include "functions/TextLength.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines {

namespace {

[[noreturn]] void RaiseOverflow(const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow), complaint);
}

}  // namespace

std::int64_t RowWriter::Insert(const ColumnSet& set, WrittenValues values) {
    CheckLengths(set, values);
    const std::int64_t rowId = InsertRow(set, values);
    if (!table_.rowIdColumn || std::in_range<std::int32_t>(rowId)) return rowId;
    DeleteRow(rowId);
    const std::string& column = table_.columns[static_cast<std::size_t>(*table_.rowIdColumn)].name;
    RaiseOverflow(Message("Overflow: the counter '{1}' has no values left", column));
}

void RowWriter::Change(std::int64_t rowId, const ColumnSet& set, WrittenValues values) {
    CheckLengths(set, values);
    ChangeRow(rowId, set, values);
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
