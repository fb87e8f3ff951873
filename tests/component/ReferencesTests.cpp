// Reference lists: statements, results and failures.
#include <gtest/gtest.h>

#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(ReferenceStatements, ClassesAndRecords) {
    const StatementCase cases[] = {
        {"supplier classes",
         [](CTables& t) { t.rs厂商分类(); },
         {Executed("Select * From 厂商分类 Order by ClassCode")}},
        {"supplier classes, 0",
         [](CTables& t) { t.rs厂商分类(0); },
         {Executed("Select * From 厂商分类 Order by ClassCode")}},
        {"supplier classes, negative",
         [](CTables& t) { t.rs厂商分类(-5); },
         {Executed("Select * From 厂商分类 Order by ClassCode")}},
        {"supplier class", [](CTables& t) { t.rs厂商分类(7); }, {Executed("Select * From 厂商分类 Where ClassID=7")}},
        {"suppliers", [](CTables& t) { t.rs厂商资料(); }, {Executed("Select * From 厂商资料 Order by ClassCode")}},
        {"suppliers, negative",
         [](CTables& t) { t.rs厂商资料(-1); },
         {Executed("Select * From 厂商资料 Order by ClassCode")}},
        {"supplier", [](CTables& t) { t.rs厂商资料(1); }, {Executed("Select * From 厂商资料 Where ksID=1")}},
        {"customer classes",
         [](CTables& t) { t.rs客户分类(); },
         {Executed("Select * From 客户分类 Order by ClassCode")}},
        {"customer class", [](CTables& t) { t.rs客户分类(7); }, {Executed("Select * From 客户分类 Where ClassID=7")}},
        {"customers", [](CTables& t) { t.rs客户资料(); }, {Executed("Select * From 客户资料 Order by ClassCode")}},
        {"customer", [](CTables& t) { t.rs客户资料(12); }, {Executed("Select * From 客户资料 Where ksID=12")}},
        {"project classes",
         [](CTables& t) { t.rs项目分类(); },
         {Executed("Select * From 项目分类 Order by ClassCode")}},
        {"project class", [](CTables& t) { t.rs项目分类(7); }, {Executed("Select * From 项目分类 Where ClassID=7")}},
        {"projects",
         [](CTables& t) { t.rs项目资料(); },
         {Executed("Select * From 项目设置 Order by ClassCode,项目编号")}},
        {"projects, negative",
         [](CTables& t) { t.rs项目资料(-2147483647 - 1); },
         {Executed("Select * From 项目设置 Order by ClassCode,项目编号")}},
        {"project",
         [](CTables& t) { t.rs项目资料(2147483647); },
         {Executed("Select * From 项目设置 Where 项目ID=2147483647")}},
        {"department classes",
         [](CTables& t) { t.rs部门分类(); },
         {Executed("Select * From 部门分类 Order by ClassCode")}},
        {"department class", [](CTables& t) { t.rs部门分类(7); }, {Executed("Select * From 部门分类 Where ClassID=7")}},
        {"employees", [](CTables& t) { t.rs雇员资料(); }, {Executed("Select * From 雇员资料 Order by ClassCode")}},
        {"employee", [](CTables& t) { t.rs雇员资料(7); }, {Executed("Select * From 雇员资料 Where 雇员ID=7")}},
    };
    ExpectStatements(cases);
}

