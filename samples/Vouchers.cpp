#include "Vouchers.h"

#include <algorithm>
#include <array>

namespace kpTables::sample {

namespace {

struct KindText {
    const char* kind;
    const char* inboundPrefix;
    const char* outboundPrefix;
    const char* code;
};
constexpr std::array<KindText, 5> kKinds = {{{"入库单", "RK", "", "01"},
                                             {"出库单", "", "CK", "01"},
                                             {"普通发票", "JP", "XP", "02"},
                                             {"增值税发票", "JZ", "XZ", "03"},
                                             {"调拨单", "DB", "DB", "04"}}};

constexpr std::array<const char*, 8> kPurchaseRemarks = {"货到验收合格", "汽车运输，运费到付", "厂家送货上门",
                                                         "火车站自提",   "发票已到，货款未付", "分批到货",
                                                         "随货附质保书", "按月度采购计划"};
constexpr std::array<const char*, 8> kSaleRemarks = {"客户自提",         "送货上门，运费另计", "货款月结",
                                                     "工地签收",         "凭送货单结算",       "随货附质保书",
                                                     "电话订货，当日送", "退换货以七天为限"};

template <std::size_t count>
const char* PickOf(Random& random, const std::array<const char*, count>& texts) {
    return texts[static_cast<std::size_t>(random.Below(static_cast<std::int64_t>(count)))];
}

}  // namespace

Vouchers::Vouchers(const Firm& firm, const Calendar& calendar, Random& random)
    : firm_(firm),
      calendar_(calendar),
      random_(random),
      buyers_(firm.NamesByDuty("采购")),
      sellers_(firm.NamesByDuty("销售")),
      keepers_(firm.NamesByDuty("保管")),
      clerks_(firm.NamesByDuty("录入")),
      auditors_(firm.NamesByDuty("财务")) {}

Bill Vouchers::Purchase(Day day, const Partner& supplier, int depot) {
    Bill bill;
    bill.date = day;
    bill.depot = depot;
    bill.partner = supplier.id;
    const bool invoiced = random_.Percent(60);
    bill.kind = !invoiced ? "入库单" : supplier.taxRate == 17 ? "增值税发票" : "普通发票";
    const std::int64_t way = random_.Below(100);
    bill.type = way < 60 ? "赊购" : way < 90 ? "现购" : "预付款";
    bill.remark = random_.Percent(88) ? PickOf(random_, kPurchaseRemarks) : "";
    if (random_.Percent(6)) {
        const Project& project = random_.Pick(firm_.projects);
        bill.project = project.id;
        bill.remark = "供" + project.name + "用料";
    }
    Fill(bill, true);
    return bill;
}

Bill Vouchers::Sale(Day day, const Partner& customer, int depot) {
    Bill bill;
    bill.date = day;
    bill.depot = depot;
    bill.partner = customer.id;
    const bool invoiced = random_.Percent(customer.classCode == "06" ? 25 : 68);
    bill.kind = !invoiced ? "出库单" : customer.taxRate == 17 ? "增值税发票" : "普通发票";
    bill.remark = random_.Percent(88) ? PickOf(random_, kSaleRemarks) : "";
    const auto project = std::find_if(firm_.projects.begin(), firm_.projects.end(),
                                      [&](const Project& each) { return each.customer == customer.id; });
    if (project != firm_.projects.end() && random_.Percent(75)) {
        bill.project = project->id;
        bill.type = "工程";
    } else if (customer.classCode == "06") {
        bill.type = "零售";
    } else if (customer.classCode == "05") {
        bill.type = "赊销";
    } else {
        bill.type = random_.Percent(70) ? "批发" : "赊销";
    }
    Fill(bill, false);
    return bill;
}

Bill Vouchers::Transfer(Day day, int from, int to) {
    Bill bill;
    bill.date = day;
    bill.depot = from;
    bill.kind = "调拨单";
    bill.type = "调拨";
    bill.remark = "调往" + firm_.depots[static_cast<std::size_t>(to - 1)].name;
    Fill(bill, false);
    return bill;
}

Bill Vouchers::Counterpart(const Bill& outbound, int to) {
    Bill bill = outbound;
    bill.depot = to;
    bill.remark = "由" + firm_.depots[static_cast<std::size_t>(outbound.depot - 1)].name + "调入";
    Fill(bill, true);
    bill.number = outbound.number;
    for (Line& line : bill.lines) {
        const Product& product = firm_.products[static_cast<std::size_t>(line.product - 1)];
        line.slot = product.SlotIn(to);
        line.counterpart = Keeper(bill);
    }
    return bill;
}

void Vouchers::Fill(Bill& bill, bool inbound) {
    const KindText& kind =
        *std::find_if(kKinds.begin(), kKinds.end(), [&](const KindText& each) { return bill.kind == each.kind; });
    bill.id = inbound ? ++inboundId_ : ++outboundId_;
    bill.kindCode = kind.code;
    const int count = ++numbers_[{inbound, bill.depot, bill.date.month, bill.kind}];
    bill.number = std::string(inbound ? kind.inboundPrefix : kind.outboundPrefix) + Digits(bill.depot, 1) + "-" +
                  Digits(bill.date.month, 2) + "-" + Digits(count, 4);
    bill.serial = inbound ? 'R' : 'C';
    bill.serial += Digits(bill.id, 6);
    bill.clerk = random_.Pick(clerks_);
    const bool audited =
        random_.Percent(93) && calendar_.Later(bill.date, static_cast<int>(random_.Below(4)), bill.auditDate);
    bill.auditor = audited ? random_.Pick(auditors_) : "";
}

Line Vouchers::TaxedLine(const Bill& bill, bool inbound, const Product& product, Money price, Quantity quantity,
                         int taxRate) {
    Line line;
    line.product = product.id;
    line.price = price;
    line.quantity = quantity;
    line.netPrice = DivideHalfEven(price * 100, 100 + taxRate);
    line.netAmount = Amount(line.netPrice, quantity);
    line.tax = DivideHalfEven(line.netAmount * taxRate, 100);
    line.amount = line.netAmount + line.tax;
    line.handler = Handler(bill, inbound);
    line.counterpart = Keeper(bill);
    line.packing = product.packing;
    line.slot = product.SlotIn(bill.depot);
    line.term = Term(bill.type);
    return line;
}

int Vouchers::Term(const std::string& type) {
    if (type == "赊购" || type == "赊销") {
        return static_cast<int>(15 * random_.Between(2, 4));
    }
    if (type == "工程") {
        return static_cast<int>(30 * random_.Between(2, 3));
    }
    return type == "批发" ? 15 : type == "预付款" ? 7 : 0;
}

std::string Vouchers::Handler(const Bill& bill, bool inbound) const {
    if (bill.kind == "调拨单") {
        return Keeper(bill);
    }
    const std::vector<std::string>& people = inbound ? buyers_ : sellers_;
    return people[static_cast<std::size_t>(bill.partner) % people.size()];
}

std::string Vouchers::Keeper(const Bill& bill) const {
    // The first warehouse has two keepers who share the days, every other warehouse has one.
    const int keeper = bill.depot == 1 ? bill.date.day % 2 : bill.depot;
    return keepers_[static_cast<std::size_t>(keeper)];
}

}  // namespace kpTables::sample
