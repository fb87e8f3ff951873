#include "kpTables/bookkeeping/BookYear.h"

#include <algorithm>
#include <string>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

std::int32_t BookYear(Connection& book) {
    std::int32_t year = NumberOf(book, "Select Max(年份) As y From 仓库余额表");
    if (year > 0) return year;
    for (const BillKind& kind : kBillKinds)
        year = std::max(year, NumberOf(book, "Select Max(年份) As y From " + kind.Headers()));
    if (year > 0) return year;
    for (const char* item : {"当前日期", "建帐日期"}) {
        const auto rows = book.Execute("Select Discription From 系统选项 Where Item='" + std::string(item) + "'");
        if (!rows->Eof() && IsDate(rows->GetValue(0))) return CDate(rows->GetValue(0)).Year();
    }
    return 0;
}

std::int32_t FirstMonth(Connection& book) {
    // A book that was not begun for a firm has the day it was made in its settings, and none in AccInfo.
    const auto rows = book.Execute("Select 建帐日期 From AccInfo");
    if (rows->Eof() || !IsDate(rows->GetValue(0))) return 1;
    const Date first = CDate(rows->GetValue(0));
    return first.Year() == BookYear(book) ? first.Month() : 1;
}

}  // namespace kpTables::bookkeeping
