#include "BillEntry.h"

#include <sqlite3.h>

#include <cstddef>
#include <random>

#include "Child.h"
#include "RawDatabase.h"
#include "kpTables/Book.h"

namespace kpTables::bench {

namespace {

constexpr int kMonth = 12;
constexpr const char* kKind = "入库单";
constexpr const char* kSort = "采购";
constexpr const char* kClerk = "朱琳";
constexpr const char* kRemark = "货款月结";
constexpr const char* kHandler = "陈建国";
constexpr const char* kCounterpart = "王丽华";
constexpr const char* kPacking = "纸箱";
constexpr const char* kSlot = "A-01-1";
constexpr double kMicroseconds = 1e6;

NewLine LineOf(std::uint64_t random, std::int64_t products) {
    const std::int64_t netPrice = 50'000 + static_cast<std::int64_t>(random >> 40) % 950'000;
    const std::int64_t quantity = 1 + static_cast<std::int64_t>(random >> 32 & 63);
    const std::int64_t net = netPrice * quantity;
    const std::int64_t tax = net * 17 / 100;
    return {1 + static_cast<std::int32_t>(random % static_cast<std::uint64_t>(products)),
            static_cast<double>(quantity),
            Currency::FromScaled(netPrice * 117 / 100),
            Currency::FromScaled(net + tax),
            Currency::FromScaled(tax),
            Currency::FromScaled(netPrice),
            Currency::FromScaled(net)};
}

std::string EntryDate(const NewBill& bill) {
    return std::to_string(kBookYear) + "-" + std::to_string(kMonth) + (bill.day < 10 ? "-0" : "-") +
           std::to_string(bill.day);
}

std::int32_t AddHeader(Connection& book, const NewBill& bill) {
    const RecordsetPtr header = book.Open("入库目录", SourceKind::Table);
    header->AddNew();
    header->Fields("年份").SetValue(kBookYear);
    header->Fields("月份").SetValue(kMonth);
    header->Fields("日子").SetValue(bill.day);
    header->Fields("单据类型").SetValue(kKind);
    header->Fields("类型").SetValue(kSort);
    header->Fields("单据编号").SetValue(bill.number);
    header->Fields("dpID").SetValue(bill.depot);
    header->Fields("ksID").SetValue(bill.partner);
    header->Fields("pjID").SetValue(bill.project);
    header->Fields("录入员").SetValue(kClerk);
    header->Fields("录入日期").SetValue(Date::FromYearMonthDay(kBookYear, kMonth, bill.day));
    header->Fields("说明").SetValue(kRemark);
    header->Update();
    const Variant id = header->Fields("BillID").Value();
    header->Close();
    return *id.If<std::int32_t>();
}

void AddLines(Connection& book, std::int32_t billId, const NewBill& bill) {
    const RecordsetPtr lines = book.Open("入库记录", SourceKind::Table);
    for (const NewLine& line : bill.lines) {
        lines->AddNew();
        lines->Fields("BillID").SetValue(billId);
        lines->Fields("pdID").SetValue(line.product);
        lines->Fields("dpID").SetValue(bill.depot);
        lines->Fields("单价").SetValue(line.price);
        lines->Fields("数量").SetValue(line.quantity);
        lines->Fields("金额").SetValue(line.amount);
        lines->Fields("税额").SetValue(line.tax);
        lines->Fields("除税单价").SetValue(line.netPrice);
        lines->Fields("除税金额").SetValue(line.netAmount);
        lines->Fields("经手人").SetValue(kHandler);
        lines->Fields("交接人").SetValue(kCounterpart);
        lines->Fields("包装").SetValue(kPacking);
        lines->Fields("货位").SetValue(kSlot);
        lines->Fields("仓库").SetValue(bill.depot);
        lines->Update();
    }
    lines->Close();
}

/// Enters all bills between begin and commit; returns the microseconds per bill.
template <class Begin, class Enter, class Commit>
double Microseconds(const std::vector<NewBill>& bills, int billsOfTransaction, Begin begin, Enter enter,
                    Commit commit) {
    const auto step = static_cast<std::size_t>(billsOfTransaction);
    const Stopwatch watch;
    for (std::size_t bill = 0; bill < bills.size(); ++bill) {
        if (bill % step == 0) begin();
        enter(bills[bill]);
        if ((bill + 1) % step == 0 || bill + 1 == bills.size()) commit();
    }
    return watch.Seconds() * kMicroseconds / static_cast<double>(bills.size());
}

/// The book's statements, prepared once for all bills.
class HandEntry {
public:
    explicit HandEntry(const RawDatabase& database)
        : database_(database),
          header_(
              database.Prepare("INSERT INTO 入库目录 (年份, 月份, 日子, 单据类型, 类型, 单据编号, dpID, ksID, pjID, "
                               "录入员, 录入日期, 说明) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
          line_(database.Prepare("INSERT INTO 入库记录 (BillID, pdID, dpID, 单价, 数量, 金额, 税额, 除税单价, "
                                 "除税金额, 经手人, 交接人, 包装, 货位, 仓库) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                                 "?, ?, ?)")) {}

    void Enter(const NewBill& bill) {
        const std::string date = EntryDate(bill);
        header_.Bind(1, std::int64_t{kBookYear}).Bind(2, std::int64_t{kMonth}).Bind(3, std::int64_t{bill.day});
        header_.Bind(4, kKind).Bind(5, kSort).Bind(6, bill.number).Bind(7, std::int64_t{bill.depot});
        header_.Bind(8, std::int64_t{bill.partner}).Bind(9, std::int64_t{bill.project}).Bind(10, kClerk);
        header_.Bind(11, date).Bind(12, kRemark).Run();
        const std::int64_t id = sqlite3_last_insert_rowid(database_.Get());
        for (const NewLine& line : bill.lines) {
            line_.Bind(1, id).Bind(2, std::int64_t{line.product}).Bind(3, std::int64_t{bill.depot});
            line_.Bind(4, line.price.Scaled()).Bind(5, line.quantity).Bind(6, line.amount.Scaled());
            line_.Bind(7, line.tax.Scaled()).Bind(8, line.netPrice.Scaled()).Bind(9, line.netAmount.Scaled());
            line_.Bind(10, kHandler).Bind(11, kCounterpart).Bind(12, kPacking).Bind(13, kSlot);
            line_.Bind(14, std::int64_t{bill.depot}).Run();
        }
    }

private:
    const RawDatabase& database_;
    RawStatement header_;
    RawStatement line_;
};

double PagesWritten(const RawDatabase& database) {
    int pages = 0;
    int highest = 0;
    sqlite3_db_status(database.Get(), SQLITE_DBSTATUS_CACHE_WRITE, &pages, &highest, 0);
    return pages;
}

}  // namespace

std::vector<NewBill> NewBills(const BookSize& size, int series, int count) {
    constexpr int kLinesOfABill = 10;
    constexpr std::uint64_t kPartners = 200;
    constexpr std::uint64_t kProjects = 50;
    std::mt19937_64 random(static_cast<std::uint64_t>(series));
    std::vector<NewBill> bills;
    for (int i = 0; i < count; ++i) {
        NewBill bill;
        bill.day = static_cast<std::int16_t>(1 + i * 28 / count);
        bill.depot = 1 + i % size.depots;
        bill.partner = 1 + static_cast<std::int32_t>(random() % kPartners);
        bill.project = 1 + static_cast<std::int32_t>(random() % kProjects);
        bill.number = "RK" + std::to_string(bill.depot) + "-12-" + std::to_string(series * count + i);
        for (int line = 0; line < kLinesOfABill; ++line) bill.lines.push_back(LineOf(random(), size.products));
        bills.push_back(std::move(bill));
    }
    return bills;
}

double EnterByRecordsets(const std::string& path, const std::vector<NewBill>& bills, int billsOfTransaction) {
    const auto book = OpenBook(path);
    return Microseconds(
        bills, billsOfTransaction, [&] { book->BeginTrans(); },
        [&](const NewBill& bill) { AddLines(*book, AddHeader(*book, bill), bill); }, [&] { book->CommitTrans(); });
}

Entered EnterByHand(const std::string& path, const std::vector<NewBill>& bills, int billsOfTransaction) {
    const RawDatabase database(path);
    database.SetLikeABook();
    HandEntry entry(database);
    RawStatement begin = database.Prepare("BEGIN IMMEDIATE");
    RawStatement commit = database.Prepare("COMMIT");
    const double microseconds = Microseconds(
        bills, billsOfTransaction, [&] { begin.Run(); }, [&](const NewBill& bill) { entry.Enter(bill); },
        [&] { commit.Run(); });
    return {microseconds, PagesWritten(database) / static_cast<double>(bills.size())};
}

}  // namespace kpTables::bench
