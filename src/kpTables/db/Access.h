// What the methods need of the host's connection.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Connection.h"

namespace kpTables::db {

// Every function raises error 91 while there is no connection, and what the connection raises.

/// Runs a statement whose answer, if any, the component uses itself.
RecordsetPtr Execute(const ConnectionPtr& cnn, std::string_view text);
/// Runs a query and gives its recordset a CacheSize of 200. Error 91 when the connection has no recordset to give.
RecordsetPtr Query(const ConnectionPtr& cnn, std::string_view text);
/// Opens the rows of a Select for editing, with a CacheSize of 200.
RecordsetPtr OpenText(const ConnectionPtr& cnn, std::string_view select);
/// Opens a whole table for editing, with a CacheSize of 200.
RecordsetPtr OpenTable(const ConnectionPtr& cnn, std::string_view table);

/// The current row's field as trimmed text; Null is "".
std::string TextField(Recordset& row, std::string_view name);

}  // namespace kpTables::db
