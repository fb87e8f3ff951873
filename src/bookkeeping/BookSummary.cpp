#include "kpTables/bookkeeping/BookSummary.h"

#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Query.h"
#include "kpTables/bookkeeping/BookYear.h"

namespace kpTables::bookkeeping {

BookSummary SummaryOf(const ConnectionPtr& book) {
    BookSummary summary;
    summary.company = CheckedTables(book).Ask([](CTables& tables) { return tables.Get_Option("单位名称"); });
    summary.year = BookYear(*book);
    summary.firstMonth = NumberOf(*book, "Select Min(月份) From 仓库余额表");
    summary.lastMonth = NumberOf(*book, "Select Max(月份) From 仓库余额表");
    return summary;
}

}  // namespace kpTables::bookkeeping
