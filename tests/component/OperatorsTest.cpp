// Operators: names, rights, managed warehouses and passwords.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "TableScript.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// An operator's row with a password, a warehouse and rights.
Rows OneOperator(const Variant& password, const Variant& warehouse, const Variant& right) {
    return {{5, "张三", password, warehouse, right, right, right, right, right}};
}

TEST(OperatorList, HandsOutItsRows) {
    for (const std::int32_t id : {1, 0, -1}) {
        BookScript book;
        const auto rows = Operators(OneOperator("", 0, true));
        book.AnswerRecorded(rows);
        EXPECT_EQ(book.tables.rs操作员(id), rows);
        EXPECT_EQ(*book.cnn->Log(), Journal{id == 1 ? "execute Select * From 操作员 Where ID=1"
                                                    : "execute Select * From 操作员 Order By ID"});
    }
}

TEST(OperatorList, AnOperatorThatIsNotThereIsNotAdded) {
    BookScript book;
    book.cnn->Answer(Operators());
    EXPECT_EQ(book.tables.rs操作员(5)->RecordCount(), 0);
    EXPECT_EQ(book.cnn->Statements().size(), 1u);
}

TEST(OperatorList, AddsTheSystemOperatorToAnEmptyTable) {
    BookScript book;
    const auto list = Operators(OneOperator("", 0, false));
    book.cnn->Answer(Operators());
    book.AnswerRecorded(Operators());
    book.cnn->Answer(list);
    EXPECT_EQ(book.tables.rs操作员(), list);
    const Journal expected = {"execute Select * From 操作员 Order By ID",
                              "open table 操作员",
                              "AddNew",
                              "Set 姓名=系统操作员",
                              "Set 密码=",
                              "Set dpID=0",
                              "Set 入库处理=0",
                              "Set 资产处理=0",
                              "Set 凭证处理=0",
                              "Set 卡片打印=0",
                              "Set 资产折旧=0",
                              "Set 凭证处理=1",
                              "Update",
                              "Close",
                              "execute Select * From 操作员 Order By ID"};
    EXPECT_EQ(*book.cnn->Log(), expected);
}

struct AppendCase {
    const char* name;
    Rows before;
    std::optional<std::int32_t> count;  ///< as the recordset reports it once the row is added
    const char* rights;
};

