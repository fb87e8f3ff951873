// System options: reading and writing settings.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(GetOption, Values) {
    struct Case {
        const char* name;
        Rows rows;
        const char* value;
    };
    const Case cases[] = {
        {"the blank behind is trimmed", {{"A ", "1 "}}, "1"},
        {"blanks at both ends", {{"A ", "  a b  "}}, "a b"},
        {"a single blank", {{"A ", " "}}, ""},
        {"Null", {{"A ", Variant::Null()}}, ""},
        {"no such item", {}, ""},
        {"the first of two", {{"A ", "1 "}, {"a ", "2 "}}, "1"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        book.cnn->Answer(OptionRows(each.rows));
        EXPECT_EQ(book.tables.Get_Option("A"), each.value);
    }
}

TEST(GetOption, AnUnknownCountIsNotFound) {
    BookScript book;
    const auto rows = OptionRows({{"A ", "1 "}});
    rows->ReportCount(-1);
    book.cnn->Answer(rows);
    EXPECT_EQ(book.tables.Get_Option("A"), "");
}

TEST(GetOption, TrapsEveryError) {
    BookScript refused;
    refused.cnn->FailAt(1);
    EXPECT_EQ(refused.tables.Get_Option("A"), "");
    EXPECT_TRUE(refused.Messages().empty());

    BookScript otherColumns;
    otherColumns.cnn->Answer(MakeRows({{"Description", VarType::String}}, {{"1"}}));
    EXPECT_EQ(otherColumns.tables.Get_Option("A"), "");

    CTables unconnected;
    EXPECT_EQ(unconnected.Get_Option("A"), "");
}

struct UpdateCase {
    const char* name;
    Rows before;
    const char* item;
    Variant value;
    Journal edits;
    Rows after;
};

TEST(UpdateOption, AddsOrChangesOneRow) {
    const UpdateCase cases[] = {
        {"an empty table",
         {},
         "A",
         "1",
         {"AddNew", "Set Item=A ", "Set Discription=1 ", "Update", "Close"},
         {{"A ", "1 "}}},
        {"a new item",
         {{"B ", "7 "}},
         "A",
         "1",
         {"AddNew", "Set Item=A ", "Set Discription=1 ", "Update", "Close"},
         {{"B ", "7 "}, {"A ", "1 "}}},
        {"an item again",
         {{"B ", "7 "}, {"A ", "1 "}, {"C ", "8 "}},
         "A",
         "2",
         {"Set Item=A ", "Set Discription=2 ", "Update", "Close"},
         {{"B ", "7 "}, {"A ", "2 "}, {"C ", "8 "}}},
        {"an item in another case",
         {{"Abc ", "1 "}},
         "aBC",
         "2",
         {"Set Item=aBC ", "Set Discription=2 ", "Update", "Close"},
         {{"aBC ", "2 "}}},
        {"an item with blanks behind it",
         {{"A ", "1 "}},
         "A  ",
         "2",
         {"Set Item=A   ", "Set Discription=2 ", "Update", "Close"},
         {{"A   ", "2 "}}},
        {"a value that is the empty text",
         {},
         "当前日期",
         "",
         {"AddNew", "Set Item=当前日期 ", "Set Discription= ", "Update", "Close"},
         {{"当前日期 ", " "}}},
        {"Null",
         {},
         "A",
         Variant::Null(),
         {"AddNew", "Set Item=A ", "Set Discription= ", "Update", "Close"},
         {{"A ", " "}}},
        {"Empty", {}, "A", Variant(), {"AddNew", "Set Item=A ", "Set Discription= ", "Update", "Close"}, {{"A ", " "}}},
        {"a number",
         {},
         "A",
         -12.5,
         {"AddNew", "Set Item=A ", "Set Discription=-12.5 ", "Update", "Close"},
         {{"A ", "-12.5 "}}},
        {"a flag",
         {},
         "A",
         true,
         {"AddNew", "Set Item=A ", "Set Discription=True ", "Update", "Close"},
         {{"A ", "True "}}},
        {"a date",
         {},
         "A",
         Day("2004-03-07"),
         {"AddNew", "Set Item=A ", "Set Discription=2004-3-7 ", "Update", "Close"},
         {{"A ", "2004-3-7 "}}},
        {"a blank is a name",
         {{"A ", "1 "}},
         " ",
         "2",
         {"AddNew", "Set Item=  ", "Set Discription=2 ", "Update", "Close"},
         {{"A ", "1 "}, {"  ", "2 "}}},
    };
    for (const UpdateCase& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        const auto options = OptionRows(each.before);
        book.AnswerRecorded(options);
        book.tables.Update_Option(each.item, each.value);
        Journal expected = {"open table 系统选项"};
        expected.insert(expected.end(), each.edits.begin(), each.edits.end());
        EXPECT_EQ(*book.cnn->Log(), expected);
        EXPECT_TRUE(book.Messages().empty());
        const Rows after = options->Contents();
        ASSERT_EQ(after.size(), each.after.size());
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_EQ(Shown(after[i][0]), Shown(each.after[i][0]));
            EXPECT_EQ(Shown(after[i][1]), Shown(each.after[i][1]));
        }
    }
}

