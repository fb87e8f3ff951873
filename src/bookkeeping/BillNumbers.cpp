#include "kpTables/bookkeeping/BillNumbers.h"

#include "bookkeeping/BillRows.h"
#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

std::string PrefixOf(const StoredBill& bill) {
    const bool inbound = bill.family == BillFamily::Inbound;
    const BillType* known = FindBillType(bill.type);
    if (known) return inbound ? known->inboundPrefix : known->outboundPrefix;
    return inbound ? "RK" : "CK";
}

std::string PaddedNumber(std::int32_t number, std::size_t width) { return Format(number, std::string(width, '0')); }

/// A place in a pattern: "序号" or "序号:6".
struct PatternPlace {
    std::string name;
    std::size_t width = 1;
};

PatternPlace PlaceOf(const std::string& text) {
    const auto colon = text.find(':');
    PatternPlace place;
    place.name = text.substr(0, colon);
    if (place.name == "月份" || place.name == "日子") place.width = 2;
    if (place.name == "序号") place.width = 4;
    if (colon == std::string::npos) return place;
    const std::string width = text.substr(colon + 1);
    if (width.size() != 1 || width[0] < '1' || width[0] > '9') {
        RefuseWith(Message("the number pattern has {{1}}: after the colon stands a digit from 1 to 9", text));
    }
    place.width = static_cast<std::size_t>(width[0] - '0');
    return place;
}

std::string PlaceText(const PatternPlace& place, const StoredBill& bill, std::int32_t count) {
    if (place.name == "前缀") return PrefixOf(bill);
    if (place.name == "仓库") return PaddedNumber(bill.warehouse, place.width);
    if (place.name == "年份") return PaddedNumber(bill.date->Year(), place.width);
    if (place.name == "月份") return PaddedNumber(bill.date->Month(), place.width);
    if (place.name == "日子") return PaddedNumber(bill.date->Day(), place.width);
    if (place.name == "序号") return PaddedNumber(count, place.width);
    RefuseWith(
        Message("the number pattern has {{1}}; in braces stand 前缀, 仓库, 年份, 月份, 日子 and 序号", place.name));
}

std::string NumberBy(const std::string& pattern, const StoredBill& bill, std::int32_t count) {
    std::string number;
    for (std::size_t at = 0; at < pattern.size();) {
        if (pattern[at] != '{') {
            number += pattern[at++];
            continue;
        }
        const auto end = pattern.find('}', at);
        if (end == std::string::npos)
            RefuseWith(Message("the number pattern {1} has a brace that is not closed", pattern));
        number += PlaceText(PlaceOf(pattern.substr(at + 1, end - at - 1)), bill, count);
        at = end + 1;
    }
    return number;
}

bool HasPlace(const std::string& pattern, const std::string& name) {
    return pattern.find("{" + name + "}") != std::string::npos || pattern.find("{" + name + ":") != std::string::npos;
}

bool IsTakenIn(Connection& book, BillFamily family, const StoredBill& bill, std::int32_t except) {
    const BillKind& kind = TablesOf(family);
    return HasRows(book, "Select TOP 1 " + std::string(kind.key) + " From " + kind.Headers() +
                             " Where 月份=" + std::to_string(bill.date->Month()) + " And 单据类型='" +
                             Quoted(bill.type) + "' And 单据编号='" + Quoted(bill.number) + "' And " + kind.key + "<>" +
                             std::to_string(except));
}

}  // namespace

void CheckNumberPattern(const std::string& pattern) {
    StoredBill bill;
    bill.date = Date();
    NumberBy(pattern, bill, 1);
    if (!HasPlace(pattern, "序号")) RefuseWith(Message("the number pattern {1} has no {序号}", pattern));
}

bool IsNumberTaken(Connection& book, const StoredBill& bill, std::int32_t except, std::int32_t counterpart) {
    return IsTakenIn(book, bill.family, bill, except) ||
           (bill.IsTransfer() && IsTakenIn(book, OtherDirection(bill.family), bill, counterpart));
}

std::string NextBillNumber(const ConnectionPtr& book, const StoredBill& bill) {
    CheckedTables checked(book);
    std::string pattern = checked.Ask([](CTables& tables) { return tables.Get_Option(kNumberPatternOption); });
    if (pattern.empty()) pattern = kNumberPattern;
    CheckNumberPattern(pattern);
    const std::int32_t warehouse = HasPlace(pattern, "仓库") ? bill.warehouse : 0;
    const auto month = static_cast<std::int16_t>(bill.date->Month());
    StoredBill numbered = bill;
    std::int32_t count = checked.Ask([&](CTables& tables) {
        return tables.Get_BillNum(warehouse, month, Quoted(bill.type), SelectorOf(bill.family));
    });
    do {
        numbered.number = NumberBy(pattern, bill, ++count);
    } while (IsNumberTaken(*book, numbered));
    return numbered.number;
}

}  // namespace kpTables::bookkeeping
