// Adds the rows of a CSV file to a table: all or none.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/bookkeeping/EntryGuard.h"
#include "kpbook/input/CsvReader.h"
#include "kpbook/input/ImportFaults.h"

namespace kpTables::kpbook::input {

class CsvImport {
public:
    /// file is the name of the source in messages.
    CsvImport(Book& book, const TableInfo& table, CsvReader& csv, const std::string& file);

    /// Adds all rows in one transaction and returns their number. If there are faults, writes each to standard error,
    /// adds nothing and raises a CommandError.
    std::int64_t Run();

private:
    void ReadHeader();
    void Begin();
    void CheckHeader(const std::vector<std::string>& unknown, const std::vector<std::string>& repeated) const;
    void ImportRow();
    /// Reads the row's fields into values_; false when one is not a value of its column's type.
    bool ReadFields();
    void AddRow();
    void ShowProgress() const;

    Book& book_;
    const TableInfo& table_;
    CsvReader& csv_;
    std::string file_;
    ImportFaults faults_;
    std::unique_ptr<RowAppender> appender_;
    std::unique_ptr<bookkeeping::EntryGuard> guard_;
    std::vector<const TableInfo::Column*> columns_;
    std::vector<Variant> values_;  ///< of the current row; Missing where the engine fills the column
    std::int64_t rows_ = 0;
};

}  // namespace kpTables::kpbook::input
