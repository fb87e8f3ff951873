// The list of delivery work orders.
#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

bool IsNotZero(const Variant& value) { return !EqualsNumber(value, 0).value_or(true); }

bool IsAboveZero(const Variant& value) {
    const auto order = Compare(value, std::int16_t{0});
    return order && *order > 0;
}

std::string NumberFilter(const Template<"id">& clause, const Variant& id) {
    return IsAboveZero(id) ? Fill(clause, "id"_gap(id)) : "";
}

std::string FlagFilter(const char* clause, const Variant& flag) { return IsNotZero(flag) ? clause : ""; }

using ComparedClause = Template<"operator", "value">;

std::string ComparedNumber(const ComparedClause& clause, const Variant& op, const Variant& value) {
    return IsNotZero(value) ? Fill(clause, "operator"_gap(op), "value"_gap(value)) : "";
}

std::string ComparedText(const ComparedClause& clause, const Variant& op, const Variant& value) {
    const auto compared = "operator"_gap(op);
    const auto text = "value"_gap(value);
    return text.value.empty() ? "" : Fill(clause, compared, text);
}

/// The bounds on the sums follow without an "And", in a statement that has no groups: the database refuses one that
/// carries them. Kept for compatibility.
std::string Deliveries(const std::string& filters, const std::string& sums) {
    return Fill(
        "SELECT Lst.BillID As BillID, Lst.年份, Lst.月份, Lst.日子, Lst.单据编号, Lst.录入员, Lst.录入日期, "
        "Lst.车牌号, Lst.司机, Lst.跟车人, Lst.货款,Lst.外用车, Lst.违章, Lst.部门ID, Lst.说明, Lst.审核员, "
        "Lst.审核日期, Rec.*, Supp.企业名称 AS 发货单位, Cust.企业名称 AS 收货单位, Pd.商品名称, Pd.型号, "
        "Pd.规格, Pd.计量单位, Pd.进位方法 "
        "FROM 商品设置 AS Pd INNER JOIN (客户资料 AS Cust INNER JOIN (厂商资料 AS Supp INNER JOIN "
        "(派遣目录 AS Lst INNER JOIN 派遣记录 AS Rec ON Lst.BillID = Rec.BillID) ON Supp.KSID = Rec.厂商ID) "
        "ON Cust.KSID = Rec.客户ID) ON Pd.pdID = Rec.pdID {where}ORDER BY Lst.年份, Lst.月份, Lst.日子, Lst.单据编号",
        "where"_gap(filters.empty() ? sums : WhereClause(" Where (({conditions}))", filters + sums)));
}

}  // namespace

RecordsetPtr CTables::rs工作单列表(InOut<Variant> r起始日期, InOut<Variant> r结束日期, InOut<Variant> r起始编号,
                                   InOut<Variant> r结束编号, InOut<Variant> r车牌号, InOut<Variant> r司机,
                                   InOut<Variant> r跟车人, InOut<Variant> r收货款, InOut<Variant> r收货款Opr,
                                   InOut<Variant> r外用车, InOut<Variant> r违章, InOut<Variant> r厂商ID,
                                   InOut<Variant> r配送单号, InOut<Variant> r配送单号Opr, InOut<Variant> r客户ID,
                                   InOut<Variant> r送货地点, InOut<Variant> /*rpdID*/, InOut<Variant> r最小数量,
                                   InOut<Variant> r最大数量, InOut<Variant> r最小金额, InOut<Variant> r最大金额) {
    const auto text = Composed([&] {
        const std::string filters =
            Get_DateSql(r起始日期, r结束日期, isSQL_) + Get_NoSql(r起始编号, r结束编号) +
            TextClause(" And Lst.车牌号='{text}'", Text(r车牌号)) + TextClause(" And Lst.司机='{text}'", Text(r司机)) +
            TextClause(" And Lst.跟车人='{text}'", Text(r跟车人)) +
            ComparedNumber(" And Lst.货款{operator}{value}", r收货款Opr, r收货款) +
            FlagFilter(" And Lst.外用车<0", r外用车) + FlagFilter(" And Lst.违章<0", r违章) +
            NumberFilter(" And Rec.厂商ID={id}", r厂商ID) +
            ComparedText(" And Rec.配送单号{operator}'{value}'", r配送单号Opr, r配送单号) +
            NumberFilter(" And Rec.客户ID={id}", r客户ID) + TextClause(" And Rec.送货地点='{text}'", Text(r送货地点));
        return Deliveries(filters, SumBounds("Sum(Rec.数量)", r最小数量, r最大数量) +
                                       SumBounds("Sum(Rec.金额)", r最小金额, r最大金额));
    });
    return text ? db::Query(cnn_, *text) : nullptr;
}

}  // namespace kpTables
