// An open database as the component sees it.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "kpTables/Recordset.h"

namespace kpTables {

/// The kind of source text of Connection::Open, with ADO's numbers.
enum class SourceKind : int {
    Text = 1,   ///< adCmdText: a Select
    Table = 2,  ///< adCmdTable: a table's name
};

/// An open connection. The host opens it and hands it to CTables; every failure is a DatabaseError.
class Connection : public Object {
public:
    /// Runs one statement. A query answers with a complete, scrollable, read-only recordset that knows its count;
    /// any other statement with null.
    virtual RecordsetPtr Execute(std::string_view text) = 0;
    /// Opens an editable recordset (dynamic cursor, pessimistic locking). Nothing is fetched before a row or a count is
    /// requested.
    virtual RecordsetPtr Open(std::string_view source, SourceKind kind) = 0;

    // For hosts; the component never calls these. They do not nest.
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void RollbackTrans() = 0;
};
using ConnectionPtr = std::shared_ptr<Connection>;

}  // namespace kpTables
