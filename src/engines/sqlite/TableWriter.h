// The statements with which rows of one table are added and changed.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ColumnSet.h"
#include "Database.h"
#include "kpTables/Variant.h"

namespace kpTables::sqlite {

/// Writes rows of a table through some of its columns. A statement is prepared once for each set of columns that is
/// written together.
class TableWriter {
public:
    struct Column {
        std::string name;
        Variant defaultValue;  ///< what the engine stores when none is given; Null when it has none
        int length = 0;        ///< characters that a text may have; 0 for any number
    };

    /// rowIdColumn: which of the columns is SQLite's row id, when one is.
    TableWriter(const Database& database, std::string table, std::vector<Column> columns,
                std::optional<int> rowIdColumn, bool wholeTable);

    const std::vector<Column>& Columns() const noexcept { return columns_; }
    std::optional<int> RowIdColumn() const noexcept { return rowIdColumn_; }
    /// Whether the recordset holds all rows of the table, so that they can be counted without being read.
    bool IsWholeTable() const noexcept { return wholeTable_; }

    std::int64_t CountRows();
    /// Adds a row with values for the columns set, one each in their order, and answers its row id. Error Overflow when
    /// the engine would have to give a counter a value beyond 32 bits.
    std::int64_t Insert(const ColumnSet& set, std::span<const Variant* const> values);
    /// Changes the columns set of a row. Raises an error when the row is no longer there.
    void Change(std::int64_t rowId, const ColumnSet& set, std::span<const Variant* const> values);

private:
    struct Kept {
        ColumnSet set;
        PreparedStatement statement;
    };

    /// Error Overflow for a text that is too long for its column.
    void CheckLengths(const ColumnSet& set, std::span<const Variant* const> values) const;
    /// Takes a row back whose counter value is out of range.
    [[noreturn]] void RefuseCounter(std::int64_t rowId);
    PreparedStatement& StatementFor(std::vector<Kept>& kept, const ColumnSet& set,
                                    std::string (TableWriter::*text)(const ColumnSet& set) const);
    std::string InsertText(const ColumnSet& set) const;
    std::string UpdateText(const ColumnSet& set) const;

    const Database& database_;
    std::string table_;
    std::vector<Column> columns_;
    std::optional<int> rowIdColumn_;
    bool wholeTable_;
    std::vector<Kept> inserts_;
    std::vector<Kept> updates_;
    PreparedStatement count_;
};

}  // namespace kpTables::sqlite
