// The statements that add and change rows of one table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "engines/common/RowWriter.h"
#include "engines/postgres/CopyBatch.h"
#include "engines/postgres/Database.h"
#include "engines/postgres/RowBatch.h"
#include "sql/Catalog.h"

namespace kpTables::engines::postgres {

/// Inside a transaction, rows that are written one after the other, with no other statement between them, are gathered
/// from the second on and sent a thousand at a time. When the server refuses such a batch its rows are sent one by one,
/// so that the error is a row's. A statement is prepared once for each set of columns that is written together. Rows of
/// InsertLater go by COPY; of those that the server refuses each half is sent again, until the row is found.
class TableWriter final : public engines::RowWriter, private PendingRows {
public:
    TableWriter(Database& database, engines::WrittenTable table, const sql::CatalogTable& known);
    ~TableWriter() override;

    std::int64_t CountRows() override;
    std::int64_t LastVersion() const noexcept override { return version_; }
    void BeforeRead() override;
    std::int64_t Moment() const noexcept override { return database_.others.Count(); }
    void DropLater() noexcept override;

private:
    using Kind = RowBatch::Kind;
    struct Kept {
        Kind kind;
        engines::ColumnSet set;
        std::string name;
    };
    /// What the server tells of a row that was written.
    struct Written {
        std::int64_t id;  ///< 0 for a changed row
        std::int64_t version;
    };

    std::int64_t InsertRow(const engines::ColumnSet& set, engines::WrittenValues values) override;
    void InsertRowLater(const engines::ColumnSet& set, engines::WrittenValues values, std::int64_t row,
                        const engines::RefusedRow& refused) override;
    void ChangeRow(const engines::RowKey& row, const engines::ColumnSet& set, engines::WrittenValues values) override;
    void DeleteRow(std::int64_t rowId) override;

    void Send() override;
    void Drop() noexcept override;

    /// Whether the row follows one that was written last on this connection.
    bool FollowsAnother() const noexcept;
    /// Adds a row to those that are gathered.
    void Gather(Kind kind, const engines::RowKey& row, const engines::ColumnSet& set, engines::WrittenValues values);
    Written WriteNow(Kind kind, const engines::RowKey& row, const engines::ColumnSet& set,
                     engines::WrittenValues values);
    /// Writes rows of a batch behind a savepoint: all of them, or one.
    Written Write(const RowBatch& batch, std::optional<std::size_t> row);
    void WriteOneByOne(const RowBatch& batch);
    /// Adds a row to those that are copied.
    void GatherCopied(const engines::ColumnSet& set, engines::WrittenValues values, std::int64_t row,
                      const engines::RefusedRow& refused);
    /// Enters rows of those that were gathered and tells of each that is refused.
    void Copy(const CopyBatch& rows, std::size_t first, std::size_t count);
    /// Whether the server knows which rows a user may see; then it takes none by COPY.
    bool ChecksEachRow();
    [[noreturn]] void RaiseUnchanged(const RowBatch& batch, std::optional<std::size_t> row, const std::string& text);
    /// A row id for a row that is gathered.
    std::int64_t NextId();
    /// Whether rows with these columns may be changed in another order than they came.
    bool IsFree(const engines::ColumnSet& set);

    const std::string& StatementFor(Kind kind, const engines::ColumnSet& set);
    std::string CopyTextOf(const engines::ColumnSet& set) const;
    std::string TextOf(Kind kind, const engines::ColumnSet& set) const;

    Database& database_;
    std::string quotedName_;
    std::string quotedRowId_;
    bool counts_;  ///< the row id is a counter
    std::vector<ServerType> elements_;
    std::vector<Kept> kept_;
    std::optional<engines::ColumnSet> uniqueColumns_;

    RowBatch batch_;                      ///< of a recordset
    std::vector<std::int64_t> ids_;       ///< that are reserved, the next one at the end
    std::int64_t statementsBefore_ = -1;  ///< Database::Statements when a row was written last
    std::int64_t version_ = 0;            ///< below 0: that of a batch, as its place in versions_
    std::vector<std::int64_t> versions_;  ///< of the batches that were sent

    CopyBatch copied_;                              ///< of InsertLater
    const engines::RefusedRow* refused_ = nullptr;  ///< told of those
    std::int64_t firstRow_ = 0;                     ///< the number of the first of them
    std::optional<bool> checksEachRow_;
};

}  // namespace kpTables::engines::postgres