TEST(AppendOperator, RightsByTheCountWithTheNewRow) {
    const AppendCase cases[] = {
        {"an empty table counts the new row", {}, std::nullopt, "0"},
        {"a table with an operator", OneOperator("", 0, true), std::nullopt, "0"},
        {"a count of 0", {}, 0, "1"},
        {"a count of 1", {}, 1, "0"},
        {"a count of 2", {}, 2, "0"},
        {"a count that is not known", {}, -1, "0"},
    };
    for (const AppendCase& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        const auto rows = Operators(each.before);
        if (each.count) rows->ReportCount(*each.count);
        book.AnswerRecorded(rows);
        EXPECT_EQ(book.tables.操作员_Append(" 李四 "), 7);
        const std::string right = each.rights;
        const Journal expected = {"open table 操作员",
                                  "AddNew",
                                  "Set 姓名= 李四 ",
                                  "Set 密码=",
                                  "Set dpID=" + right,
                                  "Set 入库处理=" + right,
                                  "Set 资产处理=" + right,
                                  "Set 凭证处理=" + right,
                                  "Set 卡片打印=" + right,
                                  "Set 资产折旧=" + right,
                                  "Set 凭证处理=1",
                                  "Update",
                                  "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
}

struct ClearCase {
    const char* name;
    Rows before;
    std::optional<std::int32_t> count;
    bool cleared;
};

TEST(ClearRights, OfExactlyOneRow) {
    const ClearCase cases[] = {
        {"one row", OneOperator("m1", 3, true), std::nullopt, true},
        {"no row", {}, std::nullopt, false},
        {"two rows", {{5, "张三"}, {5, "李四"}}, std::nullopt, false},
        {"a count that is not known", OneOperator("m1", 3, true), -1, false},
    };
    for (const ClearCase& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        const auto rows = Operators(each.before);
        if (each.count) rows->ReportCount(*each.count);
        book.AnswerRecorded(rows);
        EXPECT_TRUE(book.tables.操作权限_Clear(5));
        const Journal cleared = {"open Select * From 操作员 Where ID=5",
                                 "Set 入库处理=False",
                                 "Set 资产处理=False",
                                 "Set 凭证处理=False",
                                 "Set 卡片打印=False",
                                 "Set 资产折旧=False",
                                 "Update",
                                 "Close"};
        const Journal untouched = {"open Select * From 操作员 Where ID=5", "Close"};
        EXPECT_EQ(*book.cnn->Log(), each.cleared ? cleared : untouched);
    }
}

struct FieldCase {
    const char* name;
    Rows rows;
    std::optional<std::int32_t> count;
    const char* password;
    std::int32_t warehouse;
    bool right;
};

TEST(OperatorFields, Values) {
    const FieldCase cases[] = {
        {"as stored", OneOperator("m1", 3, true), std::nullopt, "m1", 3, true},
        {"nothing", OneOperator("", 0, false), std::nullopt, "", 0, false},
        {"Null", OneOperator(Variant::Null(), Variant::Null(), Variant::Null()), std::nullopt, "", 0, false},
        {"blanks around a text", OneOperator(" m 1 ", 3, true), std::nullopt, "m 1", 3, true},
        {"no row", {}, std::nullopt, "", 0, false},
        {"the first of two", {{5, "张三", "a", 1, true}, {6, "张三", "b", 2, false}}, std::nullopt, "a", 1, true},
    };
    for (const FieldCase& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        for (int i = 0; i < 4; ++i) book.cnn->Answer(Operators(each.rows));
        EXPECT_EQ(book.tables.GetPassword("张三"), each.password);
        EXPECT_EQ(book.tables.Get操作员(5, "密码"), each.password);
        EXPECT_EQ(book.tables.Get管理仓库(5), each.warehouse);
        EXPECT_EQ(book.tables.Get操作权限(5, "入库处理"), each.right);
    }
}

TEST(OperatorFields, APasswordIsFoundByTheCount) {
    const std::pair<std::int32_t, const char*> cases[] = {{-1, ""}, {0, ""}, {1, "m1"}, {2, "m1"}};
    for (const auto& [count, password] : cases) {
        BookScript book;
        const auto rows = Operators(OneOperator("m1", 3, true));
        rows->ReportCount(count);
        book.cnn->Answer(rows);
        EXPECT_EQ(book.tables.GetPassword("张三", 5), password) << count;
    }
}

TEST(OperatorFields, ARightIsReadFromTheColumnThatKeepsIt) {
    struct Case {
        const char* right;
        const char* column;
    };
    const Case cases[] = {{"发货单位", "资产处理"}, {"收货单位", "卡片打印"}, {"部件管理", "资产折旧"},
                          {"资产处理", "资产处理"}, {"卡片打印", "卡片打印"}, {"资产折旧", "资产折旧"},
                          {"凭证处理", "凭证处理"}, {"dpID", "dpID"}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.right);
        for (const bool granted : {false, true}) {
            BookScript book;
            auto columns = OperatorColumns();
            std::vector<Variant> row = {5, "张三", ""};
            for (std::size_t i = row.size(); i < columns.size(); ++i)
                row.emplace_back(std::int16_t{(columns[i].name == each.column) == granted});
            book.cnn->Answer(MakeRows(std::move(columns), {row}));
            EXPECT_EQ(book.tables.Get操作权限(5, each.right), granted);
        }
    }
}

TEST(OperatorFields, AColumnThatIsNotThereCountsAsNothing) {
    BookScript book;
    for (int i = 0; i < 3; ++i) book.cnn->Answer(Operators(OneOperator("m1", 3, true)));
    EXPECT_FALSE(book.tables.Get操作权限(5, "别的"));
    EXPECT_EQ(book.tables.Get操作员(5, "别的"), "");
    EXPECT_EQ(book.tables.Get操作员(5, "发货单位"), "") << "only rights are kept under other names";
}

TEST(OperatorFields, AColumnAsText) {
    const std::pair<const char*, const char*> cases[] = {
        {"ID", "5"}, {"姓名", "张三"}, {"dpID", "3"}, {"入库处理", "True"}};
    for (const auto& [column, text] : cases) {
        BookScript book;
        book.cnn->Answer(Operators(OneOperator("m1", 3, true)));
        EXPECT_EQ(book.tables.Get操作员(5, column), text);
    }
}

TEST(DeletingAnOperator, IsAllowedWithoutLogEntries) {
    const std::pair<std::int32_t, bool> cases[] = {{0, true}, {1, false}, {2, false}, {-1, false}};
    for (const auto& [count, allowed] : cases) {
        BookScript book;
        const auto entries = MakeRows({{"logID", VarType::Long}}, {{1}});
        entries->ReportCount(count);
        book.cnn->Answer(entries);
        EXPECT_EQ(book.tables.AllowDelOperator(5), allowed) << count;
    }
}

TEST(OperatorFailures, AreTrappedOrRaised) {
    struct Case {
        const char* name;
        std::function<bool(CTables&)> answersNothing;
    };
    const Case trapped[] = {
        {"rename", [](CTables& t) { return !t.操作员_Update(5, "李四"); }},
        {"a right", [](CTables& t) { return !t.操作权限_Update(5, "入库处理", true); }},
        {"a warehouse", [](CTables& t) { return !t.管理仓库_Update(5, 3); }},
        {"delete", [](CTables& t) { return !t.操作员_Delete(5); }},
        {"clear the rights", [](CTables& t) { return !t.操作权限_Clear(5); }},
        {"new password", [](CTables& t) { return !t.Update_Password("张三", "m1", 5); }},
        {"no password", [](CTables& t) { return !t.Clear_Password(5); }},
        {"password", [](CTables& t) { return t.GetPassword("张三").empty(); }},
        {"has a right", [](CTables& t) { return !t.Get操作权限(5, "入库处理"); }},
        {"managed warehouse", [](CTables& t) { return t.Get管理仓库(5) == 0; }},
        {"a column's text", [](CTables& t) { return t.Get操作员(5, "姓名").empty(); }},
    };
    for (const Case& each : trapped) {
        SCOPED_TRACE(each.name);
        BookScript book;
        book.cnn->FailAt(1).Answer(Operators(OneOperator("m1", 3, true)));
        EXPECT_TRUE(each.answersNothing(book.tables));
        EXPECT_TRUE(book.Messages().empty());
        EXPECT_EQ(book.cnn->Statements().size(), 1u);
        CTables unconnected;
        EXPECT_TRUE(each.answersNothing(unconnected));
    }

    const std::function<void(CTables&)> raised[] = {
        [](CTables& t) { t.rs操作员(); },
        [](CTables& t) { t.rs操作员(5); },
        [](CTables& t) { t.操作员_Append("李四"); },
        [](CTables& t) { t.AllowDelOperator(5); },
    };
    for (const auto& call : raised) {
        BookScript book;
        book.cnn->FailAt(1);
        EXPECT_EQ(FailureOf([&] { call(book.tables); }), kRefused);
        CTables unconnected;
        EXPECT_EQ(FailureOf([&] { call(unconnected); }), 91);
    }
}

TEST(OperatorArguments, AreLeftAlone) {
    BookScript book;
    bool granted = true;
    std::int32_t warehouse = 3;
    std::string password = "m1";
    EXPECT_TRUE(book.tables.操作权限_Update(5, "入库处理", granted));
    EXPECT_TRUE(book.tables.管理仓库_Update(5, warehouse));
    EXPECT_TRUE(book.tables.Update_Password("张三", password));
    EXPECT_TRUE(granted);
    EXPECT_EQ(warehouse, 3);
    EXPECT_EQ(password, "m1");
}

}  // namespace
}  // namespace kpTables::test
