// The daily report: a day's sums per product, and a month's movements per day.
#include <string_view>
#include <utility>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/Numbers.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// The day itself or, with total, its month before it.
std::string WhereDay(Date day, bool total, bool isSQL) {
    const Date first = Date::FromSerial(day.Serial() - day.Day() + 1);
    const auto date = "date"_gap(BillDate(isSQL));
    const auto last = "day"_gap(day);
    if (isSQL) {
        if (!total) return Fill("Where ({date}=CAST('{day}' AS DATETIME)) ", date, last);
        // The first date stands without quotes, kept for compatibility.
        return Fill("Where ({date}>=CAST({first} AS DATETIME)) And ({date}<CAST('{day}' AS DATETIME)) ", date,
                    "first"_gap(first), last);
    }
    if (!total) return Fill("Where ({date}=#{day}#) ", date, last);
    return Fill("Where ({date}>=#{first}#) And ({date}<#{day}#) ", date, "first"_gap(first), last);
}

std::string_view OfKind(std::string_view which) {
    if (which == "调拨") return " And (Lst.单据类型='调拨单') ";
    if (which == "购进" || which == "销售") return " And (Lst.单据类型='普通发票' OR Lst.单据类型='增值税发票') ";
    return "";
}

/// Always of the outbound lines, kept for compatibility.
std::string ServerRecords(const std::string& where) {
    return Fill(
        "SELECT Prod.ClassCode, rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号,Prod.计量单位 , "
        "Prod.进位方法, Prod.最低库存, Prod.最高库存, Sum(rec.数量) AS 数量, AVG(rec.除税单价) AS 单价, "
        "SUM(rec.除税金额) AS 金额, SUM(rec.税额) AS 税额, SUM(rec.金额) AS 合计  "
        "FROM 出库记录 rec INNER JOIN  出库目录 lst ON rec.BillID = lst.BillID "
        "INNER JOIN  商品设置 Prod ON rec.pdID = Prod.pdID {where} "
        "GROUP BY Prod.ClassCode, rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格,Prod.型号 , Prod.计量单位, "
        "Prod.进位方法, Prod.最低库存, Prod.最高库存  ORDER BY Prod.ClassCode, Prod.商品编号",
        "where"_gap(where));
}

/// kind is "入库" or "出库".
std::string JetRecords(std::string_view kind, const std::string& where) {
    return Fill(
        "SELECT Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位,"
        "Prod.进位方法,Prod.最低库存,Prod.最高库存, Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 单价, "
        "Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 "
        "FROM ({kind}记录 AS rec INNER JOIN {kind}目录 AS lst ON Rec.BillID = Lst.BillID) "
        "INNER JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID {where} "
        "GROUP BY Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格, Prod.型号, Prod.计量单位, "
        "Prod.进位方法,Prod.最低库存,Prod.最高库存  ORDER BY Prod.ClassCode,Prod.商品编号 ",
        "kind"_gap(kind), "where"_gap(where));
}

/// Fields of a day's row, in order.
enum DayField { kDay, kOpening, kOpeningAmount, kIn, kInAmount, kOut, kOutAmount, kClosing, kClosingAmount };

std::vector<FieldInfo> DayFields() {
    std::vector<FieldInfo> fields = {{"日子", VarType::Long}};
    for (const char* name :
         {"期初数量", "期初金额", "入库数量", "入库金额", "出库数量", "出库金额", "库存数量", "库存金额"})
        fields.push_back({name, VarType::Double});
    return fields;
}

void AddDay(Recordset& days, std::int32_t day) {
    days.AddNew();
    days.SetValue(kDay, day);
    for (int field = kOpening; field <= kClosingAmount; ++field) days.SetValue(field, 0.0);
}

/// Moves to a day's row; false when there is none.
bool FindDay(Recordset& days, std::int32_t day) {
    if (days.RecordCount() == 0) return false;
    days.MoveFirst();
    days.Find(Fill("日子={day}", "day"_gap(day)));
    return !days.Eof();
}

