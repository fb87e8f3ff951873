// A book in memory with two warehouses, and what the tests do with it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/Convert.h"
#include "kpTables/Host.h"
#include "kpTables/bookkeeping/Closing.h"

namespace kpTables::bookkeeping {

/// Gives one answer to every question and keeps the questions.
class OneAnswer : public Host {
public:
    explicit OneAnswer(MessageAnswer answer) : answer_(answer) {}
    MessageAnswer MsgBox(const std::string& text, MessageButtons, const std::string&) override {
        questions.push_back(text);
        return answer_;
    }
    std::vector<std::string> questions;

private:
    MessageAnswer answer_;
};

/// Warehouses 1 (东库) and 2 (西库), products 1 to 4; 1 and 2 open January 2004 in 东库 with 10 for 50 and 100 for 25,
/// 1 in 西库 with 3 for 15.
inline BookPtr BookOfAYear() {
    auto book = CreateBook("memory:");
    for (const char* text : {"Insert Into 仓库设置 (dpID,仓库名称) Values (1,'东库')",
                             "Insert Into 仓库设置 (dpID,仓库名称) Values (2,'西库')"})
        book->Execute(text);
    for (const char* product : {"1", "2", "3", "4"})
        book->Execute(std::string("Insert Into 商品设置 (pdID,商品名称) Values (") + product + ",'商品" + product +
                      "')");
    for (const char* values : {"1,1,5,10,50", "2,1,0.25,100,25", "1,2,5,3,15"})
        book->Execute(std::string("Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额) "
                                  "Values (2004,1,") +
                      values + ")");
    return book;
}

/// A bill of one line.
struct Bill {
    std::string kind;  ///< 入库 or 出库
    int id;
    int month;
    int warehouse;
    int product;
    std::string quantity;
    std::string amount;
};

inline void Enter(Connection& book, const Bill& bill) {
    const auto number = [](int value) { return std::to_string(value); };
    book.Execute("Insert Into " + bill.kind + "目录 (BillID,年份,月份,日子,dpID) Values (" + number(bill.id) +
                 ",2004," + number(bill.month) + ",15," + number(bill.warehouse) + ")");
    book.Execute("Insert Into " + bill.kind + "记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (" +
                 number(bill.id) + "," + number(bill.product) + "," + number(bill.warehouse) + "," + bill.quantity +
                 "," + bill.amount + "," + bill.amount + ")");
}

inline void Remove(Connection& book, const Bill& bill) {
    for (const char* part : {"目录", "记录"})
        book.Execute("Delete From " + bill.kind + part + " Where BillID=" + std::to_string(bill.id));
}

/// The rows of a query, their fields joined with a bar.
inline std::vector<std::string> RowsOf(Connection& book, const std::string& query) {
    std::vector<std::string> lines;
    for (const auto rows = book.Execute(query); !rows->Eof(); rows->MoveNext()) {
        std::string line;
        for (int column = 0; column < rows->FieldCount(); ++column)
            line += (column > 0 ? "|" : "") + Text(rows->GetValue(column));
        lines.push_back(line);
    }
    return lines;
}

/// Every balance row and every warehouse.
inline std::vector<std::string> Everything(Connection& book) {
    auto lines = RowsOf(book, "Select * From 仓库余额表 Order by dpID,月份,pdID");
    for (auto& line : RowsOf(book, "Select * From 仓库设置 Order by dpID")) lines.push_back(line);
    return lines;
}

inline ClosingOptions Month(int month, std::int32_t warehouse = 1) {
    ClosingOptions options;
    options.month = static_cast<std::int16_t>(month);
    options.warehouse = warehouse;
    options.note = "2004-12-31";
    return options;
}

}  // namespace kpTables::bookkeeping
