#include "Haulage.h"

#include <algorithm>
#include <numeric>

namespace kpTables::sample {

namespace {

constexpr std::array<const char*, 6> kPlates = {"浙A-21735", "浙A-30826", "浙A-41907",
                                                "浙A-53168", "浙A-60459", "浙A-72510"};
constexpr const char* kHiredPlate = "浙D-18342";

Money WholeYuan(Money amount) { return amount / kYuan * kYuan; }

/// Two percent of the goods' value, within the limits of what a trip costs.
Money Freight(const Line& line) { return WholeYuan(std::clamp(line.netAmount * 2 / 100, 20 * kYuan, 320 * kYuan)); }

std::string Numbered(const char* prefix, int month, int number) {
    return prefix + Digits(month, 2) + "-" + Digits(number, 4);
}

std::string Place(const Firm& firm, const Bill& bill) {
    return bill.project != 0 ? firm.projects[static_cast<std::size_t>(bill.project - 1)].name + "工地"
                             : firm.customers[static_cast<std::size_t>(bill.partner - 1)].unitName + "仓库";
}

void AddDeliveries(const Firm& firm, const Bill& bill, WorkOrder& order, int& notes) {
    const std::string place = Place(firm, bill);
    const std::size_t count = std::min<std::size_t>(bill.lines.size(), 4);
    for (std::size_t i = 0; i < count; ++i) {
        const Line& line = bill.lines[i];
        const Money freight = Freight(line);
        const int supplier = firm.products[static_cast<std::size_t>(line.product - 1)].supplier;
        order.deliveries.push_back({line.product, supplier, bill.partner, Numbered("PS", bill.date.month, ++notes),
                                    place, line.quantity, freight});
        order.collected += freight;
    }
}

template <std::size_t count>
Money Sum(const std::array<Money, count>& amounts) {
    return std::accumulate(amounts.begin(), amounts.end(), Money{0});
}

Pay PayOf(int month, const std::string& driver, Money income, int violations) {
    const auto part = [income](int percent) { return income * percent / 100 / (kYuan / 100) * (kYuan / 100); };
    Pay pay{month, driver, income, {}, {}, 0, {}, 0, 0, 0, {}, 0, ""};
    pay.costs = {part(21), part(3), part(6), part(4), part(7), part(4), part(12), part(3), part(5), part(5)};
    pay.otherCosts = {30 * kYuan, 25 * kYuan, 10 * kYuan};
    pay.totalCost = Sum(pay.costs) + Sum(pay.otherCosts);
    pay.allowances = {150 * kYuan, 88 * kYuan, 60 * kYuan};
    pay.payable = pay.income - pay.totalCost + Sum(pay.allowances);
    // The income tax of 2003: free up to 800 yuan, then 5 percent.
    pay.incomeTax = std::max<Money>(0, pay.payable - 800 * kYuan) * 5 / 100 / (kYuan / 100) * (kYuan / 100);
    pay.telephone = 50 * kYuan;
    pay.deductions = {violations * (100 * kYuan), 12 * kYuan, 5 * kYuan};
    pay.net = pay.payable - pay.incomeTax - pay.telephone - Sum(pay.deductions);
    pay.remark = violations > 0 ? "违章" + std::to_string(violations) + "次" : "无违章";
    return pay;
}

}  // namespace

std::vector<WorkOrder> DispatchYear(const Firm& firm, const Calendar& calendar, const Year& year, Random& random) {
    const std::vector<std::string> drivers = firm.NamesByDuty("司机");
    const std::vector<std::string> escorts = firm.NamesByDuty("装卸");
    const std::vector<std::string> clerks = firm.NamesByDuty("录入");
    const std::vector<std::string> auditors = firm.NamesByDuty("财务");
    std::vector<WorkOrder> orders;
    std::array<int, 13> orderNumbers{};
    std::array<int, 13> notes{};
    for (const Bill& bill : year.outbound) {
        if (bill.kind == "调拨单" || bill.type == "零售" || !random.Percent(55)) {
            continue;
        }
        WorkOrder order{};
        order.id = static_cast<int>(orders.size()) + 1;
        order.date = bill.date;
        const auto month = static_cast<std::size_t>(bill.date.month);
        order.number = Numbered("PC", bill.date.month, ++orderNumbers[month]);
        order.clerk = random.Pick(clerks);
        const std::size_t driver = static_cast<std::size_t>(random.Below(static_cast<std::int64_t>(drivers.size())));
        order.driver = drivers[driver];
        order.hired = random.Percent(7);
        order.plate = order.hired ? kHiredPlate : kPlates[driver];
        order.escort = random.Pick(escorts);
        order.violation = random.Percent(2);
        order.remark = order.hired ? "外租车" : order.violation ? "交警罚款另报" : "自有车，单据 " + bill.number;
        if (random.Percent(94) && calendar.Later(order.date, static_cast<int>(random.Below(3)), order.auditDate)) {
            order.auditor = random.Pick(auditors);
        }
        AddDeliveries(firm, bill, order, notes[month]);
        orders.push_back(std::move(order));
    }
    return orders;
}

std::vector<Pay> PayYear(const Firm& firm, const std::vector<WorkOrder>& orders) {
    std::vector<Pay> pays;
    for (int month = 1; month <= 12; ++month) {
        for (const std::string& driver : firm.NamesByDuty("司机")) {
            Money income = 0;
            int violations = 0;
            for (const WorkOrder& order : orders) {
                if (order.date.month == month && order.driver == driver) {
                    income += order.collected;
                    violations += order.violation ? 1 : 0;
                }
            }
            if (income > 0) {
                pays.push_back(PayOf(month, driver, income, violations));
            }
        }
    }
    return pays;
}

}  // namespace kpTables::sample
