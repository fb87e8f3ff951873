// Enters rows into a table: adds them, or changes the rows that have their keys.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/bookkeeping/EntryGuard.h"

namespace kpTables::bookkeeping {

struct RowEntryOptions {
    bool update = false;                ///< changes the row with the same key, and adds those that have none
    std::vector<std::string> key = {};  ///< columns, among those given; empty: the table's primary key
    bool closedMonths = false;          ///< takes bills of closed months too, as a whole book's are
    /// Rows may be gathered (see RowAppender::Gather) and are then refused here, by their number among those that were
    /// added, from 0. Without it each row is entered at once.
    RowAppender::Refused refused = {};
};

/// What has become of a row.
struct RowEntryResult {
    enum class Outcome { Added, Changed, Unchanged, Refused };
    Outcome outcome = Outcome::Refused;
    std::string refusal;  ///< why it was refused, for a person to read
};

/// Make it inside the transaction that the rows are entered in.
class RowEntry {
public:
    /// columns: what Enter's values are for. Error 5 when an update has no key, or its key has a column that is not
    /// among them.
    RowEntry(Book& book, const TableInfo& table, const std::vector<std::string>& columns,
             const RowEntryOptions& options = {});

    /// Enters a row. values: one for each column, of its type or Null, or Missing where the engine fills it: a changed
    /// row takes the column's default. In a comparison with a text of the book, an empty text and Null are the same.
    /// Refused are bills of closed months, rows without a key, whose key several rows of the book have, and whose key
    /// was entered before. A DatabaseError when the book does not take the row.
    RowEntryResult Enter(const std::vector<Variant>& values);
    /// Enters the rows that are still gathered.
    void Finish() { appender_->Flush(); }

private:
    void FindKey(const std::vector<std::string>& key);
    RowEntryResult Add(const std::vector<Variant>& values);
    RowEntryResult Change(const std::vector<Variant>& values);
    /// The condition that finds the row.
    std::string Condition(const std::vector<Variant>& values) const;
    /// The positions of values, in columns_, that differ from the current row's.
    std::vector<std::size_t> Differences(const Recordset& row, const std::vector<Variant>& values) const;
    /// Why the current row must not be changed like this; "" when it may.
    std::string RefusalOfChange(const Recordset& row, const std::vector<Variant>& values) const;

    Book& book_;
    TableInfo table_;
    std::vector<const TableInfo::Column*> columns_;
    std::vector<std::size_t> key_;  ///< positions in columns_
    bool update_;
    std::unique_ptr<RowAppender> appender_;
    std::optional<EntryGuard> guard_;  ///< of new rows
    std::optional<EntryGuard> whole_;  ///< of whole rows that are changed, over all columns of the table
    std::set<std::string> entered_;    ///< conditions of the rows so far
};

/// The first table that has rows; "" when the book has none.
std::string FirstTableWithRows(Book& book);

}  // namespace kpTables::bookkeeping
