// The bill headers' second name for their project.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

using namespace test;

constexpr const char* kProjectsOfMarch =
    "Select * From 项目设置 Where (项目ID in (Select 项目ID From 入库目录 Where 月份=3)) or (项目ID in (Select 项目ID "
    "From 出库目录 Where 月份=3)) Order by ClassCode,ksID";

class ProjectNames : public testing::Test {
protected:
    void SetUp() override { AddProjects(*book); }

    static void AddProjects(Connection& connection) {
        for (const char* name : {"甲", "乙", "丙", "丁"}) {
            connection.Execute(
                std::string("Insert Into 项目设置 (项目名称, ClassCode) Values ('").append(name).append("', '01')"));
        }
    }
    /// The names of the projects that the statement lists.
    static std::string Listed(Connection& connection) {
        const RecordsetPtr rows = connection.Execute(kProjectsOfMarch);
        std::string names;
        for (; !rows->Eof(); rows->MoveNext()) names += Text(rows->Fields("项目名称").Value());
        return names;
    }
    void Run(std::string_view text) { book->Execute(text); }

    BookPtr book = NewBook();
};

TEST_F(ProjectNames, AMonthListsTheProjectsOfItsBills) {
    struct Bill {
        const char* table;
        const char* month;
        const char* project;
        const char* listed;  ///< once the bill is there, too
    };
    constexpr Bill kBills[] = {
        {"入库目录", "3", "0", ""},     {"出库目录", "3", "Null", ""},   {"入库目录", "4", "1", ""},
        {"出库目录", "2", "1", ""},     {"入库目录", "3", "2", "乙"},    {"出库目录", "3", "4", "乙丁"},
        {"入库目录", "3", "4", "乙丁"}, {"入库目录", "3", "99", "乙丁"},
    };
    EXPECT_EQ(Listed(*book), "");
    for (const auto& [table, month, project, listed] : kBills) {
        Run(std::string("Insert Into ") + table + " (月份, pjID) Values (" + month + ", " + project + ")");
        EXPECT_EQ(Listed(*book), listed) << table << ' ' << month << ' ' << project;
    }
    Run("Update 入库目录 Set pjID=3 Where pjID=2");
    EXPECT_EQ(Listed(*book), "丙丁");
    Run("Delete From 出库目录");
    Run("Delete From 入库目录 Where pjID=4");
    EXPECT_EQ(Listed(*book), "丙");
}

TEST_F(ProjectNames, ReadAsTheColumnThatIsStored) {
    Run("Insert Into 入库目录 (月份, pjID) Values (3, 2)");
    Run("Insert Into 入库目录 (月份) Values (4)");
    Run("Insert Into 入库目录 (月份, pjID) Values (5, Null)");
    EXPECT_EQ(RowsOf(*book, "Select 月份, 项目ID From 入库目录 Order by 月份"), "3|2 / 4|0 / 5|Null");
    EXPECT_EQ(book->Execute("Select 项目ID From 入库目录")->FieldAt(0).type, VarType::Long);
    EXPECT_EQ(
        RowsOf(*book, "Select 月份, 项目名称 From 入库目录 Inner Join 项目设置 On pjID = 项目ID Where 项目ID > 0"),
        "3|乙");
    EXPECT_EQ(RowsOf(*book, "Select 项目ID, Count(*) From 入库目录 Group by 项目ID Order by 项目ID"),
              "Null|1 / 0|1 / 2|1");
}

TEST_F(ProjectNames, AreNoneOfAListingsColumns) {
    const char* const tables[] = {"入库目录", "出库目录"};
    for (const std::string table : tables) {
        const RecordsetPtr listed = book->Execute("Select Lst.* From " + table + " As Lst");
        EXPECT_EQ(listed->FieldCount(), 17) << table;
        EXPECT_EQ(listed->FieldAt(16).name, "说明") << table;
        EXPECT_EQ(NumberOf([&] { listed->FieldIndex("项目ID"); }), Code(ErrorNumber::ItemNotFound)) << table;
    }
    for (const TableInfo& table : book->Tables()) {
        if (table.name != "入库目录" && table.name != "出库目录") continue;
        ASSERT_EQ(table.columns.size(), 17U);
        EXPECT_EQ(table.columns[16].name, "说明");
        EXPECT_EQ(Text(table.columns[11].defaultValue), "0") << table.columns[11].name;
    }
}