TEST(ReferenceStatements, ListsOfTheMonth) {
    const StatementCase cases[] = {
        {"warehouses", [](CTables& t) { t.rs仓库列表(); }, {Executed("Select * From 仓库设置 order by dpID")}},
        {"warehouses, month 0",
         [](CTables& t) { t.rs仓库列表(0); },
         {Executed("Select * From 仓库设置 order by dpID")}},
        {"warehouses, month -1",
         [](CTables& t) { t.rs仓库列表(-1); },
         {Executed("Select * From 仓库设置 order by dpID")}},
        {"warehouses, month 1",
         [](CTables& t) { t.rs仓库列表(1); },
         {Executed("Select Distinct dpID From 仓库余额表 Where 月份=1 Order by dpID")}},
        {"suppliers", [](CTables& t) { t.rs厂商列表(); }, {Executed("Select * From 厂商资料 Order by ksID")}},
        {"suppliers, month 12",
         [](CTables& t) { t.rs厂商列表(12); },
         {Executed("Select * From 厂商资料 Where ksID in (Select ksID From 入库目录 Where 月份=12) Order by "
                   "ClassCode,ksID")}},
        {"suppliers, month -1 is a month",
         [](CTables& t) { t.rs厂商列表(-1); },
         {Executed("Select * From 厂商资料 Where ksID in (Select ksID From 入库目录 Where 月份=-1) Order by "
                   "ClassCode,ksID")}},
        {"customers", [](CTables& t) { t.rs客户列表(0); }, {Executed("Select * From 客户资料 Order by ksID")}},
        {"customers, month 3",
         [](CTables& t) { t.rs客户列表(3); },
         {Executed("Select * From 客户资料 Where ksID in (Select ksID From 出库目录 Where 月份=3) Order by "
                   "ClassCode,ksID")}},
        {"customers, month -1",
         [](CTables& t) { t.rs客户列表(-1); },
         {Executed("Select * From 客户资料 Where ksID in (Select ksID From 出库目录 Where 月份=-1) Order by "
                   "ClassCode,ksID")}},
        {"projects", [](CTables& t) { t.rs项目列表(); }, {Executed("Select * From 项目设置 Order by 项目ID")}},
        {"projects, month 3",
         [](CTables& t) { t.rs项目列表(3); },
         {Executed("Select * From 项目设置 Where (项目ID in (Select 项目ID From 入库目录 Where 月份=3)) or (项目ID in "
                   "(Select 项目ID From 出库目录 Where 月份=3)) Order by ClassCode,ksID")}},
        {"projects, month -32768",
         [](CTables& t) { t.rs项目列表(-32768); },
         {Executed("Select * From 项目设置 Where (项目ID in (Select 项目ID From 入库目录 Where 月份=-32768)) or "
                   "(项目ID in (Select 项目ID From 出库目录 Where 月份=-32768)) Order by ClassCode,ksID")}},
    };
    ExpectStatements(cases);
}

struct NamedQuery {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const NamedQuery kLists[] = {
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
    for (const auto& each : kLists) ExpectHandsOut(each.name, each.run);
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
    const char* text;  ///< for id -7
    const char* field;
};
const Lookup kNames[] = {
    {"Get厂商名称", [](CTables& t, std::int32_t id) { return t.Get厂商名称(id); },
     "Select * From 厂商资料 Where ksID=-7", "企业名称"},
    {"Get客户名称", [](CTables& t, std::int32_t id) { return t.Get客户名称(id); },
     "Select * From 客户资料 Where ksID=-7", "企业名称"},
    {"Get项目名称", [](CTables& t, std::int32_t id) { return t.Get项目名称(id); },
     "Select * From 项目设置 Where 项目ID=-7", "项目名称"},
    {"Get项目编号", [](CTables& t, std::int32_t id) { return t.Get项目编号(id); },
     "Select * From 项目设置 Where 项目ID=-7", "项目编号"},
    {"Get仓库名称", [](CTables& t, std::int32_t id) { return t.Get仓库名称(id); },
     "Select 仓库名称 From 仓库设置 Where dpID=-7", "仓库名称"},
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
                EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Executed(lookup.text)});
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
    EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Executed("Select * From 厂商资料 Where ksID=0")});
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
    const char* text;  ///< for " 甲'乙"
    const char* field;
    std::int32_t absent;
};
const IdLookup kIds[] = {
    {"Get厂商ID", [](CTables& t, const std::string& name) { return t.Get厂商ID(name); },
     "Select * From 厂商资料 Where 单位名称＝' 甲'乙'", "KSID", 0},
    {"Get客户ID", [](CTables& t, const std::string& name) { return t.Get客户ID(name); },
     "Select * From 客户资料 Where 单位名称＝' 甲'乙'", "KSID", 0},
    {"Get仓库ID", [](CTables& t, const std::string& name) { return t.Get仓库ID(name); },
     "Select * From 仓库设置 Where 仓库名称=' 甲'乙'", "dpID", -1},
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
                EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Executed(lookup.text)});
            }
        }
    }
}

