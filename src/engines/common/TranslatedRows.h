// The editable rows of a translated text, which an engine tells apart by its row ids.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engines/common/EditableRows.h"
#include "engines/common/Executor.h"

namespace kpTables::engines {

class TranslatedRows final : public EditableRows {
public:
    /// query: what PrepareOpen answered, with a writer.
    TranslatedRows(ExecutorPtr executor, BoundQuery query);

    const recordset::FieldsPtr& Fields() const noexcept override { return query_.statement->fields; }
    int Columns() const noexcept override { return columns_; }
    const Variant& DefaultOf(int column) const override;
    Transaction& GetTransaction() noexcept override { return executor_->GetTransaction(); }

    bool IsWholeTable() const noexcept override { return Writer().Table().whole; }
    std::int64_t CountOthers() override;
    std::unique_ptr<MemoryRecordset> Read(MemoryRecordset& added) override;

    void Insert(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) override;
    void Change(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) override;

private:
    RowWriter& Writer() const noexcept { return *query_.statement->writer; }
    int CountColumns() const noexcept;
    bool HasVersions() const noexcept { return query_.statement->hidden > 1; }
    RowKey KeyOf(const MemoryRecordset& row) const;
    void KeepVersion(MemoryRecordset& row) const;
    std::unique_ptr<recordset::RowStore> WithAddedBehind(const recordset::RowStore& all, MemoryRecordset& added) const;

    ExecutorPtr executor_;
    BoundQuery query_;
    int columns_;  ///< without the row id and the version, which follow them
    bool read_ = false;
    std::int64_t moment_ = -1;         ///< of Read
    std::vector<std::int64_t> added_;  ///< row ids, until Read
};

}  // namespace kpTables::engines
