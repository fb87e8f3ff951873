#include "kpTables/Fragments.h"

#include <cmath>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables {
namespace {

bool IsGiven(const Variant& bound) {
    if (bound.IsMissing()) return false;
    const auto empty = EqualsText(bound, "");
    return empty && !*empty;
}

std::string DayText(const Variant& bound) { return Format(CDate(bound), "yyyy-M-d"); }

std::string Compared(const std::string& op, const std::string& day, bool isSQL) {
    if (isSQL) return BillDate(isSQL) + op + "CAST('" + day + "' AS DATETIME)";
    return "(" + BillDate(isSQL) + op + "#" + day + "#)";
}

}  // namespace

const char* const kBalanceFigures =
    "Avg(上期库存单价) As 上期库存单价,Sum(上期库存数量) As 上期库存数量,Sum(上期库存金额) As 上期库存金额,"
    "Avg(本期入库单价) As 本期入库单价,Sum(本期入库数量) As 本期入库数量,Sum(本期入库金额) As 本期入库金额,"
    "Sum(累计入库数量) As 累计入库数量,Sum(累计入库金额) As 累计入库金额,"
    "Avg(本期出库单价) As 本期出库单价,Sum(本期出库数量) As 本期出库数量,Sum(本期出库金额) As 本期出库金额,"
    "Sum(累计出库数量) As 累计出库数量,Sum(累计出库金额) As 累计出库金额,"
    "Avg(本期库存单价) As 本期库存单价,Sum(本期库存数量) As 本期库存数量,Sum(本期库存金额) As 本期库存金额";

std::string BillDate(bool isSQL) {
    if (isSQL)
        return "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)";
    return "CDATE(年份 & '-' & 月份 & '-' & 日子)";
}

std::string Get_DateSql(const Variant& first, const Variant& last, bool isSQL) {
    const std::string from = IsGiven(first) ? Compared(">=", DayText(first), isSQL) : "";
    const std::string to = IsGiven(last) ? Compared("<=", DayText(last), isSQL) : "";
    if (!from.empty() && !to.empty()) return " And (" + from + " And " + to + ")";
    if (!from.empty()) return " And " + from + " ";
    if (!to.empty()) return " And " + to;
    return "";
}

std::string Get_NoSql(const Variant& first, const Variant& last) {
    const std::string from = IsGiven(first) ? "Lst.单据编号>='" + Text(first) + "'" : "";
    const std::string to = IsGiven(last) ? "Lst.单据编号<='" + Text(last) + "'" : "";
    if (!from.empty() && !to.empty()) return " And (" + from + " And " + to + ") ";
    if (!from.empty()) return " And " + from + " ";
    if (!to.empty()) return " And " + to + " ";
    return "";
}

double vDbl(const Variant& value) { return IsNumeric(value) ? CDbl(value) : 0; }

Currency vCur(const Variant& value) { return IsNumeric(value) ? CCur(value) : Currency(); }

double Finite(double number) {
    if (!std::isfinite(number)) Raise(ErrorNumber::Overflow);
    return number;
}

double CalcPrice(const Variant& amount, const Variant& quantity) {
    if (!IsNumeric(amount) || !IsNumeric(quantity)) return 0;
    const double divisor = CDbl(quantity);
    if (!(divisor > 0)) return 0;
    return Finite(CDbl(amount) / divisor);
}

std::string IdPiece(std::string_view piece, std::int32_t id) {
    return id > 0 ? std::string(piece) + Text(id) : std::string();
}

std::string TextPiece(std::string_view piece, std::string_view text) {
    return text.empty() ? std::string() : std::string(piece).append(text).append("'");
}

std::string SumBounds(const std::string& sum, const Variant& min, const Variant& max) {
    const auto noMin = EqualsNumber(min, 0);
    const auto noMax = EqualsNumber(max, 0);
    if (!noMin || !noMax || (*noMin && *noMax)) return "";
    if (*noMin) return sum + "<=" + Text(max);
    if (*noMax) return sum + ">=" + Text(min);
    return "(" + sum + ">=" + Text(min) + " And " + sum + "<=" + Text(max) + ")";
}

std::string WhereClause(const std::string& pieces, std::string_view where) {
    constexpr std::string_view kAnd = " And";
    if (!std::string_view(pieces).starts_with(kAnd)) return pieces;
    return std::string(where) + pieces.substr(kAnd.size());
}

}  // namespace kpTables
