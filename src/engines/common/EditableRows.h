// The rows behind an editable recordset, as an engine reads and writes them.
#pragma once

#include <cstdint>
#include <memory>

#include "engines/common/ColumnSet.h"
#include "engines/common/RowWriter.h"
#include "engines/common/Transaction.h"
#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"

namespace kpTables::engines {

/// Rows of one table, with columns of the engine's own behind the caller's: what it needs to find a row again.
class EditableRows {
public:
    EditableRows() = default;
    virtual ~EditableRows() = default;
    EditableRows(const EditableRows&) = delete;
    EditableRows& operator=(const EditableRows&) = delete;

    /// The caller's columns, followed by the engine's.
    virtual const recordset::FieldsPtr& Fields() const noexcept = 0;
    /// How many of them are the caller's.
    virtual int Columns() const noexcept = 0;
    /// What the engine stores in a column of the caller's when it is given none; Null when it has none.
    virtual const Variant& DefaultOf(int column) const = 0;
    virtual Transaction& GetTransaction() noexcept = 0;

    /// Whether these are all rows of the table, which can be counted unread.
    virtual bool IsWholeTable() const noexcept = 0;
    /// Before Read, the number of rows without those that Insert has added.
    virtual std::int64_t CountOthers() = 0;
    /// All rows, and behind the others those that Insert has added, which the given recordset holds. When the table has
    /// changed since, Fields and Columns may have grown. After an error it may be called again.
    virtual std::unique_ptr<MemoryRecordset> Read(MemoryRecordset& added) = 0;

    /// Called when the first column of a row in the table is about to be set.
    virtual void BeginChange(const MemoryRecordset& /*row*/) {}
    /// Adds a row with the values of the set. The recordset's current row, which is that row, gets what the engine
    /// makes of it: the engine's own columns, and the counter. An error leaves the table as it was.
    virtual void Insert(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) = 0;
    /// Likewise for a change of the current row: before Read, the one that was added last.
    virtual void Change(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) = 0;
};

}  // namespace kpTables::engines
