// Enters the rows of a file into a table: all or none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/bookkeeping/RowEntry.h"
#include "kpbook/input/FieldReader.h"
#include "kpbook/input/ImportFaults.h"
#include "kpbook/input/RowReader.h"

namespace kpTables::kpbook::input {

struct ImportCounts {
    std::int64_t added = 0;
    std::int64_t changed = 0;
    std::int64_t unchanged = 0;
};

class TableImport {
public:
    /// file is the name of the source in messages.
    TableImport(Book& book, const TableInfo& table, RowReader& rows, const std::string& file,
                const bookkeeping::RowEntryOptions& options = {});

    /// Enters all rows in one transaction. If there are faults, writes each to standard error, changes nothing and
    /// raises a CommandError.
    ImportCounts Run();

private:
    void ReadHeader();
    /// Names of columns have no NUL characters, which a text of another encoding has.
    void RefuseNul() const;
    void Begin();
    void CheckHeader(const std::vector<std::string>& unknown, const std::vector<std::string>& repeated) const;
    void ImportRow();
    /// Reads the row's fields into values_; false when one is not a value of its column's type.
    bool ReadFields();
    /// Of an empty field, or one that is Null.
    static FieldValue ReadEmpty(const TableInfo::Column& column, bool isNull);
    void EnterRow();
    void AddRefusal(std::int64_t line, const DatabaseError& error);
    void Count(bookkeeping::RowEntryResult::Outcome outcome);
    void ShowProgress() const;

    Book& book_;
    const TableInfo& table_;
    RowReader& rows_;
    std::string file_;
    bookkeeping::RowEntryOptions options_;
    ImportFaults faults_;
    std::optional<bookkeeping::RowEntry> entry_;
    std::vector<const TableInfo::Column*> columns_;
    std::vector<Variant> values_;      ///< of the current row; Missing where the engine fills the column
    std::vector<std::int64_t> lines_;  ///< of the rows that were added
    ImportCounts counts_;
};

}  // namespace kpTables::kpbook::input