TEST(IdByName, AllWarehousesIsZeroWithoutAStatement) {
    CTables unconnected;
    EXPECT_EQ(unconnected.Get仓库ID("全部仓库"), 0);
    EXPECT_EQ(unconnected.Get仓库ID("全部"), 0);
    const StatementCase cases[] = {
        {"the names themselves",
         [](CTables& t) {
             EXPECT_EQ(t.Get仓库ID("全部仓库"), 0);
             EXPECT_EQ(t.Get仓库ID("全部"), 0);
         },
         {}},
        {"a blank behind is another name",
         [](CTables& t) { EXPECT_EQ(t.Get仓库ID("全部 "), -1); },
         {Executed("Select * From 仓库设置 Where 仓库名称='全部 '")}},
        {"no name",
         [](CTables& t) { EXPECT_EQ(t.Get仓库ID(""), -1); },
         {Executed("Select * From 仓库设置 Where 仓库名称=''")}},
        {"a supplier has no such names",
         [](CTables& t) { EXPECT_EQ(t.Get厂商ID("全部"), 0); },
         {Executed("Select * From 厂商资料 Where 单位名称＝'全部'")}},
    };
    ExpectStatements(cases);
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
    for (const auto& each : kLists) {
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
std::shared_ptr<ScriptedRecordset> Counted(std::int32_t count) {
    const auto rows = MakeRows({{"dpID", VarType::Long}}, {});
    rows->ReportCount(count);
    return rows;
}

TEST(ReferenceCounts, StatementsAndResults) {
    for (const std::int16_t count : {std::int16_t{0}, std::int16_t{3}, std::int16_t{32767}}) {
        for (const bool isSQL : {false, true}) {
            const auto cnn = std::make_shared<ScriptedConnection>();
            cnn->Answer(Counted(count)).Answer(Counted(count));
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(tables.Get仓库数量(), count);
            EXPECT_EQ(tables.Get收付款方式数量(), count);
            EXPECT_EQ(cnn->Statements(),
                      (std::vector<Sent>{Executed("Select * from 仓库设置"), Executed("Select * From 收付款方式")}));
        }
    }
}

TEST(ReferenceCounts, OnlyPaymentMethodsTrapErrors) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get仓库数量(); }), 91);
    EXPECT_EQ(tables.Get收付款方式数量(), 0);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1).FailAt(2).Answer(Counted(32768)).Answer(Counted(32768));
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.Get仓库数量(); }), kRefused);
    EXPECT_EQ(tables.Get收付款方式数量(), 0);
    EXPECT_EQ(FailureOf([&] { tables.Get仓库数量(); }), 6) << "more than the result can hold";
    EXPECT_EQ(tables.Get收付款方式数量(), 0);
}

TEST(ClassDeletion, Statements) {
    const StatementCase cases[] = {
        {"customers",
         [](CTables& t) { EXPECT_TRUE(t.Del_客户分类(7)); },
         {Executed("Delete From 客户分类 Where ClassID=7")}},
        {"suppliers",
         [](CTables& t) { EXPECT_TRUE(t.Del_厂商分类(0)); },
         {Executed("Delete From 厂商分类 Where ClassID=0")}},
        {"projects",
         [](CTables& t) { EXPECT_TRUE(t.Del_项目分类(-1)); },
         {Executed("Delete From 项目分类 Where ClassID=-1")}},
    };
    ExpectStatements(cases);
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
