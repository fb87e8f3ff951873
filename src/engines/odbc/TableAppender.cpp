#include "engines/odbc/TableAppender.h"

#include <algorithm>
#include <utility>

#include "engines/odbc/RowReader.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"

namespace kpTables::engines::odbc {

TableAppender::TableAppender(OpenConnectionPtr connection, std::string_view table,
                             const std::vector<std::string>& columns)
    : connection_(std::move(connection)), set_(columns.size()) {
    const ServerTable* const found = connection_->tables.Find(table);
    if (!found) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::UnknownTable),
                            Message("There is no table '{1}'", table));
    }
    std::vector<ColumnDescription> described;
    for (const std::string& name : columns) {
        const ServerColumn* const column = found->Find(name);
        if (!column) Raise(ErrorNumber::ItemNotFound, name);
        const auto same = [&](const ColumnDescription& each) { return each.name == column->name; };
        if (std::ranges::any_of(described, same)) Raise(ErrorNumber::InvalidArgument, "columns");
        described.push_back(column->description);
    }
    writer_ = std::make_unique<TableWriter>(connection_->session, *found, described);
}

void TableAppender::Append(const std::vector<Variant>& values) {
    const auto& columns = writer_->Columns();
    if (values.size() != columns.size()) Raise(ErrorNumber::InvalidArgument, "values");
    set_.Clear();
    given_.clear();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i].IsMissing()) continue;
        if (!values[i].IsNull() && values[i].Type() != FieldTypeOf(columns[i].description))
            Raise(ErrorNumber::TypeMismatch);
        set_.Add(static_cast<int>(i));
        given_.push_back(&values[i]);
    }
    connection_->transaction.BeforeChange();
    writer_->Insert(set_, given_);
}

}  // namespace kpTables::engines::odbc
