#include "bookkeeping/ReferenceCheck.h"

#include <string>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

/// A column whose values are ids of a master table.
struct Reference {
    const char* table;
    const char* column;
    const char* master;
    const char* key;
    bool optional;  ///< Null and 0 stand for none
};
constexpr Reference kReferences[] = {
    {"仓库余额表", "dpID", "仓库设置", "dpID", false}, {"仓库余额表", "pdID", "商品设置", "pdID", false},
    {"入库目录", "dpID", "仓库设置", "dpID", false},   {"出库目录", "dpID", "仓库设置", "dpID", false},
    {"成本目录", "dpID", "仓库设置", "dpID", false},   {"入库记录", "dpID", "仓库设置", "dpID", false},
    {"出库记录", "dpID", "仓库设置", "dpID", false},   {"入库记录", "pdID", "商品设置", "pdID", false},
    {"出库记录", "pdID", "商品设置", "pdID", false},   {"成本记录", "pdID", "商品设置", "pdID", false},
    {"入库目录", "ksID", "厂商资料", "KSID", true},    {"出库目录", "ksID", "客户资料", "KSID", true},
    {"入库目录", "pjID", "项目设置", "项目ID", true},  {"出库目录", "pjID", "项目设置", "项目ID", true},
    {"商品设置", "KSID", "厂商资料", "KSID", true},    {"项目设置", "ksID", "客户资料", "KSID", true},
};

std::string IdText(const std::string& key, const Variant& id) { return key + " " + (id.IsNull() ? "Null" : Text(id)); }

void CheckLines(Connection& book, const BillKind& kind, std::vector<Finding>& findings) {
    const std::string key = kind.key;
    const std::string warehouse = kind.linesHaveWarehouse ? ",R.dpID" : "";
    const auto rows =
        book.Execute("Select R." + key + ",R.pdID,Count(*) As 行数" + warehouse + " From " + kind.Lines() +
                     " As R Where Not Exists (Select * From " + kind.Headers() + " As L Where L." + key + "=R." + key +
                     ") Group by R." + key + ",R.pdID" + warehouse);
    for (; !rows->Eof(); rows->MoveNext()) {
        findings.push_back({kind.linesHaveWarehouse ? IdOf(rows->GetValue(3)) : std::nullopt, 0, 0,
                            IdOf(rows->GetValue(1)), kind.Lines() + ": lines without a header", Variant::Null(),
                            IdText(key, rows->GetValue(0)) + ", " + LinesText(CLng(rows->GetValue(2)))});
    }
}

void CheckHeaders(Connection& book, const BillKind& kind, std::vector<Finding>& findings) {
    const std::string key = kind.key;
    const auto rows = book.Execute("Select L." + key + ",L.dpID,L.年份,L.月份 From " + kind.Headers() +
                                   " As L Where Not Exists (Select * From " + kind.Lines() + " As R Where R." + key +
                                   "=L." + key + ") Order by L." + key);
    for (; !rows->Eof(); rows->MoveNext()) {
        findings.push_back({IdOf(rows->GetValue(1)), IdOf(rows->GetValue(2)).value_or(0),
                            IdOf(rows->GetValue(3)).value_or(0), std::nullopt,
                            kind.Headers() + ": a header without lines", Variant::Null(),
                            IdText(key, rows->GetValue(0))});
    }
}

/// Each id without a row in the master table, and how often it stands.
std::string UnknownIds(const Reference& reference) {
    const std::string column = reference.column;
    return "Select T.编码,T.行数 From (Select " + column + " As 编码,Count(*) As 行数 From " + reference.table +
           " Group by " + column + ") As T Where Not Exists (Select * From " + reference.master + " As M Where M." +
           reference.key + "=T.编码)" + (reference.optional ? " And T.编码<>0" : "") + " Order by T.编码";
}

}  // namespace

void CheckBillParts(Connection& book, std::vector<Finding>& findings) {
    for (const BillKind& kind : kBillKinds) {
        CheckLines(book, kind, findings);
        CheckHeaders(book, kind, findings);
    }
}

void CheckMasterIds(Connection& book, std::vector<Finding>& findings) {
    for (const auto& each : kReferences) {
        const std::string column = each.column;
        const auto rows = book.Execute(UnknownIds(each));
        for (; !rows->Eof(); rows->MoveNext()) {
            const Variant id = rows->GetValue(0);
            Finding finding;
            if (column == "dpID") finding.warehouse = IdOf(id);
            if (column == "pdID") finding.product = IdOf(id);
            finding.what = std::string(each.table) + "." + column + " has no row in " + each.master;
            const auto count = CLng(rows->GetValue(1));
            finding.found = IdText(column, id) + ", " + std::to_string(count) + (count == 1 ? " row" : " rows");
            findings.push_back(finding);
        }
    }
}

}  // namespace kpTables::bookkeeping
