// The statements that add and change rows of one table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engines/common/RowWriter.h"
#include "engines/postgres/Database.h"

namespace kpTables::engines::postgres {

/// A statement is prepared once for each set of columns that is written together.
class TableWriter final : public engines::RowWriter {
public:
    /// rowId: the column that holds it, a counter or a hidden one.
    TableWriter(Database& database, engines::WrittenTable table, std::string_view rowId);
    ~TableWriter() override;

    std::int64_t CountRows() override;

private:
    struct Kept {
        engines::ColumnSet set;
        std::string name;
    };

    std::int64_t InsertRow(const engines::ColumnSet& set, engines::WrittenValues values) override;
    void ChangeRow(std::int64_t rowId, const engines::ColumnSet& set, engines::WrittenValues values) override;
    void DeleteRow(std::int64_t rowId) override;

    const std::string& StatementFor(std::vector<Kept>& kept, const engines::ColumnSet& set,
                                    std::string (TableWriter::*text)(const engines::ColumnSet& set) const);
    std::string InsertText(const engines::ColumnSet& set) const;
    std::string UpdateText(const engines::ColumnSet& set) const;

    Database& database_;
    std::string quotedName_;
    std::string quotedRowId_;
    std::vector<Kept> inserts_;
    std::vector<Kept> updates_;
};

}  // namespace kpTables::engines::postgres
