#include "bookkeeping/ReferenceCheck.h"

#include <string>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/MasterTables.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/References.h"
#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

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
                            IdOf(rows->GetValue(1)), Message("{1}: lines without a header", kind.Lines()),
                            Variant::Null(),
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
                            Message("{1}: a header without lines", kind.Headers()), Variant::Null(),
                            IdText(key, rows->GetValue(0))});
    }
}

/// Each id without a row in the master table, and how often it stands.
std::string UnknownIds(const Reference& reference) {
    const std::string column = reference.column;
    const MasterTable& master = TableOf(reference.master);
    return "Select T.编码,T.行数 From (Select " + column + " As 编码,Count(*) As 行数 From " + reference.table +
           " Group by " + column + ") As T Where Not Exists (Select * From " + master.table + " As M Where M." +
           master.id + "=T.编码)" + (reference.by == ReferenceBy::IdOrNone ? " And T.编码<>0" : "") +
           " Order by T.编码";
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
        if (!each.checked) continue;
        const std::string column = each.column;
        const auto rows = book.Execute(UnknownIds(each));
        for (; !rows->Eof(); rows->MoveNext()) {
            const Variant id = rows->GetValue(0);
            Finding finding;
            if (column == "dpID") finding.warehouse = IdOf(id);
            if (column == "pdID") finding.product = IdOf(id);
            finding.what = Message("{1}.{2} has no row in {3}", each.table, column, TableOf(each.master).table);
            const auto count = CLng(rows->GetValue(1));
            finding.found = IdText(column, id) + ", " + CountedMessage(count, "{1} row", "{1} rows");
            findings.push_back(finding);
        }
    }
}

}  // namespace kpTables::bookkeeping
