#include <array>
#include <string>

#include "CsvFile.h"
#include "Tables.h"

namespace kpTables::sample {

namespace {

using std::filesystem::path;

void WriteOpening(const path& folder, const Year& year) {
    CsvFile file(folder, "仓库余额表",
                 {"年份", "月份", "pdID", "dpID", "上期库存单价", "上期库存数量", "上期库存金额", "本期库存单价",
                  "本期库存数量", "本期库存金额", "备注"});
    for (const Opening& row : year.opening) {
        file << kYear << 1 << row.product << row.depot;
        // An unclosed month shows its opening stock as its closing stock.
        for (int i = 0; i < 2; ++i) {
            file << MoneyText(row.price) << QuantityText(row.quantity) << MoneyText(row.amount);
        }
        file << std::to_string(kYear - 1) + "-12-31";
        file.EndRow();
    }
    file.Close();
}

void WriteHeaders(const path& folder, const std::string& family, const std::vector<Bill>& bills) {
    CsvFile file(folder, family + "目录",
                 {"BillID", "年份", "月份", "日子", "单据类型", "类型", "单据编号", "编号", "BillType", "dpID", "ksID",
                  "pjID", "录入员", "录入日期", "审核员", "审核日期", "说明"});
    for (const Bill& bill : bills) {
        file << bill.id << kYear << bill.date.month << bill.date.day << bill.kind << bill.type << bill.number
             << bill.serial << bill.kindCode << bill.depot << bill.partner << bill.project << bill.clerk
             << IsoText(bill.date) << bill.auditor << (bill.auditor.empty() ? "" : IsoText(bill.auditDate))
             << bill.remark;
        file.EndRow();
    }
    file.Close();
}

void WriteLines(const path& folder, const std::string& family, const std::vector<Bill>& bills) {
    CsvFile file(folder, family + "记录",
                 {"BillID", "pdID", "dpID", "单价", "数量", "金额", "税额", "除税单价", "除税金额", "经手人", "交接人",
                  "包装", "货位", "期限", "仓库"});
    for (const Bill& bill : bills) {
        for (const Line& line : bill.lines) {
            file << bill.id << line.product << bill.depot << MoneyText(line.price) << QuantityText(line.quantity)
                 << MoneyText(line.amount) << MoneyText(line.tax) << MoneyText(line.netPrice)
                 << MoneyText(line.netAmount) << line.handler << line.counterpart << line.packing << line.slot
                 << line.term << bill.depot;
            file.EndRow();
        }
    }
    file.Close();
}

void WriteCosts(const path& folder, const Year& year) {
    CsvFile headers(folder, "成本目录", {"CostID", "年份", "月份", "日子", "dpID"});
    CsvFile lines(folder, "成本记录", {"CostID", "pdID", "单价", "数量", "金额"});
    for (const CostBill& bill : year.costs) {
        headers << bill.id << kYear << bill.date.month << bill.date.day << bill.depot;
        headers.EndRow();
        for (const CostLine& line : bill.lines) {
            lines << bill.id << line.product << MoneyText(line.price) << QuantityText(line.quantity)
                  << MoneyText(line.amount);
            lines.EndRow();
        }
    }
    headers.Close();
    lines.Close();
}

/// Everything is counted in the middle and at the end of the year.
void WriteStocktakes(const path& folder, const Year& year) {
    CsvFile file(folder, "仓库盘点表", {"pdID", "月份", "dpID"});
    for (const int month : {6, 12}) {
        for (const Opening& row : year.opening) {
            file << row.product << month << row.depot;
            file.EndRow();
        }
    }
    file.Close();
}

void WriteWorkOrders(const path& folder, const std::vector<WorkOrder>& orders) {
    constexpr int kLorryDepartment = 6;
    CsvFile headers(folder, "派遣目录",
                    {"BillID", "年份", "月份", "日子", "单据编号", "录入员", "录入日期", "车牌号", "司机", "跟车人",
                     "货款", "外用车", "违章", "部门ID", "说明", "审核员", "审核日期"});
    CsvFile lines(folder, "派遣记录", {"BillID", "pdID", "厂商ID", "客户ID", "配送单号", "送货地点", "数量", "金额"});
    for (const WorkOrder& order : orders) {
        headers << order.id << kYear << order.date.month << order.date.day << order.number << order.clerk
                << IsoText(order.date) << order.plate << order.driver << order.escort << MoneyText(order.collected)
                << (order.hired ? "-1" : "0") << (order.violation ? "-1" : "0") << kLorryDepartment << order.remark
                << order.auditor << (order.auditor.empty() ? "" : IsoText(order.auditDate));
        headers.EndRow();
        for (const Delivery& line : order.deliveries) {
            lines << order.id << line.product << line.supplier << line.customer << line.note << line.place
                  << QuantityText(line.quantity) << MoneyText(line.freight);
            lines.EndRow();
        }
    }
    headers.Close();
    lines.Close();
}

template <std::size_t count>
void WriteAmounts(CsvFile& file, const std::array<Money, count>& amounts) {
    for (const Money amount : amounts) {
        file << MoneyText(amount);
    }
}

void WritePay(const path& folder, const std::vector<Pay>& pays) {
    CsvFile file(folder, "工资表",
                 {"年份",  "月份", "姓名",   "总收入",   "油费",  "外加油费", "过路费", "装卸费",   "折旧",  "保险",
                  "利润",  "税金", "养路费", "装卸工资", "费用1", "费用2",    "费用3",  "总费用",   "其它1", "其它2",
                  "其它3", "应付", "所得税", "电话费",   "扣款1", "扣款2",    "扣款3",  "实发工资", "Flag",  "备注"});
    for (const Pay& pay : pays) {
        file << kYear << pay.month << pay.driver << MoneyText(pay.income);
        WriteAmounts(file, pay.costs);
        WriteAmounts(file, pay.otherCosts);
        file << MoneyText(pay.totalCost);
        WriteAmounts(file, pay.allowances);
        file << MoneyText(pay.payable) << MoneyText(pay.incomeTax) << MoneyText(pay.telephone);
        WriteAmounts(file, pay.deductions);
        file << MoneyText(pay.net) << "1" << pay.remark;
        file.EndRow();
    }
    file.Close();
}

}  // namespace

void WriteMovementTables(const path& folder, const Year& year, const std::vector<WorkOrder>& orders,
                         const std::vector<Pay>& pays) {
    WriteOpening(folder, year);
    WriteHeaders(folder, "入库", year.inbound);
    WriteLines(folder, "入库", year.inbound);
    WriteHeaders(folder, "出库", year.outbound);
    WriteLines(folder, "出库", year.outbound);
    WriteCosts(folder, year);
    WriteStocktakes(folder, year);
    WriteWorkOrders(folder, orders);
    WritePay(folder, pays);
}

}  // namespace kpTables::sample
