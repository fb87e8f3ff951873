// The list of delivery work orders under its filters.
#include <gtest/gtest.h>

#include <array>
#include <map>

#include "BookScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

enum Filter {
    kFirstDate,
    kLastDate,
    kFirstNumber,
    kLastNumber,
    kPlate,
    kDriver,
    kEscort,
    kPayment,
    kPaymentOp,
    kHired,
    kViolation,
    kSupplier,
    kNote,
    kNoteOp,
    kCustomer,
    kPlace,
    kProduct,
    kMinQuantity,
    kMaxQuantity,
    kMinAmount,
    kMaxAmount,
    kFilters,
};
using WorkOrderFilters = std::map<Filter, Variant>;

/// What is not given is Empty.
RecordsetPtr WorkOrderList(CTables& tables, const WorkOrderFilters& given) {
    std::array<Variant, kFilters> f;
    for (const auto& [filter, value] : given) f[static_cast<std::size_t>(filter)] = value;
    return tables.rs工作单列表(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9], f[10], f[11], f[12], f[13],
                               f[14], f[15], f[16], f[17], f[18], f[19], f[20]);
}

TEST(WorkOrderList, HandsOutItsRows) {
    ExpectHandsOut("all", [](CTables& t) { return WorkOrderList(t, {}); });
}

TEST(WorkOrderList, LeavesItsArgumentsAlone) {
    BookScript book;
    Variant date = "2004-03-07", payment = 100, op = ">=", hired = true, other;
    EXPECT_TRUE(book.tables.rs工作单列表(date, other, other, other, other, other, other, payment, op, hired, other,
                                         other, other, other, other, other, other, other, other, other, other));
    EXPECT_TRUE(date.Is("2004-03-07"));
    EXPECT_TRUE(payment.Is(100));
    EXPECT_TRUE(op.Is(">="));
    EXPECT_TRUE(hired.Is(true));
    EXPECT_TRUE(other.IsEmpty());
}

TEST(WorkOrderList, AnErrorWhileComposingAnswersNothing) {
    struct Case {
        const char* name;
        WorkOrderFilters filters;
    };
    const Case cases[] = {
        {"a date that is none", {{kFirstDate, "x"}}},
        {"a payment that is no number", {{kPayment, "x"}, {kPaymentOp, "="}}},
        {"a flag that is no number", {{kHired, "x"}}},
        {"an id that is no number", {{kSupplier, "x"}}},
        {"a bound that is no number", {{kMaxAmount, "x"}}},
        {"an object", {{kPlate, Variant(nullptr)}}},
        {"an array", {{kPlace, std::make_shared<VariantArray>()}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        EXPECT_FALSE(WorkOrderList(book.tables, each.filters));
        EXPECT_TRUE(book.cnn->Statements().empty());
    }
}

TEST(WorkOrderList, ARefusedStatementIsTheHosts) {
    for (const WorkOrderFilters& filters : {WorkOrderFilters{}, WorkOrderFilters{{kMinQuantity, 1}}}) {
        BookScript book;
        book.cnn->FailAt(1);
        EXPECT_EQ(FailureOf([&] { WorkOrderList(book.tables, filters); }), kRefused);
    }
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { WorkOrderList(unconnected, {}); }), 91);
}

}  // namespace
}  // namespace kpTables::test
