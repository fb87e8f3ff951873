// A connection of the host's, by ADO's members.
#pragma once

#include "com/HostMembers.h"
#include "kpTables/Connection.h"

namespace kpTables::com {

class HostConnection : public Connection, public virtual HostMembers {
public:
    using Connection::Execute;
    /// Execute(text, , -1); null when that answers with no object.
    RecordsetPtr Execute(std::string_view text) override;
    /// A new ADODB.Recordset, opened with dynamic cursor and pessimistic locking.
    RecordsetPtr Open(std::string_view source, SourceKind kind) override;
    int BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;

protected:
    HostConnection() noexcept : HostMembers(LateBoundObject(nullptr)) {}
};

}  // namespace kpTables::com
