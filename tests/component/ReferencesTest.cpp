// Reference lists: results and failures.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

struct ReferenceList {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const ReferenceList kReferenceLists[] = {
    {"rs厂商分类", [](CTables& t) { return t.rs厂商分类(); }},
    {"rs厂商资料", [](CTables& t) { return t.rs厂商资料(1); }},
    {"rs客户分类", [](CTables& t) { return t.rs客户分类(1); }},
    {"rs客户资料", [](CTables& t) { return t.rs客户资料(); }},
    {"rs项目分类", [](CTables& t) { return t.rs项目分类(); }},
    {"rs项目资料", [](CTables& t) { return t.rs项目资料(1); }},
    {"rs部门分类", [](CTables& t) { return t.rs部门分类(1); }},
    {"rs雇员资料", [](CTables& t) { return t.rs雇员资料(); }},
    {"rs厂商列表", [](CTables& t) { return t.rs厂商列表(); }},
    {"rs客户列表", [](CTables& t) { return t.rs客户列表(1); }},
    {"rs项目列表", [](CTables& t) { return t.rs项目列表(1); }},
};

TEST(ReferenceLists, HandOutTheConnectionsRows) {
    for (const auto& each : kReferenceLists) ExpectHandsOut(each.name, each.run);
}

TEST(ReferenceLists, WarehousesKeepTheirCacheSize) {
    for (const std::int16_t month : {std::int16_t{0}, std::int16_t{3}}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        const auto rows = MakeRows({{"dpID", VarType::Long}}, {{1}, {2}});
        rows->SetCacheSize(17);
        cnn->Answer(rows);
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(tables.rs仓库列表(month), rows);
        EXPECT_EQ(rows->CacheSize(), 17);
    }
}

struct Lookup {
    const char* name;
    std::function<std::string(CTables&, std::int32_t)> run;
    const char* field;
};
const Lookup kNames[] = {
    {"Get厂商名称", [](CTables& t, std::int32_t id) { return t.Get厂商名称(id); }, "企业名称"},
    {"Get客户名称", [](CTables& t, std::int32_t id) { return t.Get客户名称(id); }, "企业名称"},
    {"Get项目名称", [](CTables& t, std::int32_t id) { return t.Get项目名称(id); }, "项目名称"},
    {"Get项目编号", [](CTables& t, std::int32_t id) { return t.Get项目编号(id); }, "项目编号"},
    {"Get仓库名称", [](CTables& t, std::int32_t id) { return t.Get仓库名称(id); }, "仓库名称"},
};

TEST(NameById, FirstRowOrEmpty) {
    struct Case {
        const char* name;
        Rows rows;
        bool countKnown;
        const char* answer;
    };
    const Case cases[] = {
        {"one row", {{"甲"}}, true, "甲"},
        {"the first of two", {{"乙"}, {"甲"}}, true, "乙"},
        {"blanks stay", {{" 甲 "}}, true, " 甲 "},
        {"Null", {{Variant::Null()}}, true, ""},
        {"no row", {}, true, ""},
        {"count unknown", {{"甲"}}, false, ""},
    };
    for (const Lookup& lookup : kNames) {
        for (const Case& each : cases) {
            for (const bool isSQL : {false, true}) {
                SCOPED_TRACE(std::string(lookup.name) + ", " + each.name);
                const auto cnn = std::make_shared<ScriptedConnection>();
                const auto rows = MakeRows({{lookup.field, VarType::String}}, each.rows);
                if (!each.countKnown) rows->ReportCount(-1);
                cnn->Answer(rows);
                CTables tables;
                tables.Cnn(cnn);
                tables.isSQL(isSQL);
                EXPECT_EQ(lookup.run(tables, -7), each.answer);
                EXPECT_EQ(cnn->Statements(), corpus::Expected(std::string(lookup.name) + "(-7)"));
            }
        }
    }
}

TEST(NameById, WarehouseZeroIsAllWithoutAStatement) {
    CTables unconnected;
    EXPECT_EQ(unconnected.Get仓库名称(0), "全部仓库");
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    tables.Cnn(cnn);
    EXPECT_EQ(tables.Get仓库名称(0), "全部仓库");
    EXPECT_TRUE(cnn->Statements().empty());
    EXPECT_EQ(tables.Get厂商名称(0), "");
    EXPECT_EQ(cnn->Statements(), corpus::Expected("Get厂商名称(0)"));
}

TEST(NameById, PassesErrorsOn) {
    for (const Lookup& lookup : kNames) {
        SCOPED_TRACE(lookup.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, 1); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1).Answer(MakeRows({{"别的", VarType::String}}, {{"甲"}}));
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, 1); }), kRefused);
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, 1); }), 3265);
    }
}

struct IdLookup {
    const char* name;
    std::function<std::int32_t(CTables&, const std::string&)> run;
    const char* field;
    std::int32_t absent;
};
const IdLookup kIds[] = {
    {"Get厂商ID", [](CTables& t, const std::string& name) { return t.Get厂商ID(name); }, "KSID", 0},
    {"Get客户ID", [](CTables& t, const std::string& name) { return t.Get客户ID(name); }, "KSID", 0},
    {"Get仓库ID", [](CTables& t, const std::string& name) { return t.Get仓库ID(name); }, "dpID", -1},
};

