// The products that occur in a source, and one product's balance and cost records.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

struct ProductList {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const ProductList kProductLists[] = {
    {"rs商品列表", [](CTables& t) { return t.rs商品列表(0, 0, 0, 0, "入库"); }},
    {"rs期初记录", [](CTables& t) { return t.rs期初记录(0, 1); }},
    {"rs成本记录", [](CTables& t) { return t.rs成本记录(0, 1); }},
};

TEST(ProductRecords, HandOutTheConnectionsRows) {
    for (const auto& each : kProductLists) ExpectHandsOut(each.name, each.run);
}

TEST(ProductRecords, PassErrorsOn) {
    for (const auto& each : kProductLists) {
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

}  // namespace
}  // namespace kpTables::test
