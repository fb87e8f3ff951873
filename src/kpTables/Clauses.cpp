#include "kpTables/Clauses.h"

#include "kpTables/Convert.h"

namespace kpTables {
namespace {

bool IsGiven(const Variant& bound) {
    if (bound.IsMissing()) return false;
    const auto empty = EqualsText(bound, "");
    return empty && !*empty;
}

/// A given bound as a date's text, "" for one that is not given.
std::string DayText(const Variant& bound) { return IsGiven(bound) ? Format(CDate(bound), "yyyy-M-d") : ""; }

}  // namespace

constexpr std::string_view kBalanceFigures =
    "Avg(上期库存单价) As 上期库存单价,Sum(上期库存数量) As 上期库存数量,Sum(上期库存金额) As 上期库存金额,"
    "Avg(本期入库单价) As 本期入库单价,Sum(本期入库数量) As 本期入库数量,Sum(本期入库金额) As 本期入库金额,"
    "Sum(累计入库数量) As 累计入库数量,Sum(累计入库金额) As 累计入库金额,"
    "Avg(本期出库单价) As 本期出库单价,Sum(本期出库数量) As 本期出库数量,Sum(本期出库金额) As 本期出库金额,"
    "Sum(累计出库数量) As 累计出库数量,Sum(累计出库金额) As 累计出库金额,"
    "Avg(本期库存单价) As 本期库存单价,Sum(本期库存数量) As 本期库存数量,Sum(本期库存金额) As 本期库存金额";

std::string_view BillDate(bool isSQL) {
    if (isSQL)
        return "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)";
    return "CDATE(年份 & '-' & 月份 & '-' & 日子)";
}

std::string Get_DateSql(const Variant& first, const Variant& last, bool isSQL) {
    const auto date = "date"_gap(BillDate(isSQL));
    const std::string from = DayText(first);
    const std::string to = DayText(last);
    if (!from.empty() && !to.empty()) {
        if (isSQL)
            return Fill(" And ({date}>=CAST('{from}' AS DATETIME) And {date}<=CAST('{to}' AS DATETIME))", date,
                        "from"_gap(from), "to"_gap(to));
        return Fill(" And (({date}>=#{from}#) And ({date}<=#{to}#))", date, "from"_gap(from), "to"_gap(to));
    }
    if (!from.empty()) {
        if (isSQL) return Fill(" And {date}>=CAST('{from}' AS DATETIME) ", date, "from"_gap(from));
        return Fill(" And ({date}>=#{from}#) ", date, "from"_gap(from));
    }
    if (!to.empty()) {
        if (isSQL) return Fill(" And {date}<=CAST('{to}' AS DATETIME)", date, "to"_gap(to));
        return Fill(" And ({date}<=#{to}#)", date, "to"_gap(to));
    }
    return "";
}

std::string Get_NoSql(const Variant& first, const Variant& last) {
    const bool from = IsGiven(first);
    const bool to = IsGiven(last);
    if (from && to)
        return Fill(" And (Lst.单据编号>='{from}' And Lst.单据编号<='{to}') ", "from"_gap(first), "to"_gap(last));
    if (from) return Fill(" And Lst.单据编号>='{from}' ", "from"_gap(first));
    if (to) return Fill(" And Lst.单据编号<='{to}' ", "to"_gap(last));
    return "";
}

std::string IdClause(const Template<"id">& clause, std::int32_t id) {
    return id > 0 ? Fill(clause, "id"_gap(id)) : std::string();
}

std::string TextClause(const Template<"text">& clause, std::string_view text) {
    return text.empty() ? std::string() : Fill(clause, "text"_gap(text));
}

std::string TrimmedTextClause(const Template<"text">& clause, std::string_view text) {
    return Trim(text).empty() ? std::string() : Fill(clause, "text"_gap(text));
}

std::string SumBounds(std::string_view sum, const Variant& min, const Variant& max) {
    const auto noMin = EqualsNumber(min, 0);
    const auto noMax = EqualsNumber(max, 0);
    if (!noMin || !noMax || (*noMin && *noMax)) return "";
    if (*noMin) return Fill("{sum}<={max}", "sum"_gap(sum), "max"_gap(max));
    if (*noMax) return Fill("{sum}>={min}", "sum"_gap(sum), "min"_gap(min));
    return Fill("({sum}>={min} And {sum}<={max})", "sum"_gap(sum), "min"_gap(min), "max"_gap(max));
}

std::string WhereClause(const Template<"conditions">& clause, const std::string& conditions) {
    constexpr std::string_view kAnd = " And";
    if (!std::string_view(conditions).starts_with(kAnd)) return conditions;
    return Fill(clause, "conditions"_gap(std::string_view(conditions).substr(kAnd.size())));
}

}  // namespace kpTables
