// The filtered list of bills.
#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

// A filter counts unless it equals what "not given" looks like. Null equals nothing, so it counts: it is pasted as "",
// which leaves an id's clause without a number.

std::string TextFilter(const Template<"text">& clause, const Variant& value) {
    return EqualsText(value, "").value_or(false) ? "" : Fill(clause, "text"_gap(value));
}

std::string IdFilter(const Template<"id">& clause, const Variant& id) {
    return EqualsNumber(id, 0).value_or(false) ? "" : Fill(clause, "id"_gap(id));
}

std::string HavingClause(const std::string& quantity, const std::string& amount) {
    if (!quantity.empty() && !amount.empty())
        return Fill("HAVING {quantity} And {amount}", "quantity"_gap(quantity), "amount"_gap(amount));
    if (!quantity.empty()) return Fill("HAVING {quantity}", "quantity"_gap(quantity));
    if (!amount.empty()) return Fill(" HAVING {amount}", "amount"_gap(amount));
    return "";
}

std::string BillList(bool inbound, const std::string& conditions, const std::string& having) {
    return Fill(
        "SELECT Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Sum(Rec.数量) AS 数量, "
        "Sum(Rec.除税金额) AS 金额,Sum(Rec.税额) As 税额,Sum(Rec.金额) As 合计, Lst.BillID, Lst.录入员, "
        "Lst.录入日期, Lst.审核员, Lst.审核日期, Lst.说明, dp.仓库名称, ks.企业名称,pj.项目名称,pj.项目编号 "
        "FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN ({partners} AS ks RIGHT JOIN "
        "({kind}目录 AS Lst LEFT JOIN {kind}记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) "
        "ON dp.dpID = Lst.dpID) ON pj.项目ID = Lst.pjID {where} "
        "GROUP BY Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Lst.BillID, Lst.录入员, "
        "Lst.录入日期, Lst.审核员, Lst.审核日期, Lst.说明, Rec.dpID, dp.仓库名称,ks.企业名称,pj.项目名称,pj.项目编号 "
        "{having} Order by Lst.月份,Lst.单据类型,Lst.单据编号 ",
        "partners"_gap(inbound ? "厂商资料" : "客户资料"), "kind"_gap(inbound ? "入库" : "出库"),
        "where"_gap(WhereClause(" WHERE {conditions}", conditions)), "having"_gap(having));
}

}  // namespace

RecordsetPtr CTables::rs单据列表(InOut<Variant> rWhich, InOut<Variant> r单据类型, InOut<Variant> r起始日期,
                                 InOut<Variant> r结束日期, InOut<Variant> r起始编号, InOut<Variant> r结束编号,
                                 InOut<Variant> rdpID, InOut<Variant> rksID, InOut<std::int32_t> rpjID,
                                 InOut<Variant> r经手人, InOut<Variant> r交接人, InOut<Variant> r包装,
                                 InOut<Variant> /*r包装Opr*/, InOut<Variant> /*r货位*/, InOut<Variant> /*r货位Opr*/,
                                 InOut<Variant> /*r期限*/, InOut<Variant> /*r期限Opr*/, InOut<Variant> r最小数量,
                                 InOut<Variant> r最大数量, InOut<Variant> r最小金额, InOut<Variant> r最大金额) {
    const auto text = Composed([&] {
        const std::string packing = TextFilter(" And 包装='{text}'", r包装);
        // The packing is compared twice, kept for compatibility.
        const std::string conditions = TextFilter(" And 类型='{text}'", r单据类型) +
                                       IdFilter(" And Lst.dpID={id}", rdpID) + IdFilter(" And Lst.ksID={id}", rksID) +
                                       IdFilter(" And Lst.pjID={id}", rpjID.get()) +
                                       Get_DateSql(r起始日期, r结束日期, isSQL_) + Get_NoSql(r起始编号, r结束编号) +
                                       TextFilter(" And 经手人='{text}'", r经手人) +
                                       TextFilter(" And 交接人='{text}'", r交接人) + packing + packing;
        const std::string having = HavingClause(SumBounds("Sum(Rec.数量)", r最小数量, r最大数量),
                                                SumBounds("Sum(Rec.除税金额)", r最小金额, r最大金额));
        return BillList(EqualsText(rWhich, "入库").value_or(false), conditions, having);
    });
    return text ? db::Query(cnn_, *text) : nullptr;
}

}  // namespace kpTables
