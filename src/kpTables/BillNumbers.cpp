// Bill identity: counts for numbering and display, and the two halves of a transfer.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Directions.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// The first bill of the other direction with the current row's kind and number, in a month; 0 without one.
std::int32_t Counterpart(const ConnectionPtr& cnn, const std::string& otherKind, Recordset& bill, std::int16_t month) {
    const auto other = db::OpenText(
        cnn, Fill("Select * From {kind}目录 Where 月份={month} And 单据类型='{type}' And 单据编号='{number}'",
                  "kind"_gap(otherKind), "month"_gap(month), "type"_gap(bill.Fields("单据类型").Value()),
                  "number"_gap(bill.Fields("单据编号").Value())));
    return other->RecordCount() > 0 ? CLng(other->Fields("BillID").Value()) : 0;
}

}  // namespace

std::int16_t CTables::Get_BillNum(std::int32_t rdpID, std::int16_t rMonth, const std::string& rBillType,
                                  InOut<std::string> rWhich) {
    const std::string ofType = TextClause(" And 单据类型='{text}'", rBillType);
    const std::string text =
        rdpID == 0 ? Fill("Select BillID from {kind}目录 Where 月份={month}{ofType}", "kind"_gap(rWhich),
                          "month"_gap(rMonth), "ofType"_gap(ofType))
                   : Fill("Select BillID From {kind}目录 Where 月份={month} And dpID={warehouse}{ofType}",
                          "kind"_gap(rWhich), "month"_gap(rMonth), "warehouse"_gap(rdpID), "ofType"_gap(ofType));
    return CInt(db::Query(cnn_, text)->RecordCount());
}

std::string CTables::GetBillCount(const std::string& rWhich, InOut<std::string> rKind, InOut<std::int16_t> rBeginMonth,
                                  InOut<std::int16_t> rStartDay, InOut<std::int16_t> rEndMonth,
                                  InOut<std::int16_t> rEndDay) {
    // Only the defaults bound the end: what the caller names is sent as 0, kept for compatibility.
    constexpr std::int32_t kLastMonth = 12;
    constexpr std::int32_t kLastDay = 31;
    const std::int32_t endMonth = rEndMonth.get() == 0 ? kLastMonth : 0;
    const std::int32_t endDay = rEndDay.get() == 0 ? kLastDay : 0;
    const auto bills = db::Query(cnn_, Fill("Select * From {kind}目录 Where ((月份>={beginMonth} And 日子>={startDay}) "
                                            "And (月份<={endMonth} And 日子<={endDay}{ofType}))",
                                            "kind"_gap(rWhich), "beginMonth"_gap(rBeginMonth),
                                            "startDay"_gap(rStartDay), "endMonth"_gap(endMonth), "endDay"_gap(endDay),
                                            "ofType"_gap(TrimmedTextClause(" And 类型='{text}'", rKind.get()))));
    const std::int32_t count = bills->RecordCount();
    return count != 0 ? Format(count, "##### 张") : "(无)";
}

std::int32_t CTables::GetShiftID(const Variant& rBillID, InOut<std::string> rWhich) {
    return Trapped(0, [&] {
        const std::string& which = rWhich;
        if (which != kOutbound && which != kInbound) return 0;
        const auto bill = db::OpenText(
            cnn_, Fill("Select * From {kind}目录 Where billid={bill}", "kind"_gap(which), "bill"_gap(rBillID)));
        if (bill->RecordCount() < 1) return 0;
        const Variant month = bill->Fields("月份").Value();
        return Counterpart(cnn_, which == kOutbound ? kInbound : kOutbound, *bill,
                           month.IsNull() ? std::int16_t{0} : CInt(month));
    });
}

// Unlike in GetShiftID, nothing is trapped, and a month that is Null is an error; kept for compatibility.
std::int32_t CTables::Get_FromBillID(const Variant& rBillID) {
    const auto bill = db::OpenText(cnn_, Fill("Select * From 入库目录 Where billID={bill}", "bill"_gap(rBillID)));
    if (bill->RecordCount() < 1) return 0;
    return Counterpart(cnn_, kOutbound, *bill, CInt(bill->Fields("月份").Value()));
}

}  // namespace kpTables
