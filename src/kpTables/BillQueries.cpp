// Ad-hoc queries on bills and their lines.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// Positions in the array of filter values, from its lower bound on. An operator follows its value.
enum Position : std::size_t {
    kFirstDate,
    kLastDate,
    kFirstNumber,
    kLastNumber,
    kHandler,
    kCounterpart,
    kPacking,
    kSlot = 8,
    kTerm = 10,
    kPositions = 12,
};

/// The array of filter values. Error 9 when it has too few elements or more than one dimension.
class FilterValues {
public:
    /// placeholder is a text that counts as not given.
    explicit FilterValues(const std::shared_ptr<VariantArray>& array, std::string_view placeholder = "")
        : array_(array), placeholder_(placeholder) {
        if (!array || array->bounds.size() != 1 || array->items.size() < kPositions)
            Raise(ErrorNumber::SubscriptOutOfRange);
    }

    std::string Dates(bool isSQL) const { return Get_DateSql(At(kFirstDate), At(kLastDate), isSQL); }
    std::string Numbers() const { return Get_NoSql(At(kFirstNumber), At(kLastNumber)); }
    /// Handler, counterpart, packing, storage slot and term of a line.
    std::string LineConditions() const {
        return TextClause(" And 经手人='{text}'", Given(kHandler)) +
               TextClause(" And 交接人='{text}'", Given(kCounterpart)) +
               Compared(" And 包装{operator}'{value}'", kPacking) + Compared(" And 货位{operator}'{value}'", kSlot) +
               Compared(" And 期限{operator}{value}", kTerm);
    }

private:
    const Variant& At(std::size_t position) const { return array_->items[position]; }
    /// The text of a value, "" when it is not given.
    std::string Given(Position position) const {
        const std::string text = CStr(At(position));
        return text == placeholder_ ? std::string() : text;
    }
    std::string Compared(const Template<"operator", "value">& clause, Position position) const {
        const std::string value = Given(position);
        return value.empty() ? "" : Fill(clause, "operator"_gap(CStr(At(position + 1U))), "value"_gap(value));
    }

    std::shared_ptr<VariantArray> array_;
    std::string_view placeholder_;
};

constexpr std::string_view kUnnamed = "(无名称)";

/// What the two recordsets are asked by.
struct LineFilter {
    const std::string& kind;
    std::int32_t warehouse;
    std::int32_t partner;
    std::int32_t project;
    const std::shared_ptr<VariantArray>& values;
};

std::string WhereLines(const LineFilter& filter, bool isSQL) {
    const FilterValues values(filter.values);
    return WhereClause("Where {conditions}", values.Dates(isSQL) + IdClause(" And Lst.dpID={id}", filter.warehouse) +
                                                 TrimmedTextClause(" And 类型='{text}'", filter.kind) +
                                                 values.Numbers() + IdClause(" And Lst.ksID={id}", filter.partner) +
                                                 IdClause(" And Lst.pjID={id}", filter.project) +
                                                 values.LineConditions());
}

std::string GroupColumn(const std::string& group) {
    const bool ofProject = group == "项目名称" || group == "项目编号";
    return ofProject ? Fill("pj.{column},", "column"_gap(group)) : TextClause("rec.{text},", group);
}

std::string ProductSummary(const std::string& which, const std::string& group, const std::string& where) {
    return Fill(
        "SELECT Rec.pdID,{group} Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, "
        "Sum(Rec.税额) AS 税额, Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 除税金额, Prod.商品名称, "
        "Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, "
        "Prod.ClassCode "
        "FROM 项目设置 As pj RIGHT JOIN (({which}目录 AS Lst INNER JOIN {which}记录 AS Rec ON Lst.BillID = Rec.BillID) "
        "INNER JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID) ON pj.项目ID=Lst.pjID {where} GROUP BY Rec.pdID,{group} "
        "Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, "
        "Prod.最高库存, "
        "Prod.ClassCode ",
        "which"_gap(which), "group"_gap(group), "where"_gap(where));
}

/// Kept for compatibility: the partner is looked for among the customers, for inbound bills too, and the date is joined
/// in Jet's way in both dialects.
std::string MatchingLines(const std::string& which, const std::string& where) {
    return Fill(
        "SELECT (Lst.年份 & '-' & Lst.月份 & '-' &  Lst.日子) AS 日期,Lst.单据类型 AS 单据名称,Lst.类型 AS 单据类型,"
        "Lst.单据编号, Lst.单据类型, Lst.单据编号, P.pdID,P.ClassCode,P.商品名称,P.商品编号, P.规格, P.型号,P.计量单位,"
        "P.进位方法,P.最高库存,P.最低库存, R.单价, R.数量, R.金额,R.税额,R.除税单价,R.除税金额, R.经手人, R.交接人, "
        "R.包装, R.货位, J.项目编号, J.项目名称, J.工程名称 , B.企业名称 AS 单位名称,R.BillID "
        "FROM (项目设置 AS J RIGHT JOIN (({which}记录 AS R INNER JOIN {which}目录 AS Lst ON R.BillID = Lst.BillID) "
        "INNER JOIN 商品设置 AS P ON R.pdID = P.pdID) ON J.项目ID = Lst.pjID) "
        "LEFT JOIN 客户资料 AS B ON Lst.ksID = B.KSID {where}",
        "which"_gap(which), "where"_gap(where));
}