TEST(IdByName, FirstRowOrAbsent) {
    for (const IdLookup& lookup : kIds) {
        struct Case {
            const char* name;
            Rows rows;
            bool countKnown;
            std::int32_t answer;
        };
        const Case cases[] = {
            {"one row", {{12}}, true, 12},
            {"the first of two", {{13}, {12}}, true, 13},
            {"a text that is a number", {{"2147483647"}}, true, 2147483647},
            {"a fraction rounds half to even", {{2.5}}, true, 2},
            {"no row", {}, true, lookup.absent},
            {"count unknown", {{12}}, false, lookup.absent},
        };
        for (const Case& each : cases) {
            for (const bool isSQL : {false, true}) {
                SCOPED_TRACE(std::string(lookup.name) + ", " + each.name);
                const auto cnn = std::make_shared<ScriptedConnection>();
                const auto rows = MakeRows({{lookup.field, VarType::Empty}}, each.rows);
                if (!each.countKnown) rows->ReportCount(-1);
                cnn->Answer(rows);
                CTables tables;
                tables.Cnn(cnn);
                tables.isSQL(isSQL);
                EXPECT_EQ(lookup.run(tables, " 甲'乙"), each.answer);
                EXPECT_EQ(cnn->Statements(), corpus::Expected(std::string(lookup.name) + "(\" 甲'乙\")"));
            }
        }
    }
}

TEST(IdByName, AllWarehousesIsZeroWithoutAStatement) {
    CTables unconnected;
    EXPECT_EQ(unconnected.Get仓库ID("全部仓库"), 0);
    EXPECT_EQ(unconnected.Get仓库ID("全部"), 0);
}

TEST(IdByName, PassesErrorsOn) {
    for (const IdLookup& lookup : kIds) {
        SCOPED_TRACE(lookup.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, "甲"); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        const std::vector<FieldInfo> fields = {{lookup.field, VarType::Empty}};
        cnn->FailAt(1)
            .Answer(MakeRows(fields, {{Variant::Null()}}))
            .Answer(MakeRows(fields, {{2147483648.0}}))
            .Answer(MakeRows({{"别的", VarType::Long}}, {{1}}));
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, "甲"); }), kRefused);
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, "甲"); }), 94);
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, "甲"); }), 6);
        EXPECT_EQ(FailureOf([&] { lookup.run(tables, "甲"); }), 3265);
    }
}

TEST(ReferenceLists, PassErrorsOn) {
    for (const auto& each : kReferenceLists) {
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), kRefused);
    }
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.rs仓库列表(); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1).FailAt(2);
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.rs仓库列表(); }), kRefused);
    EXPECT_EQ(FailureOf([&] { tables.rs仓库列表(3); }), kRefused);
}

/// Rows that report a count.
std::shared_ptr<ScriptedRecordset> ReferencesCounted(std::int32_t count) {
    const auto rows = MakeRows({{"dpID", VarType::Long}}, {});
    rows->ReportCount(count);
    return rows;
}

TEST(ReferenceCounts, StatementsAndResults) {
    for (const std::int16_t count : {std::int16_t{0}, std::int16_t{3}, std::int16_t{32767}}) {
        for (const bool isSQL : {false, true}) {
            const auto cnn = std::make_shared<ScriptedConnection>();
            cnn->Answer(ReferencesCounted(count)).Answer(ReferencesCounted(count));
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(tables.Get仓库数量(), count);
            EXPECT_EQ(tables.Get收付款方式数量(), count);
            const std::vector<Sent> expected = {corpus::Expected("Get仓库数量()").front(),
                                                corpus::Expected("Get收付款方式数量()").front()};
            EXPECT_EQ(cnn->Statements(), expected);
        }
    }
}

TEST(ReferenceCounts, OnlyPaymentMethodsTrapErrors) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get仓库数量(); }), 91);
    EXPECT_EQ(tables.Get收付款方式数量(), 0);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1).FailAt(2).Answer(ReferencesCounted(32768)).Answer(ReferencesCounted(32768));
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.Get仓库数量(); }), kRefused);
    EXPECT_EQ(tables.Get收付款方式数量(), 0);
    EXPECT_EQ(FailureOf([&] { tables.Get仓库数量(); }), 6) << "more than the result can hold";
    EXPECT_EQ(tables.Get收付款方式数量(), 0);
}

TEST(ClassDeletion, FalseAfterAnError) {
    using Delete = bool (CTables::*)(std::int32_t);
    for (const Delete each : {&CTables::Del_客户分类, &CTables::Del_厂商分类, &CTables::Del_项目分类}) {
        CTables tables;
        EXPECT_FALSE((tables.*each)(7));
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1).Answer(nullptr);
        tables.Cnn(cnn);
        EXPECT_FALSE((tables.*each)(7));
        EXPECT_TRUE((tables.*each)(7));
        EXPECT_EQ(cnn->Statements().size(), 2u);
    }
}

}  // namespace
}  // namespace kpTables::test
