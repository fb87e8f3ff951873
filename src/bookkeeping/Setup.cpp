#include "bookkeeping/Setup.h"

#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

void Setup::Store(const std::string& item, const Variant& value) {
    Tables().Update_AccInfo(item, Variant(value));
    Check();
    // Update_AccInfo skips what fails in AccInfo.
    const auto kept = Book().Execute("Select " + item + " From AccInfo");
    if (kept->Eof() || Text(kept->GetValue(0)) != Text(value)) RefuseWith(Message("AccInfo does not keep {1}", item));
}

void Setup::StoreDates(std::int32_t year, std::int32_t month) {
    const Date first = Date::FromYearMonthDay(year, month, 1);
    Store("建帐日期", Format(first, "yyyy年MM月dd日"));
    Store("当前日期", first.ToText());
}

void Setup::Check(bool answer) {
    checked_.Check();
    if (!answer) RefuseWith(Message("the book cannot be set up"));
}

}  // namespace kpTables::bookkeeping
