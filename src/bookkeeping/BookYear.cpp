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

}  // namespace kpTables::bookkeeping