/// Movements of one kind ("入库" or "出库") per day; where bounds the headers, aliased Lst.
RecordsetPtr DayMovements(const ConnectionPtr& cnn, std::string_view kind, const std::string& where) {
    return db::Query(cnn, Fill("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 "
                               "FROM {kind}目录 AS Lst INNER JOIN {kind}记录 AS Rec ON Lst.BillID = Rec.BillID {where} "
                               "GROUP BY Lst.月份, Lst.日子 Order by 日子",
                               "kind"_gap(kind), "where"_gap(where)));
}

/// Writes each day's quantity and amount into the day's row, which is added at the end when there is none.
void WriteMovements(Recordset& days, Recordset& movements, DayField quantity, DayField amount) {
    for (; !movements.Eof(); movements.MoveNext()) {
        const std::int32_t day = CLng(movements.Fields("日子").Value());
        if (!FindDay(days, day)) AddDay(days, day);
        days.SetValue(quantity, vDbl(movements.Fields("数量").Value()));
        days.SetValue(amount, vDbl(movements.Fields("金额").Value()));
        days.Update();
    }
}

/// Carries the stock through the days in the order of their rows.
void CarryStock(Recordset& days, double quantity, Currency amount) {
    const auto value = [&days](DayField field) { return CDbl(days.GetValue(field)); };
    for (days.MoveFirst(); !days.Eof(); days.MoveNext()) {
        days.SetValue(kOpening, quantity);
        days.SetValue(kOpeningAmount, amount.ToDouble());
        quantity = quantity + value(kIn) - value(kOut);
        amount = CCur(amount.ToDouble() + value(kInAmount) - value(kOutAmount));
        days.SetValue(kClosing, quantity);
        days.SetValue(kClosingAmount, amount.ToDouble());
        days.Update();
    }
    days.MoveFirst();
}

}  // namespace

RecordsetPtr CTables::rs日报记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rksID, InOut<Date> rDate,
                                 InOut<std::string> rWhich, InOut<bool> rTotal) {
    const std::string& which = rWhich;
    const std::string where =
        Fill("{ofDay}{ofWarehouse}{ofPartner}{ofKind}", "ofDay"_gap(WhereDay(rDate, rTotal, isSQL_)),
             "ofWarehouse"_gap(IdClause(" And Lst.dpID={id}", rdpID)),
             "ofPartner"_gap(IdClause(" And Lst.ksID={id}", rksID)), "ofKind"_gap(OfKind(which)));
    if (isSQL_) return db::Query(cnn_, ServerRecords(where));
    const bool inbound = std::string_view("入库、购进、调入").find(which) != std::string_view::npos;
    return db::Query(cnn_, JetRecords(inbound ? "入库" : "出库", where));
}

RecordsetPtr CTables::rs日报列表(InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID) {
    auto days = std::make_shared<MemoryRecordset>(DayFields());
    const auto month = "month"_gap(rMonth);
    const std::string where =
        Fill("Where 月份={month}{ofWarehouse}", month, "ofWarehouse"_gap(IdClause(" And Lst.dpID={id}", rdpID)));
    WriteMovements(*days, *DayMovements(cnn_, "入库", where), kIn, kInAmount);
    // A day without inbound movements comes after all that have some, kept for compatibility.
    WriteMovements(*days, *DayMovements(cnn_, "出库", where), kOut, kOutAmount);
    const auto opening =
        db::Query(cnn_, Fill("Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 "
                             "Where 月份={month}{ofWarehouse}",
                             month, "ofWarehouse"_gap(IdClause(" And dpID={id}", rdpID))));
    if (days->RecordCount() > 0)
        CarryStock(*days, vDbl(opening->Fields("数量").Value()), vCur(opening->Fields("金额").Value()));
    return days;
}

}  // namespace kpTables
