// Per-product stock figures: results and failures.
#include <gtest/gtest.h>

#include <span>

#include "BookScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// One row of sums; the columns take any value.
std::shared_ptr<ScriptedRecordset> Sums(const Variant& quantity, const Variant& amount,
                                        const Variant& tax = Variant::Null(), const Variant& gross = Variant::Null()) {
    return MakeRows(
        {{"数量", VarType::Empty}, {"金额", VarType::Empty}, {"税额", VarType::Empty}, {"合计", VarType::Empty}},
        {{quantity, amount, tax, gross}});
}

TEST(OpeningStock, Results) {
    const Variant null = Variant::Null();
    struct Case {
        Variant quantity, amount;
        const char* what;
        double answer;
    };
    const Case cases[] = {
        {2.5, Money(125000), "数量", 2.5},
        {2.5, Money(125000), "金额", 12.5},
        {2.5, Money(125000), "单价", 5},
        {2.5, Money(125000), "", 5},
        {2.5, Money(125000), "合计", 5},
        {-2.5, Money(125000), "单价", -5},
        {0.0, Money(125000), "单价", 0},
        {0.0, Money(0), "单价", 0},
        {null, Money(125000), "单价", 0},
        {2.5, null, "单价", 0},
        {null, null, "单价", 0},
        {null, Money(125000), "数量", 0},
        {2.5, null, "金额", 0},
        {null, null, "数量", 0},
        {3.0, 10.0, "单价", 10.0 / 3.0},
        // too large for a Double
        {1e-300, Money(9'000'000'000'000'000'000), "单价", 0},
        {-1e-300, Money(9'000'000'000'000'000'000), "", 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(Shown(each.quantity) + ", " + Shown(each.amount) + ", " + each.what);
        BookScript book;
        book.cnn->Answer(Sums(each.quantity, each.amount));
        EXPECT_EQ(book.tables.Get上期库存(2, 7, 3, each.what), each.answer);
    }
}

struct MovementCase {
    const char* name;
    RecordsetPtr rows;
    const char* what;
    std::int64_t scaled;
};

void ExpectMovements(std::span<const MovementCase> cases) {
    for (const MovementCase& each : cases) {
        SCOPED_TRACE(std::string(each.name) + ", " + each.what);
        BookScript book;
        book.cnn->Answer(each.rows).Answer(each.rows);
        EXPECT_EQ(book.tables.Get商品入库(2, 7, 3, each.what).Scaled(), each.scaled);
        EXPECT_EQ(book.tables.Get商品出库(2, 7, 3, each.what).Scaled(), each.scaled);
    }
}

TEST(Movements, Results) {
    const Variant null = Variant::Null();
    const auto sums = Sums(2.5, Money(125001), Money(16250), Money(141251));
    const MovementCase cases[] = {
        {"sums", sums, "数量", 25000},
        {"sums", sums, "金额", 125001},
        {"sums", sums, "税额", 16250},
        {"sums", sums, "合计", 141251},
        {"sums", sums, "单价", 50000},  // 5.00004
        {"sums", sums, "", 0},
        {"sums", sums, "除税金额", 0},
        {"no lines", Sums(null, null), "数量", 0},
        {"no lines", Sums(null, null), "金额", 0},
        {"no lines", Sums(null, null), "税额", 0},
        {"no lines", Sums(null, null), "合计", 0},
        {"no lines", Sums(null, null), "单价", 0},
        {"no quantity", Sums(0.0, Money(10000)), "单价", 0},
        {"no amount", Sums(2.0, null), "单价", 0},
        {"not numeric", Sums("两", Money(10000)), "单价", 0},
        {"a third", Sums(3.0, Money(10000)), "单价", 3333},
        {"a negative price", Sums(-3.0, Money(20000)), "单价", -6667},
        {"half to even", Sums(0.03125, Money(1)), "数量", 312},
        {"too large", Sums(1e15, Money(1)), "数量", 0},
        {"no row", MakeRows({{"数量", VarType::Double}}, {}), "数量", 0},
        {"no such column", MakeRows({{"别的", VarType::Double}}, {{1.0}}), "数量", 0},
    };
    ExpectMovements(cases);
}

TEST(Cost, Results) {
    const Variant null = Variant::Null();
    struct Case {
        const char* name;
        Rows rows;
        const char* what;
        std::int64_t scaled;
    };
    const Case cases[] = {
        {"quantity", {{7, 2.5, Money(125001)}}, "数量", 25000},
        {"amount", {{7, 2.5, Money(125001)}}, "金额", 125001},
        {"price", {{7, 2.5, Money(125001)}}, "单价", 50000},
        {"any other text is the price", {{7, 2.5, Money(125001)}}, "税额", 50000},
        {"the first product's", {{7, 2.5, Money(1)}, {8, 9.0, Money(2)}}, "金额", 1},
        {"no quantity", {{7, 0.0, Money(1)}}, "单价", 0},
        {"Null", {{7, null, null}}, "单价", 0},
        {"Null", {{7, null, null}}, "数量", 0},
        {"Null", {{7, null, null}}, "金额", 0},
        {"no row", {}, "金额", 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.name) + ", " + each.what);
        BookScript book;
        book.cnn->Answer(
            MakeRows({{"pdID", VarType::Long}, {"数量", VarType::Double}, {"金额", VarType::Currency}}, each.rows));
        EXPECT_EQ(book.tables.Get商品成本(2, 7, "3", each.what).Scaled(), each.scaled);
    }
}

