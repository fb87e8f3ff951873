// Bill headers and lines as the firm's clerks fill them in.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "Calendar.h"
#include "Figures.h"
#include "Firm.h"
#include "Random.h"

namespace kpTables::sample {

struct Line {
    int product = 0;
    Money price = 0;  ///< tax included
    Quantity quantity = 0;
    Money amount = 0;  ///< tax included
    Money tax = 0;
    Money netPrice = 0;
    Money netAmount = 0;
    std::string handler;
    std::string counterpart;
    std::string packing;
    std::string slot;
    int term = 0;  ///< days of credit
};

struct Bill {
    int id = 0;
    Day date;
    std::string kind;    ///< 入库单, 出库单, 普通发票, 增值税发票 or 调拨单
    std::string type;    ///< 赊购, 批发, ...
    std::string number;  ///< counted by kind, warehouse and month
    std::string serial;  ///< counted through the year
    std::string kindCode;
    int depot = 0;
    int partner = 0;
    int project = 0;
    std::string clerk;
    std::string auditor;  ///< empty until the bill is audited
    Day auditDate;
    std::string remark;
    std::vector<Line> lines;
};

class Vouchers {
public:
    Vouchers(const Firm& firm, const Calendar& calendar, Random& random);

    Bill Purchase(Day day, const Partner& supplier, int depot);
    Bill Sale(Day day, const Partner& customer, int depot);
    /// The outbound half; Counterpart derives the inbound one from it.
    Bill Transfer(Day day, int from, int to);
    Bill Counterpart(const Bill& outbound, int to);

    /// A line at a price that includes tax, from which net price, net amount, tax and amount are computed.
    Line TaxedLine(const Bill& bill, bool inbound, const Product& product, Money price, Quantity quantity, int taxRate);

private:
    void Fill(Bill& bill, bool inbound);
    int Term(const std::string& type);
    std::string Handler(const Bill& bill, bool inbound) const;
    std::string Keeper(const Bill& bill) const;

    const Firm& firm_;
    const Calendar& calendar_;
    Random& random_;
    std::vector<std::string> buyers_, sellers_, keepers_, clerks_, auditors_;
    std::map<std::tuple<bool, int, int, std::string>, int> numbers_;
    int inboundId_ = 0;
    int outboundId_ = 0;
};

}  // namespace kpTables::sample
