// An ad-hoc query on bills as a test asks for it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/CTables.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {

using Values = std::shared_ptr<VariantArray>;

/// Twelve values of which these are given, the others "".
inline Values At(const std::map<std::size_t, Variant>& given, std::int32_t lower = 0) {
    std::vector<Variant> values(12, "");
    for (const auto& [position, value] : given) values[position] = value;
    return std::make_shared<VariantArray>(std::move(values), lower);
}

/// What a query is asked for. The two recordsets take the project and the group, the two others the product; only the
/// count takes the name of a bill kind.
struct Filters {
    std::string which = "入库";
    std::string kind = "";
    std::int32_t warehouse = 0;
    std::int32_t partner = 0;
    std::int32_t project = 0;
    std::int32_t product = 0;
    std::string group = "";
    std::string billKind = "";
    Values values = At({});
};

inline RecordsetPtr Summary(CTables& t, Filters f) {
    return t.rsSql单据记录(f.which, f.kind, f.warehouse, f.partner, f.project, f.group, f.values);
}
inline RecordsetPtr Lines(CTables& t, Filters f) {
    return t.rsSql查询记录(f.which, f.kind, f.warehouse, f.partner, f.project, f.values);
}
inline std::string Numbers(CTables& t, Filters f) {
    return t.Get单据列表(f.which, f.kind, f.warehouse, f.partner, f.product, f.values);
}
inline std::int16_t Count(CTables& t, Filters f) {
    return t.Get单据统计(f.which, f.billKind, f.kind, f.warehouse, f.partner, f.product, f.values);
}

/// A row that answers a count of bills and a list of one number.
inline std::shared_ptr<ScriptedRecordset> Counted(const Variant& count) {
    return MakeRows({{"单据计数", VarType::Long}, {"单据编号", VarType::String}}, {{count, "A1"}});
}

/// The one statement that a query sends.
template <class Query>
std::string StatementOf(Query query, const Filters& filters, bool isSQL = false) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(Counted(0));
    CTables tables;
    tables.Cnn(cnn);
    tables.isSQL(isSQL);
    query(tables, filters);
    if (cnn->Statements().size() != 1 || cnn->Statements()[0].op != "execute") return "not one statement executed";
    return cnn->Statements()[0].text;
}

}  // namespace kpTables::test