/// The figures of a month, answers in the order of the statements.
struct StockCase {
    const char* name;
    const char* what;
    bool costUsed;
    std::vector<RecordsetPtr> answers;
    double answer;
};

std::vector<Sent> Asked(const std::string& method, const std::string& what, bool costUsed) {
    return corpus::Expected(method + "(2, 7, 3, \"" + what + "\", " + (costUsed ? "True" : "False") + ")");
}

std::vector<StockCase> StockCases() {
    const auto opening = Sums(10.5, Money(1050000)), inbound = Sums(4.25, Money(425001)),
               outbound = Sums(2.125, Money(212500)), cost = Sums(2.0, Money(200001));
    return {
        {"quantity", "数量", false, {opening, inbound, outbound}, 12.625},
        {"quantity, cost does not matter", "数量", true, {opening, inbound, outbound}, 12.625},
        {"amount", "金额", false, {opening, inbound, outbound}, 126.2501},
        {"amount at cost", "金额", true, {opening, inbound, cost}, 127.5},
        {"ten thousandths are exact",
         "金额",
         false,
         {Sums(0.0, 0.1), Sums(0.0, Money(2000)), Sums(0.0, Money(3000))},
         0},
        {"the opening figure becomes Currency first",
         "数量",
         false,
         {Sums(0.00004, Money(0)), Sums(0.0, Money(0)), Sums(0.0, Money(0))},
         0},
        {"nothing at all", "数量", false, {}, 0},
        {"less than nothing", "数量", false, {Sums(1.0, Money(0)), Sums(1.0, Money(0)), Sums(3.5, Money(0))}, -1.5},
    };
}

TEST(Stock, QuantityAndAmount) {
    for (const StockCase& each : StockCases()) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            BookScript current, stock;
            for (BookScript* book : {&current, &stock}) {
                book->tables.isSQL(isSQL);
                for (const auto& rows : each.answers) book->cnn->Answer(rows);
            }
            EXPECT_EQ(current.tables.Get本期库存(2, 7, 3, each.what, each.costUsed), each.answer);
            EXPECT_EQ(current.cnn->Statements(), Asked("Get本期库存", each.what, each.costUsed));
            EXPECT_EQ(stock.tables.Get商品库存(2, 7, 3, each.what, each.costUsed), each.answer);
            EXPECT_EQ(stock.cnn->Statements(), Asked("Get商品库存", each.what, each.costUsed));
        }
    }
}

