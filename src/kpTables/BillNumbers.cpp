// Bill identity: counts for numbering and display, and the two halves of a transfer.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fragments.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

const char* const kInbound = "入库";
const char* const kOutbound = "出库";

/// The first bill of the other direction with the current row's kind and number, in a month; 0 without one.
std::int32_t Counterpart(const ConnectionPtr& cnn, const std::string& otherKind, Recordset& bill, std::int16_t month) {
    const auto other = db::OpenText(cnn, "Select * From " + otherKind + "目录 Where 月份=" + Text(month) +
                                             " And 单据类型='" + Text(bill.Fields("单据类型").Value()) +
                                             "' And 单据编号='" + Text(bill.Fields("单据编号").Value()) + "'");
    return other->RecordCount() > 0 ? CLng(other->Fields("BillID").Value()) : 0;
}

}  // namespace

std::int16_t CTables::Get_BillNum(std::int32_t rdpID, std::int16_t rMonth, const std::string& rBillType,
                                  InOut<std::string> rWhich) {
    const std::string warehouse = rdpID != 0 ? " And dpID=" + Text(rdpID) : "";
    const auto bills =
        db::Query(cnn_, std::string("Select BillID ") + (rdpID != 0 ? "From " : "from ") + rWhich.get() +
                            "目录 Where 月份=" + Text(rMonth) + warehouse + TextPiece(" And 单据类型='", rBillType));
    return CInt(bills->RecordCount());
}

std::string CTables::GetBillCount(const std::string& rWhich, InOut<std::string> rKind, InOut<std::int16_t> rBeginMonth,
                                  InOut<std::int16_t> rStartDay, InOut<std::int16_t> rEndMonth,
                                  InOut<std::int16_t> rEndDay) {
    // Only the defaults bound the end: what the caller names is sent as 0, on purpose.
    constexpr std::int32_t kLastMonth = 12;
    constexpr std::int32_t kLastDay = 31;
    const std::int32_t endMonth = rEndMonth.get() == 0 ? kLastMonth : 0;
    const std::int32_t endDay = rEndDay.get() == 0 ? kLastDay : 0;
    const std::string kind = Trim(rKind.get()).empty() ? "" : " And 类型='" + rKind.get() + "'";
    const auto bills = db::Query(cnn_, "Select * From " + rWhich + "目录 Where ((月份>=" + Text(rBeginMonth.get()) +
                                           " And 日子>=" + Text(rStartDay.get()) + ") And (月份<=" + Text(endMonth) +
                                           " And 日子<=" + Text(endDay) + kind + "))");
    const std::int32_t count = bills->RecordCount();
    return count != 0 ? Format(count, "##### 张") : "(无)";
}

std::int32_t CTables::GetShiftID(const Variant& rBillID, InOut<std::string> rWhich) {
    try {
        const std::string& which = rWhich;
        if (which != kOutbound && which != kInbound) return 0;
        const auto bill = db::OpenText(cnn_, "Select * From " + which + "目录 Where billid=" + Text(rBillID));
        if (bill->RecordCount() < 1) return 0;
        const Variant month = bill->Fields("月份").Value();
        return Counterpart(cnn_, which == kOutbound ? kInbound : kOutbound, *bill,
                           month.IsNull() ? std::int16_t{0} : CInt(month));
    } catch (const std::exception&) {
        return 0;
    }
}

// Unlike GetShiftID on purpose: nothing is trapped, and a month that is Null is an error.
std::int32_t CTables::Get_FromBillID(const Variant& rBillID) {
    const auto bill = db::OpenText(cnn_, "Select * From 入库目录 Where billID=" + Text(rBillID));
    if (bill->RecordCount() < 1) return 0;
    return Counterpart(cnn_, kOutbound, *bill, CInt(bill->Fields("月份").Value()));
}

}  // namespace kpTables
