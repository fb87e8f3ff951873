// Adds rows to one table behind ODBC, one statement a row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engines/odbc/OpenConnection.h"
#include "engines/odbc/TableWriter.h"
#include "kpTables/Book.h"

namespace kpTables::engines::odbc {

class TableAppender : public RowAppender {
public:
    TableAppender(OpenConnectionPtr connection, std::string_view table, const std::vector<std::string>& columns);

    void Append(const std::vector<Variant>& values) override;

private:
    OpenConnectionPtr connection_;
    std::unique_ptr<TableWriter> writer_;
    // Of the current row.
    ColumnSet set_;
    std::vector<const Variant*> given_;
};

}  // namespace kpTables::engines::odbc