TEST(UpdateOption, AnUnknownCountAddsARow) {
    BookScript book;
    const auto options = OptionRows({{"A ", "1 "}});
    options->ReportCount(-1);
    book.AnswerRecorded(options);
    book.tables.Update_Option("A", "2");
    const Journal expected = {"open table 系统选项", "AddNew", "Set Item=A ", "Set Discription=2 ", "Update", "Close"};
    EXPECT_EQ(*book.cnn->Log(), expected);
}

TEST(UpdateOption, LeavesItsArgumentAlone) {
    BookScript book;
    book.cnn->Answer(OptionRows({}));
    Variant value = 12;
    book.tables.Update_Option("A", value);
    EXPECT_TRUE(value.Is(12));
}

TEST(UpdateOption, ShowsTheDescriptionOfAnError) {
    struct Case {
        const char* operation;
        int call;
        const char* message;
    };
    const Case cases[] = {
        {"Find", 1, "修改系统选项: Find was told to fail"},     {"AddNew", 1, "修改系统选项: AddNew was told to fail"},
        {"Set", 1, "修改系统选项: Set was told to fail"},       {"Set", 2, "修改系统选项: Set was told to fail"},
        {"Update", 1, "修改系统选项: Update was told to fail"}, {"Close", 1, "修改系统选项: Close was told to fail"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.operation) + Text(each.call));
        BookScript book({MessageAnswer::Ok});
        const auto options = OptionRows({{"B ", "7 "}});
        options->FailAt(each.operation, each.call);
        book.cnn->Answer(options);
        book.tables.Update_Option("A", "1");
        EXPECT_EQ(book.Messages(), std::vector<std::string>{each.message});
        ASSERT_EQ(book.host->Messages().size(), 1u);
        EXPECT_EQ(book.host->Messages()[0].buttons, MessageButtons::OkOnly);
    }

    BookScript refused({MessageAnswer::Ok});
    refused.cnn->FailAt(1, "no such table");
    refused.tables.Update_Option("A", "1");
    EXPECT_EQ(refused.Messages(), std::vector<std::string>{"修改系统选项: no such table"});

    BookScript unconnected({MessageAnswer::Ok});
    unconnected.tables.Cnn(nullptr);
    unconnected.tables.Update_Option("A", "1");
    EXPECT_EQ(unconnected.Messages(),
              std::vector<std::string>{"修改系统选项: Object variable or With block variable not set"});
}

TEST(UpdateOption, WhatHasNoTextOrBreaksTheSearchIsShown) {
    BookScript object({MessageAnswer::Ok});
    const auto untouched = OptionRows({});
    object.cnn->Answer(untouched);
    object.tables.Update_Option("A", Variant(nullptr));
    ASSERT_EQ(object.Messages().size(), 1u);
    EXPECT_TRUE(object.Messages()[0].starts_with("修改系统选项: Type mismatch")) << object.Messages()[0];

    BookScript quote({MessageAnswer::Ok});
    const auto options = OptionRows({{"B ", "7 "}});
    quote.AnswerRecorded(options);
    quote.tables.Update_Option("O'X", "1");
    ASSERT_EQ(quote.Messages().size(), 1u);
    EXPECT_TRUE(quote.Messages()[0].starts_with("修改系统选项: Arguments are of the wrong type"))
        << quote.Messages()[0];
    EXPECT_EQ(*quote.cnn->Log(), Journal{"open table 系统选项"}) << "nothing is edited";
}

TEST(UpdateOption, WithNobodyToAskTheErrorIsTheHosts) {
    BookScript book;
    book.cnn->FailAt(1);
    EXPECT_EQ(FailureOf([&] { book.tables.Update_Option("A", "1"); }), 5);
    EXPECT_EQ(book.Messages().size(), 1u);
}

}  // namespace
}  // namespace kpTables::test
