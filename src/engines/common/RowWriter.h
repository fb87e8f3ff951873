// How rows of one table are added and changed.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engines/common/ColumnSet.h"
#include "kpTables/Variant.h"

namespace kpTables::engines {

/// A table as it is written through some of its columns.
struct WrittenTable {
    struct Column {
        std::string name;
        Variant defaultValue;  ///< what the engine stores when none is given; Null when it has none
        int length = 0;        ///< characters that a text may have; 0 for any number
    };

    std::string name;
    std::vector<Column> columns;
    std::optional<int> rowIdColumn;  ///< which of the columns is the row id, when one is
    bool whole = false;              ///< a recordset over them holds all rows, which can be counted without being read
};

/// Values for the columns of a set, one each in their order.
using WrittenValues = std::span<const Variant* const>;

/// Writes rows of a table, known by a row id that the engine gives. What is wrong with a value is a DatabaseError.
class RowWriter {
public:
    explicit RowWriter(WrittenTable table) : table_(std::move(table)) {}
    virtual ~RowWriter() = default;
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    const WrittenTable& Table() const noexcept { return table_; }

    /// Adds a row and answers its row id. Error Overflow for a text that is too long for its column, and when the
    /// engine would have to give a counter a value beyond 32 bits.
    std::int64_t Insert(const ColumnSet& set, WrittenValues values);
    /// Changes a row. Error Overflow as Insert; an error too when the row is no longer there.
    void Change(std::int64_t rowId, const ColumnSet& set, WrittenValues values);
    /// Rows of the table.
    virtual std::int64_t CountRows() = 0;

private:
    virtual std::int64_t InsertRow(const ColumnSet& set, WrittenValues values) = 0;
    virtual void ChangeRow(std::int64_t rowId, const ColumnSet& set, WrittenValues values) = 0;
    virtual void DeleteRow(std::int64_t rowId) = 0;

    void CheckLengths(const ColumnSet& set, WrittenValues values) const;

    WrittenTable table_;
};

}  // namespace kpTables::engines