/// Headers of bills with matching lines, of a warehouse, a partner and a range of dates. The range of numbers is not
/// part of the text, but composed all the same: a number that is no text ends the query.
std::string BillsWithLines(const std::string& which, const std::string& ofProduct, std::int32_t warehouse,
                           std::int32_t partner, const FilterValues& values, bool isSQL) {
    static_cast<void>(values.Numbers());
    return Fill(
        "{which}目录 Where billID in (Select billID From {which}记录 Where True {ofProduct}{ofLines}) "
        "{ofWarehouse}{ofPartner}{ofDates}",
        "which"_gap(which), "ofProduct"_gap(ofProduct), "ofLines"_gap(values.LineConditions()),
        "ofWarehouse"_gap(IdClause(" And dpID={id}", warehouse)), "ofPartner"_gap(IdClause(" And ksID={id}", partner)),
        "ofDates"_gap(values.Dates(isSQL)));
}

}  // namespace

RecordsetPtr CTables::rsSql单据记录(InOut<std::string> rWhich, InOut<std::string> r类型, InOut<std::int32_t> rdpID,
                                    InOut<std::int32_t> rksID, InOut<std::int32_t> rpjID, InOut<std::string> rGroup,
                                    InOut<std::shared_ptr<VariantArray>> rArray) {
    const auto text = Composed([&] {
        return ProductSummary(rWhich, GroupColumn(rGroup), WhereLines({r类型, rdpID, rksID, rpjID, rArray}, isSQL_));
    });
    return text ? db::Query(cnn_, *text) : nullptr;
}

RecordsetPtr CTables::rsSql查询记录(InOut<std::string> rWhich, InOut<std::string> r类型, InOut<std::int32_t> rdpID,
                                    InOut<std::int32_t> rksID, InOut<std::int32_t> rpjID,
                                    InOut<std::shared_ptr<VariantArray>> rArray) {
    const auto text = Composed([&] {
        return MatchingLines(rWhich, WhereLines({r类型, rdpID, rksID, rpjID, rArray}, isSQL_));
    });
    return text ? db::Query(cnn_, *text) : nullptr;
}

std::string CTables::Get单据列表(InOut<std::string> rWhich, InOut<std::string> /*r类型*/, InOut<std::int32_t> rdpID,
                                 InOut<std::int32_t> rksID, InOut<std::int32_t> rpdID,
                                 InOut<std::shared_ptr<VariantArray>> rArray) {
    if (rpdID.get() == 0) return "";
    const auto text = Composed([&] {
        return Fill("Select 单据编号 FROM {bills} Order by 月份,BillType,单据编号",
                    "bills"_gap(BillsWithLines(rWhich, Fill(" And pdID={product}", "product"_gap(rpdID)), rdpID, rksID,
                                               FilterValues(rArray, kUnnamed), isSQL_)));
    });
    if (!text) return "";
    std::string numbers;
    for (const auto bills = db::Query(cnn_, *text); !bills->Eof(); bills->MoveNext())
        numbers += (numbers.empty() ? "" : ";") + Text(bills->Fields("单据编号").Value());
    return numbers;
}

std::int16_t CTables::Get单据统计(InOut<std::string> rWhich, InOut<std::string> r单据名称, InOut<std::string> r单据类型,
                                  InOut<std::int32_t> rdpID, InOut<std::int32_t> rksID, InOut<std::int32_t> rpdID,
                                  InOut<std::shared_ptr<VariantArray>> rArray) {
    const auto text = Composed([&] {
        return Fill("Select Count(单据类型) As 单据计数 FROM {bills}{ofName}{ofType}",
                    "bills"_gap(BillsWithLines(rWhich, IdClause(" And pdID={id}", rpdID), rdpID, rksID,
                                               FilterValues(rArray, kUnnamed), isSQL_)),
                    "ofName"_gap(TrimmedTextClause(" And 单据类型 = '{text}'", r单据名称.get())),
                    "ofType"_gap(TrimmedTextClause(" And 类型='{text}'", r单据类型.get())));
    });
    if (!text) return 0;
    return CInt(db::Query(cnn_, *text)->Fields("单据计数").Value());
}

}  // namespace kpTables
