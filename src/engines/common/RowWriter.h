// How rows of one table are added and changed.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engines/common/ColumnSet.h"
#include "kpTables/Error.h"
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

/// A row as it was read.
struct RowKey {
    std::int64_t id = 0;
    std::int64_t version = 0;  ///< that it had then; of an engine without versions, 0
    std::int64_t moment = -1;  ///< what RowWriter::Moment answered then
};

/// Told of a row that was refused after it had been gathered: the number under which it was added.
using RefusedRow = std::function<void(std::int64_t row, const DatabaseError& error)>;

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
    /// Adds a row whose id nobody needs. An engine may gather such rows and send many at once, in the order in which
    /// they came, before any other statement and at the latest when Transaction::SendRows is called; it tells refused
    /// of each that the database does not take. Others add it as Insert does.
    void InsertLater(const ColumnSet& set, WrittenValues values, std::int64_t row, const RefusedRow& refused);
    /// Drops the rows of InsertLater that have not been sent.
    virtual void DropLater() noexcept {}
    /// Changes a row. Error Overflow as Insert; also an error when the row no longer exists, or when another program
    /// has changed it since it was read.
    void Change(const RowKey& row, const ColumnSet& set, WrittenValues values);
    /// The row count.
    virtual std::int64_t CountRows() = 0;

    /// The version of the row that was written last.
    virtual std::int64_t LastVersion() const noexcept { return 0; }
    /// Called before rows are read, for Moment.
    virtual void BeforeRead() {}
    /// Asked behind such a read: of two equal answers, no other program has changed the book between the reads.
    virtual std::int64_t Moment() const noexcept { return 0; }

private:
    virtual std::int64_t InsertRow(const ColumnSet& set, WrittenValues values) = 0;
    virtual void InsertRowLater(const ColumnSet& set, WrittenValues values, std::int64_t /*row*/,
                                const RefusedRow& /*refused*/) {
        InsertRow(set, values);
    }
    virtual void ChangeRow(const RowKey& row, const ColumnSet& set, WrittenValues values) = 0;
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
