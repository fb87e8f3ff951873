// How rows of one table are added and changed.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engines/common/ColumnSet.h"
#include "kpTables/Variant.h"

namespace kpTables::engines {

/// A table and the columns through which it is written.
struct WrittenTable {
    struct Column {
        std::string name;
        Variant defaultValue;  ///< what the engine stores when none is given; Null when it has none
        int length = 0;        ///< characters that a text may have; 0 for any number
        int precision = 0;     ///< of DECIMAL(p,s); 0 for any other
        int scale = 0;
    };

    std::string name;
    std::vector<Column> columns;
    std::optional<int> rowIdColumn;  ///< the index of the column that is the row id, if any
    bool whole = false;              ///< the recordset holds all rows of the table, which can be counted unread
};

/// A value for each column of a set, in their order.
using WrittenValues = std::span<const Variant* const>;

/// Writes rows of a table, identified by the engine's row id. An invalid value is a DatabaseError.
class RowWriter {
public:
    explicit RowWriter(WrittenTable table);
    virtual ~RowWriter() = default;
    RowWriter(const RowWriter&) = delete;
    RowWriter& operator=(const RowWriter&) = delete;

    const WrittenTable& Table() const noexcept { return table_; }

    /// Adds a row and returns its row id. Error Overflow for a text that is too long for its column, and when the
    /// engine would have to give a counter a value beyond 32 bits.
    std::int64_t Insert(const ColumnSet& set, WrittenValues values);
    /// Changes a row. Error Overflow as Insert; also an error when the row no longer exists.
    void Change(std::int64_t rowId, const ColumnSet& set, WrittenValues values);
    /// The row count.
    virtual std::int64_t CountRows() = 0;

private:
    virtual std::int64_t InsertRow(const ColumnSet& set, WrittenValues values) = 0;
    virtual void ChangeRow(std::int64_t rowId, const ColumnSet& set, WrittenValues values) = 0;
    virtual void DeleteRow(std::int64_t rowId) = 0;

    /// The values as their columns keep them, and what holds those that differ from the given ones.
    struct Fitted {
        std::vector<const Variant*> values;
        std::deque<Variant> rounded;
    };

    void CheckLengths(const ColumnSet& set, WrittenValues values) const;
    /// Amounts of DECIMAL(p,s) columns with their decimals; error Overflow for one with too many digits.
    Fitted Fit(const ColumnSet& set, WrittenValues values) const;

    WrittenTable table_;
    bool hasDecimals_;
};

}  // namespace kpTables::engines
