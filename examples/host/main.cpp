// A minimal host: begins a firm's book in memory, enters opening stock and two bills, closes the month, checks the book
// and prints the balance.
#include <cstdio>
#include <memory>
#include <string>

#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/Check.h"
#include "kpTables/bookkeeping/Closing.h"
#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/bookkeeping/Opening.h"

namespace {

/// The host's own progress bar: a line of dots on stderr.
class DotBar : public kpTables::ProgressBar {
public:
    void SetVisible(bool visible) override {
        if (!visible) {
            std::fputs(" done\n", stderr);
        }
    }
    void SetValue(double value) override {
        for (; shown_ + 10 <= value; shown_ += 10) {
            std::fputc('.', stderr);
        }
    }

private:
    double shown_ = 0;
};

/// The firm's first month is March 2004; its warehouse gets the id 1.
void BeginFirm(const kpTables::BookPtr& book) {
    namespace bookkeeping = kpTables::bookkeeping;
    bookkeeping::BeginBook(book, {.company = "测试商行", .year = 2004, .month = 3, .warehouses = {"中心仓库"}});
    book->Execute("Insert Into 商品设置 (pdID, 商品名称, 计量单位) Values (7, '普通硅酸盐水泥', '吨')");
    bookkeeping::EnterOpening(book, {{.warehouse = "中心仓库",
                                      .product = "普通硅酸盐水泥",
                                      .quantity = 10,
                                      .amount = kpTables::Currency::FromLong(2000)}});
}

void EnterBills(kpTables::Connection& book) {
    for (const char* statement : {
             "Insert Into 入库目录 (BillID, 年份, 月份, 日子, 单据类型, 单据编号, dpID, 录入日期) "
             "Values (1, 2004, 3, 7, '入库单', 'R001', 1, #2004-3-7#)",
             "Insert Into 入库记录 (BillID, pdID, dpID, 数量, 除税单价, 除税金额) Values (1, 7, 1, 30, 210, 6300)",
             "Insert Into 出库目录 (BillID, 年份, 月份, 日子, 单据类型, 单据编号, dpID, 录入日期) "
             "Values (1, 2004, 3, 9, '出库单', 'C001', 1, #2004-3-9#)",
             "Insert Into 出库记录 (BillID, pdID, dpID, 数量, 除税单价, 除税金额) Values (1, 7, 1, 12.5, 250, 3125)",
         }) {
        book.Execute(statement);
    }
}

/// All of the closing or, when a step fails, nothing.
bool CloseMarch(const kpTables::BookPtr& book) {
    namespace bookkeeping = kpTables::bookkeeping;
    bookkeeping::ClosingOptions options;
    options.month = 3;
    options.note = "2004-3-31";
    bookkeeping::ClosingWatch watch;
    watch.bar = [](const std::string&) { return std::make_unique<DotBar>(); };
    // This host has nobody to ask: a question would raise an error, and the book would stay as it was.
    const auto nobody = std::make_shared<kpTables::Host>();
    for (const auto& warehouse : bookkeeping::CloseMonth(book, nobody, options, watch)) {
        if (warehouse.outcome == bookkeeping::ClosingOutcome::Done) continue;
        std::fprintf(stderr, "%s is not closed %s\n", warehouse.name.c_str(), warehouse.reason.c_str());
        return false;
    }
    return bookkeeping::CheckBook(*book).empty();
}

}  // namespace

int main() {
    try {
        const auto book = kpTables::CreateBook("memory:");
        BeginFirm(book);
        EnterBills(*book);

        if (!CloseMarch(book)) return 1;
        kpTables::CTables tables;
        tables.Cnn(book);
        for (const auto balance = tables.rs余额记录(1, std::int16_t{3}); !balance->Eof(); balance->MoveNext()) {
            std::printf("%s: %s %s, %s yuan\n", kpTables::Text(balance->Fields("商品名称").Value()).c_str(),
                        kpTables::Text(balance->Fields("本期库存数量").Value()).c_str(),
                        kpTables::Text(balance->Fields("计量单位").Value()).c_str(),
                        kpTables::Text(balance->Fields("本期库存金额").Value()).c_str());
        }
    } catch (const kpTables::Error& error) {
        std::fprintf(stderr, "error %d: %s\n", error.Number(), error.what());
        return 1;
    }
    return 0;
}
