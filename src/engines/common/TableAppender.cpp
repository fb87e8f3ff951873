#include "engines/common/TableAppender.h"

#include <algorithm>
#include <utility>

#include "kpTables/Error.h"
#include "sql/Names.h"

namespace kpTables::engines {

TableAppender::TableAppender(ExecutorPtr executor, std::string_view table, const std::vector<std::string>& columns)
    : executor_(std::move(executor)), statement_(executor_->PrepareOpen(table, SourceKind::Table).statement) {
    const auto& known = statement_->writer->Table().columns;
    for (std::size_t value = 0; value < columns.size(); ++value) {
        const auto found = std::find_if(known.begin(), known.end(), [&](const WrittenTable::Column& column) {
            return sql::SameName(column.name, columns[value]);
        });
        if (found == known.end()) Raise(ErrorNumber::ItemNotFound, columns[value]);
        const auto column = static_cast<std::size_t>(found - known.begin());
        targets_.push_back({static_cast<int>(column), value, (*statement_->fields)[column].type});
    }
    std::sort(targets_.begin(), targets_.end(), [](const Target& a, const Target& b) { return a.column < b.column; });
    const auto same = [](const Target& a, const Target& b) { return a.column == b.column; };
    if (std::adjacent_find(targets_.begin(), targets_.end(), same) != targets_.end()) {
        Raise(ErrorNumber::InvalidArgument, "columns");
    }
    set_ = ColumnSet(known.size());
}

void TableAppender::Append(const std::vector<Variant>& values) {
    if (values.size() != targets_.size()) Raise(ErrorNumber::InvalidArgument, "values");
    set_.Clear();
    given_.clear();
    for (const Target& target : targets_) {
        const Variant& value = values[target.value];
        if (value.IsMissing()) continue;
        if (!value.IsNull() && value.Type() != target.type) Raise(ErrorNumber::TypeMismatch);
        set_.Add(target.column);
        given_.push_back(&value);
    }
    executor_->GetTransaction().BeforeChange();
    if (refused_) {
        statement_->writer->InsertLater(set_, given_, appended_++, refused_);
    } else {
        statement_->writer->Insert(set_, given_);
    }
}

TableAppender::~TableAppender() { statement_->writer->DropLater(); }

void TableAppender::Flush() { executor_->GetTransaction().SendRows(); }

}  // namespace kpTables::engines