TEST(StockPrice, FetchesBothOutboundAmountsAndTakesOne) {
    struct Case {
        bool costUsed;
        double price;
    };
    // (100 + 40 - 15) / (10 + 4 - 4), or with 20 for the outbound lines
    const Case cases[] = {{true, 12.5}, {false, 12}};
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            BookScript book;
            book.tables.isSQL(isSQL);
            const auto opening = Sums(10.0, Money(1000000)), inbound = Sums(4.0, Money(400000)),
                       outbound = Sums(4.0, Money(200000)), cost = Sums(3.0, Money(150000));
            for (const auto& rows : {opening, inbound, outbound, opening, inbound, cost, outbound})
                book.cnn->Answer(rows);
            EXPECT_EQ(book.tables.Get商品库存(2, 7, 3, "单价", each.costUsed), each.price);
            EXPECT_EQ(book.cnn->Statements(), Asked("Get商品库存", "单价", each.costUsed));
        }
    }
}

TEST(StockPrice, NoQuantityIsTheDivisionError) {
    BookScript book;
    EXPECT_EQ(FailureOf([&] { book.tables.Get商品库存(2, 7, 3, "单价"); }), 11) << "no row anywhere";
    EXPECT_EQ(book.cnn->Statements().size(), 7u) << "the amounts were fetched before";

    BookScript sold;
    const auto opening = Sums(2.0, Money(100000)), none = Sums(Variant::Null(), Variant::Null()),
               outbound = Sums(2.0, Money(90000));
    for (const auto& rows : {opening, none, outbound, opening, none, none, outbound}) sold.cnn->Answer(rows);
    EXPECT_EQ(FailureOf([&] { sold.tables.Get商品库存(2, 7, 3, "单价"); }), 11) << "an amount is left";
}

TEST(StockFailures, ZeroAfterAnErrorOfAStatement) {
    struct Case {
        const char* name;
        std::function<double(CTables&)> call;
    };
    const Case trapping[] = {
        {"Get上期库存", [](CTables& t) { return t.Get上期库存(2, 7, 3, "数量"); }},
        {"Get商品入库", [](CTables& t) { return t.Get商品入库(2, 7, 3, "数量").ToDouble(); }},
        {"Get商品出库", [](CTables& t) { return t.Get商品出库(2, 7, 3, "数量").ToDouble(); }},
        {"Get商品成本", [](CTables& t) { return t.Get商品成本(2, 7, "3", "数量").ToDouble(); }},
    };
    for (const Case& each : trapping) {
        SCOPED_TRACE(each.name);
        CTables unconnected;
        EXPECT_EQ(each.call(unconnected), 0);
        BookScript book;
        book.cnn->FailAt(1);
        EXPECT_EQ(each.call(book.tables), 0);
        EXPECT_EQ(book.cnn->Statements().size(), 1u);
    }
}

TEST(StockFailures, AFigureThatFailsCountsAsZero) {
    struct Case {
        int failing;
        double answer;
    };
    // 10 + 4 - 3
    const Case cases[] = {{1, 1}, {2, 7}, {3, 14}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.failing);
        BookScript current, stock;
        for (BookScript* book : {&current, &stock}) {
            const double figures[] = {10, 4, 3};
            for (int i = 0; i < 3; ++i)
                if (i + 1 != each.failing) book->cnn->Answer(Sums(figures[i], Money(0)));
            book->cnn->FailAt(each.failing);
        }
        EXPECT_EQ(current.tables.Get本期库存(2, 7, 3, "数量"), each.answer);
        EXPECT_EQ(stock.tables.Get商品库存(2, 7, 3, "数量"), each.answer);
    }
    CTables unconnected;
    EXPECT_EQ(unconnected.Get本期库存(2, 7, 3, "数量"), 0);
    EXPECT_EQ(unconnected.Get商品库存(2, 7, 3, "数量"), 0);
    EXPECT_EQ(FailureOf([&] { unconnected.Get商品库存(2, 7, 3, "单价"); }), 11);
}

TEST(StockFailures, AnOpeningFigureTooLargeIsTrappedByOneOnly) {
    BookScript current, stock;
    for (BookScript* book : {&current, &stock}) book->cnn->Answer(Sums(1e15, Money(0)));
    EXPECT_EQ(current.tables.Get本期库存(2, 7, 3, "数量"), 0);
    EXPECT_EQ(FailureOf([&] { stock.tables.Get商品库存(2, 7, 3, "数量"); }), 6);
}

}  // namespace
}  // namespace kpTables::test
