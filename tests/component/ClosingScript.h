// A warehouse's month on a scripted connection: three products, their bills and what the closing must make of them.
#pragma once

#include <memory>
#include <vector>

#include "BookScript.h"
#include "kpTables/CTables.h"
#include "support/ScriptedConnection.h"
#include "support/ScriptedHost.h"

namespace kpTables::test {

inline std::vector<FieldInfo> BalanceColumns() {
    const auto integer = VarType::Integer, number = VarType::Double, money = VarType::Currency;
    return {{"年份", integer},        {"月份", integer},        {"pdID", VarType::Long},  {"dpID", VarType::Long},
            {"上期库存单价", number}, {"上期库存数量", number}, {"上期库存金额", money},  {"本期入库单价", number},
            {"本期入库数量", number}, {"本期入库金额", money},  {"累计入库数量", number}, {"累计入库金额", money},
            {"本期出库单价", number}, {"本期出库数量", number}, {"本期出库金额", money},  {"累计出库数量", number},
            {"累计出库金额", money},  {"本期库存单价", number}, {"本期库存数量", number}, {"本期库存金额", money},
            {"备注", VarType::String}};
}

inline std::shared_ptr<ScriptedRecordset> MonthFigures(const Rows& rows) {
    return MakeRows(
        {{"pdID", VarType::Long}, {"单价", VarType::Double}, {"数量", VarType::Double}, {"金额", VarType::Currency}},
        rows);
}

inline std::shared_ptr<ScriptedRecordset> Totals(const Rows& rows) {
    return MakeRows({{"pdID", VarType::Long}, {"数量", VarType::Double}, {"金额", VarType::Currency}}, rows);
}

/// Warehouse 2, month 3. Product 7 has inbound and outbound bills. Product 3 has none and keeps what its row holds.
/// Product 9 has lines without figures inbound, and more outbound than there is.
struct ClosingScript {
    ClosingScript() {
        balance = MakeRows(BalanceColumns(), {{std::int16_t{2004},
                                               std::int16_t{3},
                                               7,
                                               2,
                                               10.0,
                                               10.0,
                                               Money(1000000),
                                               0.0,
                                               0.0,
                                               Money(0),
                                               0.0,
                                               Money(0),
                                               0.0,
                                               0.0,
                                               Money(0),
                                               0.0,
                                               Money(0),
                                               10.0,
                                               10.0,
                                               Money(1000000),
                                               "一"},
                                              {std::int16_t{2004},
                                               std::int16_t{3},
                                               3,
                                               2,
                                               2.0,
                                               5.0,
                                               Money(100000),
                                               3.0,
                                               1.0,
                                               Money(30000),
                                               1.5,
                                               Money(45000),
                                               4.0,
                                               2.0,
                                               Money(80000),
                                               2.5,
                                               Money(100000),
                                               0.0,
                                               0.0,
                                               Money(0),
                                               "二"},
                                              {std::int16_t{2004},
                                               std::int16_t{3},
                                               9,
                                               2,
                                               0.0,
                                               0.0,
                                               Money(1),
                                               8.0,
                                               8.0,
                                               Money(8),
                                               8.0,
                                               Money(8),
                                               8.0,
                                               8.0,
                                               Money(8),
                                               8.0,
                                               Money(8),
                                               8.0,
                                               8.0,
                                               Money(8),
                                               "三"}});
        // In descending order of products: a search that did not begin at the first row would miss some.
        inbound = MonthFigures({{9, Variant::Null(), Variant::Null(), Variant::Null()},
                                {7, 12.5, 4.0, Money(500000)},
                                {1, 1.0, 1.0, Money(10000)}});
        outbound = MonthFigures({{9, 0.5, 1.0, Money(2)}, {7, 15.0, 6.0, Money(900000)}});
        inboundTotals = Totals({{9, 3.0, Money(4)}, {7, 14.0, Money(1500000)}});
        outboundTotals = Totals({{9, 1.25, Money(5)}, {7, 9.0, Money(1350000)}});
        cost = MonthFigures({{9, 99.0, 99.0, Variant::Null()}, {7, 99.0, 99.0, Money(720000)}});
        costTotals = MonthFigures({{7, 99.0, 99.0, Money(1080001)}});
        // As the closing without costs leaves the month, but for figures that it must not take from here.
        closed = MakeRows(BalanceColumns(), {{std::int16_t{2004},
                                              std::int16_t{3},
                                              7,
                                              2,
                                              10.0,
                                              10.0,
                                              Money(1000000),
                                              12.5,
                                              4.0,
                                              Money(500000),
                                              14.0,
                                              Money(1500000),
                                              15.0,
                                              6.0,
                                              Money(900000),
                                              9.0,
                                              Money(1350000),
                                              7.5,
                                              8.0,
                                              Money(600000),
                                              "一"},
                                             {std::int16_t{2004},
                                              std::int16_t{3},
                                              3,
                                              2,
                                              2.0,
                                              5.0,
                                              Money(100000),
                                              3.0,
                                              1.0,
                                              Money(30000),
                                              1.5,
                                              Money(45000),
                                              4.0,
                                              2.0,
                                              Money(80000),
                                              2.5,
                                              Money(100000),
                                              1.25,
                                              4.0,
                                              Money(50000),
                                              "二"}});
        balance->RecordTo(cnn->Log());
    }

    /// Queues the answers in the order in which the closing asks.
    void Prepare(bool costUsed) {
        cnn->Answer(balance).Answer(inbound).Answer(outbound).Answer(inboundTotals).Answer(outboundTotals);
        if (costUsed) cnn->Answer(cost).Answer(costTotals);
        cnn->Answer(closed);
        tables.Cnn(cnn);
    }

    std::shared_ptr<ScriptedConnection> cnn = std::make_shared<ScriptedConnection>();
    std::shared_ptr<ScriptedRecordset> balance, inbound, outbound, inboundTotals, outboundTotals, cost, costTotals,
        closed;
    CTables tables;
};

}  // namespace kpTables::test
