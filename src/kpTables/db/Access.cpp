#include "kpTables/db/Access.h"

#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::db {
namespace {

constexpr std::int32_t kCacheSize = 200;

Connection& Required(const ConnectionPtr& cnn) {
    if (!cnn) Raise(ErrorNumber::ObjectNotSet);
    return *cnn;
}

RecordsetPtr Cached(RecordsetPtr rows) {
    if (!rows) Raise(ErrorNumber::ObjectNotSet);
    rows->SetCacheSize(kCacheSize);
    return rows;
}

}  // namespace

RecordsetPtr Execute(const ConnectionPtr& cnn, std::string_view text) { return Required(cnn).Execute(text); }

RecordsetPtr Query(const ConnectionPtr& cnn, std::string_view text) { return Cached(Execute(cnn, text)); }

RecordsetPtr OpenText(const ConnectionPtr& cnn, std::string_view select) {
    return Cached(Required(cnn).Open(select, SourceKind::Text));
}

RecordsetPtr OpenTable(const ConnectionPtr& cnn, std::string_view table) {
    return Cached(Required(cnn).Open(table, SourceKind::Table));
}

std::string TextField(Recordset& row, std::string_view name) {
    return std::string(Trim(Text(row.Fields(name).Value())));
}

}  // namespace kpTables::db
