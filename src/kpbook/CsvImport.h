// The rows of a CSV file, added to a table: all or none.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpbook/CsvReader.h"
#include "kpbook/ImportFaults.h"

namespace kpTables::kpbook {

class CsvImport {
public:
    /// file is the name that messages give the source.
    CsvImport(Book& book, const TableInfo& table, CsvReader& csv, const std::string& file);

    /// Adds every row in one transaction and answers their number. When anything is wrong every fault goes to standard
    /// error, nothing is added and a CommandError is raised.
    std::int64_t Run();

private:
    void ReadHeader();
    void CheckHeader(const std::vector<std::string>& unknown, const std::vector<std::string>& repeated) const;
    void ImportRow();
    /// Reads the row's fields into values_; false when one is no value of its column.
    bool ReadFields();
    void AddRow();
    void ShowProgress() const;

    Book& book_;
    const TableInfo& table_;
    CsvReader& csv_;
    std::string file_;
    ImportFaults faults_;
    std::unique_ptr<RowAppender> appender_;
    std::vector<const TableInfo::Column*> columns_;
    std::vector<Variant> values_;  ///< of the current row; Missing where the column is left to the engine
    std::int64_t rows_ = 0;
};

}  // namespace kpTables::kpbook
