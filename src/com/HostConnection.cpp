#include "com/HostConnection.h"

#include "kpTables/Convert.h"

namespace kpTables::com {
namespace {

// ADO's numbers.
constexpr std::int32_t kUnspecified = -1;
constexpr std::int32_t kOpenDynamic = 2;
constexpr std::int32_t kLockPessimistic = 2;

}  // namespace

RecordsetPtr HostConnection::Execute(std::string_view text) {
    const Variant answer = Members().Get("Execute", {text, Variant::Missing(), kUnspecified});
    const auto* object = answer.If<ObjectPtr>();
    return object ? std::dynamic_pointer_cast<Recordset>(*object) : nullptr;
}

RecordsetPtr HostConnection::Open(std::string_view source, SourceKind kind) {
    const auto rows = LateBoundObject::Create(L"ADODB.Recordset");
    const Variant connection(ObjectOf(Dispatch()));
    rows.Call("Open", {source, connection, kOpenDynamic, kLockPessimistic, static_cast<std::int32_t>(kind)});
    return std::dynamic_pointer_cast<Recordset>(ObjectOf(rows.Dispatch()));
}

int HostConnection::BeginTrans() { return CLng(Members().Get("BeginTrans")); }

void HostConnection::CommitTrans() { Members().Call("CommitTrans"); }

void HostConnection::RollbackTrans() { Members().Call("RollbackTrans"); }

}  // namespace kpTables::com
