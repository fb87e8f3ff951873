// The statements that add and change rows of one table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engines/common/RowWriter.h"
#include "engines/sqlite/Database.h"

namespace kpTables::engines::sqlite {

/// A statement is prepared once for each set of columns that is written together.
class TableWriter final : public engines::RowWriter {
public:
    TableWriter(const Database& database, engines::WrittenTable table);

    std::int64_t CountRows() override;

private:
    struct Kept {
        engines::ColumnSet set;
        PreparedStatement statement;
    };

    std::int64_t InsertRow(const engines::ColumnSet& set, engines::WrittenValues values) override;
    void ChangeRow(const engines::RowKey& row, const engines::ColumnSet& set, engines::WrittenValues values) override;
    void DeleteRow(std::int64_t rowId) override;

    PreparedStatement& StatementFor(std::vector<Kept>& kept, const engines::ColumnSet& set,
                                    std::string (TableWriter::*text)(const engines::ColumnSet& set) const);
    std::string InsertText(const engines::ColumnSet& set) const;
    std::string UpdateText(const engines::ColumnSet& set) const;

    const Database& database_;
    std::string quotedName_;
    std::vector<Kept> inserts_;
    std::vector<Kept> updates_;
    PreparedStatement count_;
};

}  // namespace kpTables::engines::sqlite
