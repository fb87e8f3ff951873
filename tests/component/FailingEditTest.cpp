// Methods that edit rows when one step of an edit fails: what is answered or raised, and which rows stay written.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <span>

#include "BookScript.h"
#include "PaySheetScript.h"
#include "TableScript.h"
#include "kpTables/MemoryGrid.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

using RowsPtr = std::shared_ptr<ScriptedRecordset>;

/// A method and the rows that it edits.
struct Editing {
    const char* name;
    std::function<RowsPtr()> rows;
    bool deletesFirst;  ///< by a statement of its own
    std::function<std::string(CTables&)> call;
};

struct Step {
    const char* operation;
    int call;
    std::string result;  ///< "raised" for the recordset's error
    std::string last;    ///< entry of the journal
    int updates;         ///< rows written
};

void ExpectSteps(const Editing& editing, std::span<const Step> steps) {
    for (const Step& each : steps) {
        SCOPED_TRACE(std::string(editing.name) + ": " + each.operation + " " + std::to_string(each.call));
        BookScript book;
        if (editing.deletesFirst) book.cnn->Answer(nullptr);
        const auto rows = editing.rows();
        rows->FailAt(each.operation, each.call);
        book.AnswerRecorded(rows);
        std::string result;
        if (FailureOf([&] { result = editing.call(book.tables); }) == kRefused) result = "raised";
        EXPECT_EQ(result, each.result);
        const Journal& journal = *book.cnn->Log();
        EXPECT_EQ(journal.back(), each.last);
        EXPECT_EQ(std::count(journal.begin(), journal.end(), "Update"), each.updates);
        EXPECT_TRUE(book.Messages().empty());
    }
}

TEST(FailingEdit, AnOperatorAdded) {
    const Editing editing = {"add", [] { return RowsPtr(Operators()); }, false,
                             [](CTables& t) { return Text(t.操作员_Append("李四")); }};
    const Step steps[] = {
        {"AddNew", 1, "raised", "open table 操作员", 0},
        {"Set", 1, "raised", "AddNew", 0},
        {"Set", 2, "raised", "Set 姓名=李四", 0},
        {"Set", 3, "raised", "Set 密码=", 0},
        {"Set", 9, "raised", "Set 资产折旧=0", 0},
        {"Update", 1, "raised", "Set 凭证处理=1", 0},
        {"Update", 2, "7", "Close", 1},
    };
    ExpectSteps(editing, steps);
}

TEST(FailingEdit, RightsCleared) {
    const Editing editing = {"clear",
                             [] {
                                 return RowsPtr(Operators({{5, "张三"}}));
                             },
                             false, [](CTables& t) { return Text(t.操作权限_Clear(5)); }};
    const Step steps[] = {
        {"Set", 1, "False", "open Select * From 操作员 Where ID=5", 0},
        {"Set", 5, "False", "Set 卡片打印=False", 0},
        {"Update", 1, "False", "Set 资产折旧=False", 0},
        {"Update", 2, "True", "Close", 1},
    };
    ExpectSteps(editing, steps);
}

TEST(FailingEdit, ALayoutSaved) {
    const Editing editing = {"save", [] { return Layout(false); }, true,
                             [](CTables& t) {
                                 const auto grid = std::make_shared<MemoryGrid>();
                                 grid->AddColumn({"A", "甲", false, 10});
                                 grid->AddColumn({"B", "乙", false, 20});
                                 return Text(t.Header(GridPtr(grid), std::string("L"), std::string("F"), true));
                             }};
    const Step steps[] = {
        {"AddNew", 1, "raised", "open table Header", 0},
        {"Set", 1, "raised", "AddNew", 0},
        {"Set", 7, "raised", "Set Hidden=False", 0},
        {"Update", 1, "raised", "Set Width=10", 0},
        {"AddNew", 2, "raised", "Update", 1},
        {"Set", 8, "raised", "AddNew", 1},
        {"Update", 2, "raised", "Set Width=20", 1},
        {"Update", 3, "False", "Close", 2},
    };
    ExpectSteps(editing, steps);
}

/// The answer and the id as it comes back.
std::string SaveReportRow(CTables& tables, std::int32_t id) {
    const auto answer = tables.History_Update(id, std::string("月报"), std::string("x"), Day("2004-03-07"));
    return Text(answer) + ", id " + Text(id);
}

TEST(FailingEdit, AReportsSettingSaved) {
    const Editing adding = {"add", [] { return RowsPtr(Reports()); }, false,
                            [](CTables& t) { return SaveReportRow(t, 0); }};
    const Step added[] = {
        {"AddNew", 1, "0, id 0", "open table History", 0},
        {"Set", 1, "0, id 0", "AddNew", 0},
        {"Set", 3, "0, id 0", "Set setting=x", 0},
        {"Update", 1, "0, id 0", "Set rptDate=2004-3-7", 0},
        {"Update", 2, "-1, id 7", "Close", 1},
    };
    ExpectSteps(adding, added);

    const Editing changing = {"change",
                              [] {
                                  return RowsPtr(Reports({{5, "旧"}}));
                              },
                              false, [](CTables& t) { return SaveReportRow(t, 5); }};
    const Step changed[] = {
        {"Set", 1, "0, id 5", "open Select * From History Where rpID=5", 0},
        {"Set", 2, "0, id 5", "Set Caption=月报", 0},
        {"Update", 1, "0, id 5", "Set rptDate=2004-3-7", 0},
        {"Update", 2, "-1, id 5", "Close", 1},
    };
    ExpectSteps(changing, changed);
}

TEST(FailingEdit, ThePayOfAMonth) {
    const Editing editing = {"save", PaySheet, true, [](CTables& t) {
                                 const auto grid = PayGrid();
                                 for (const char* name : {"王五", "赵六", "合计"}) AddDriver(*grid, name, 0);
                                 return Text(t.Update工资表(2004, 3, GridPtr(grid)));
                             }};
    // A row is 29 fields.
    const Step steps[] = {
        {"AddNew", 1, "raised", "open table 工资表", 0},
        {"Set", 1, "raised", "AddNew", 0},
        {"Set", 29, "raised", "Set 实发工资=25", 0},
        {"Update", 1, "raised", "Set 备注= ", 0},
        {"AddNew", 2, "raised", "Update", 1},
        {"Set", 33, "raised", "Set 姓名=赵六", 1},
        {"Update", 2, "raised", "Set 备注= ", 1},
        {"Close", 1, "raised", "Update", 2},
        {"AddNew", 3, "True", "Close", 2},
    };
    ExpectSteps(editing, steps);
}

}  // namespace
}  // namespace kpTables::test
