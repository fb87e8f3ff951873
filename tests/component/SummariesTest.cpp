// Sums per product and per partner: results and failures.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

struct NamedSum {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const NamedSum kSums[] = {
    {"rs商品汇总", [](CTables& t) { return t.rs商品汇总("入库", 1, 2, 0, 0, ""); }},
    {"rs商品汇总, cost", [](CTables& t) { return t.rs商品汇总("成本", 1, 2, 0, 0, ""); }},
    {"rs成本汇总", [](CTables& t) { return t.rs成本汇总(1, 2, 0); }},
    {"rs单位汇总, suppliers", [](CTables& t) { return t.rs单位汇总(1, 2, "厂商"); }},
    {"rs单位汇总, customers", [](CTables& t) { return t.rs单位汇总(1, 2, "客户"); }},
};

TEST(Sums, HandOutTheConnectionsRows) {
    for (const auto& each : kSums) ExpectHandsOut(each.name, each.run);
}

TEST(Sums, PassErrorsOn) {
    for (const auto& each : kSums) {
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), 1u);
    }
}

TEST(Sums, LeaveByReferenceArgumentsAlone) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    tables.Cnn(cnn);
    std::int16_t begin = -1;
    std::int16_t end = 0;
    std::int32_t warehouse = -2;
    std::string kind = "厂";
    tables.rs成本汇总(begin, end, warehouse);
    tables.rs单位汇总(begin, end, kind);
    EXPECT_EQ(begin, -1);
    EXPECT_EQ(end, 0);
    EXPECT_EQ(warehouse, -2);
    EXPECT_EQ(kind, "厂");
}

}  // namespace
}  // namespace kpTables::test