TEST_F(ProjectNames, AreWrittenAsTheColumnThatIsStored) {
    const auto written = [this](const char* statement) {
        Run(statement);
        return RowsOf(*book, "Select 月份, pjID, 项目ID From 入库目录 Order by BillID");
    };
    EXPECT_EQ(written("Insert Into 入库目录 (月份, 项目ID) Values (3, 1)"), "3|1|1");
    EXPECT_EQ(written("Insert Into 入库目录 (项目ID, 月份, pjID) Values (4, 3, 4)"), "3|1|1 / 3|4|4");
    EXPECT_EQ(Listed(*book), "甲丁");
    EXPECT_EQ(written("Update 入库目录 Set 项目ID=2 Where 项目ID=1"), "3|2|2 / 3|4|4");
    EXPECT_EQ(written("Update 入库目录 Set 项目ID=3, 月份=5, pjID=3 Where pjID=4"), "3|2|2 / 5|3|3");
    EXPECT_EQ(written("Insert Into 入库目录 (项目ID, 月份) Select 项目ID, 6 From 项目设置 Where 项目ID>3"),
              "3|2|2 / 5|3|3 / 6|4|4");
    Run("Alter Table 商品分类 Add Column 名称 TEXT(255) As (ClassName)");
    Run("Insert Into 商品分类 (ClassCode, 名称) Values ('01', '水泥')");
    EXPECT_EQ(RowsOf(*book, "Select ClassCode, ClassName, 名称 From 商品分类"), "01|水泥|水泥");
}

TEST_F(ProjectNames, AreNoneOfTheColumnsOfAWholeRow) {
    Run("Insert Into 入库目录 Values (7,2004,3,9,'入库单','','N1','','',1,2,3,'','2004-3-9','','2004-3-9','')");
    EXPECT_EQ(RowsOf(*book, "Select BillID, ksID, pjID, 项目ID From 入库目录"), "7|2|3|3");
    Run("Insert Into 出库目录 Select * From 入库目录");
    EXPECT_EQ(RowsOf(*book, "Select BillID, ksID, pjID, 项目ID From 出库目录"), "7|2|3|3");
}

TEST_F(ProjectNames, AreNoFieldsOfARowThatIsWritten) {
    Run("Insert Into 入库目录 (月份, pjID) Values (3, 2)");
    for (const auto kind : {SourceKind::Table, SourceKind::Text}) {
        const RecordsetPtr rows =
            book->Open(kind == SourceKind::Table ? "入库目录" : "Select * From 入库目录 Where 项目ID > 0", kind);
        EXPECT_EQ(NumberOf([&] { rows->Fields("项目ID").SetValue(1); }), Code(ErrorNumber::ItemNotFound));
        rows->AddNew();
        rows->Fields("月份").SetValue(3);
        rows->Fields("pjID").SetValue(4);
        rows->Update();
        rows->Close();
    }
    EXPECT_EQ(RowsOf(*book, "Select 项目ID From 入库目录 Order by BillID"), "2 / 4 / 4");
    const RecordsetPtr named = book->Open("Select BillID, 项目ID From 入库目录", SourceKind::Text);
    EXPECT_EQ(NumberOf([&] { named->Fields("项目ID").SetValue(1); }), Code(ErrorNumber::NotUpdatable));
}

TEST_F(ProjectNames, ABookWithoutThemOpensAndCanGetThem) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("older");
    {
        const auto older = CreateBook(path);
        for (const std::string table : {"入库目录", "出库目录"}) {
            older->Execute("Drop Table " + table);
            older->Execute("Create Table " + table + " (BillID COUNTER PRIMARY KEY, 月份 SHORT, pjID LONG DEFAULT 0)");
            older->Execute("Insert Into " + table + " (月份, pjID) Values (3, 2)");
        }
        AddProjects(*older);
    }
    const auto book = OpenBook(path);
    EXPECT_EQ(RowsOf(*book, "Select * From 入库目录"), "1|3|2");
    book->Execute("Alter Table 入库目录 Add Column 项目ID LONG AS (pjID)");
    book->Execute("Alter Table 出库目录 Add Column 项目ID LONG AS (pjID)");
    EXPECT_EQ(RowsOf(*book, "Select * From 入库目录"), "1|3|2");
    EXPECT_EQ(Listed(*book), "乙");
}

}  // namespace
}  // namespace kpTables
