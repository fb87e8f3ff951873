// Account book information: reading and writing its items.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "corpus/Call.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

const char* const kTextItems[] = {
    "帐簿名称", "单位名称", "财务主管",   "法人代表",   "帐簿编号", "单位地址", "联系电话",
    "电子邮件", "网络地址", "工商登记号", "税务登记号", "企业代码", "企业类型",
};

TEST(GetAccInfo, TextItemsAreSettings) {
    for (const char* item : kTextItems) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(item);
            BookScript book;
            book.tables.isSQL(isSQL);
            book.cnn->Answer(Setting(" 一 二 "));
            EXPECT_TRUE(book.tables.Get_AccInfo(item).Is("一 二"));
            EXPECT_TRUE(book.tables.Get_AccInfo(item).Is("")) << "no such setting";
            const Sent read = corpus::Expected("Get_AccInfo(\"" + std::string(item) + "\")").front();
            EXPECT_EQ(book.cnn->Statements(), (std::vector<Sent>{read, read}));
        }
    }
}

TEST(GetAccInfo, OtherNamesAreEmptyWithoutAStatement) {
    for (const char* item : {"unknown", "", "帐簿名称 ", " 单位名称", "当前", "建帐日期 ", "收付款方式"}) {
        SCOPED_TRACE(item);
        BookScript book;
        EXPECT_TRUE(book.tables.Get_AccInfo(item).Is(""));
        EXPECT_TRUE(book.cnn->Statements().empty());
    }
}

TEST(GetAccInfo, CurrentDateIsTheStoredText) {
    struct Case {
        const char* stored;
        Variant answer;
    };
    const Case cases[] = {
        {"2004-3-15 ", "2004-3-15"},      {"2004年03月15日 ", "2004年03月15日"},
        {"2004-13-15 ", std::int16_t{0}}, {"abc ", std::int16_t{0}},
        {" ", std::int16_t{0}},           {nullptr, std::int16_t{0}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.stored ? each.stored : "none");
        BookScript book;
        book.cnn->Answer(Setting(each.stored));
        EXPECT_TRUE(book.tables.Get_AccInfo("当前日期").Is(each.answer));
        EXPECT_EQ(book.cnn->Statements(), corpus::Expected("Get_AccInfo(\"当前日期\")"));
    }
}

TEST(GetAccInfo, BuiltDateAndItsMonth) {
    BookScript book;
    book.cnn->Answer(Setting("2004年03月07日 ")).Answer(Setting("2004年11月30日 "));
    EXPECT_TRUE(book.tables.Get_AccInfo("建帐日期").Is(Day("2004-03-07")));
    EXPECT_TRUE(book.tables.Get_AccInfo("建帐月份").Is(std::int16_t{11}));
    const Sent read = corpus::Expected("Get_AccInfo(\"建帐月份\")").front();
    EXPECT_EQ(book.cnn->Statements(), (std::vector<Sent>{read, read}));
}

TEST(GetAccInfo, ABuiltDateThatIsMissingIsMade) {
    BookScript book;
    book.cnn->Answer(Setting(nullptr)).Answer(MakeRows({}, {})).Answer(OptionRows({}));
    EXPECT_TRUE(book.tables.Get_AccInfo("建帐日期").Is(Day("2006-08-19")));
    EXPECT_EQ(book.cnn->Statements(), corpus::Expected("Get_AccInfo(\"建帐日期\")", "none is stored"));
}

TEST(GetAccInfo, YearAndMonthOfTheCurrentDate) {
    struct Case {
        const char* stored;
        std::int16_t year;
        std::int16_t month;
    };
    // the zero date is in 1899, but has no month
    const Case cases[] = {{"2004-3-15 ", 2004, 3}, {"1999-12-31 ", 1999, 12}, {"abc ", 1899, 0}, {nullptr, 1899, 0}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.stored ? each.stored : "none");
        BookScript book;
        for (int i = 0; i < 2; ++i)
            book.cnn->Answer(Setting(each.stored)).Answer(Setting("2004年01月01日 ")).Answer(MakeRows({}, {}));
        EXPECT_TRUE(book.tables.Get_AccInfo("帐簿年份").Is(each.year));
        EXPECT_TRUE(book.tables.Get_AccInfo("当前月份").Is(each.month));
        EXPECT_EQ(book.cnn->Statements().size(), 6u);
    }
}

const std::vector<FieldInfo> kAccInfoColumns = {
    {"帐簿名称", VarType::String},   {"单位名称", VarType::String},   {"财务主管", VarType::String},
    {"法人代表", VarType::String},   {"帐簿编号", VarType::String},   {"单位地址", VarType::String},
    {"联系电话", VarType::String},   {"电子邮件", VarType::String},   {"网络地址", VarType::String},
    {"工商登记号", VarType::String}, {"税务登记号", VarType::String}, {"企业代码", VarType::String},
    {"企业类型", VarType::String},   {"建帐日期", VarType::Date},     {"当前日期", VarType::Date},
};

/// AccInfo with a row whose columns are Null.
std::shared_ptr<ScriptedRecordset> OneAccInfo() {
    return MakeRows(kAccInfoColumns, {std::vector<Variant>(kAccInfoColumns.size(), Variant::Null())});
}

TEST(UpdateAccInfo, WritesTheSettingThenTheColumn) {
    std::vector<std::string> items(std::begin(kTextItems), std::end(kTextItems));
    items.insert(items.end(), {"建帐日期", "当前日期"});
    for (const std::string& item : items) {
        SCOPED_TRACE(item);
        const bool isDate = item.ends_with("日期");
        BookScript book;
        book.AnswerRecorded(OptionRows({})).AnswerRecorded(OneAccInfo());
        EXPECT_FALSE(book.tables.Update_AccInfo(item, isDate ? Variant(Day("2004-03-07")) : Variant("某公司")));
        const std::string value = isDate ? "2004-3-7" : "某公司";
        const Journal expected = {"open table 系统选项",
                                  "AddNew",
                                  "Set Item=" + item + " ",
                                  "Set Discription=" + value + " ",
                                  "Update",
                                  "Close",
                                  "open table AccInfo",
                                  "Set " + item + "=" + value,
                                  "Update",
                                  "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
}

TEST(UpdateAccInfo, AnEmptyTableGetsItsRow) {
    for (const bool countUnknown : {false, true}) {
        const auto info = MakeRows(kAccInfoColumns, {});
        if (countUnknown) info->ReportCount(-1);
        BookScript book;
        book.cnn->Answer(OptionRows({}));
        book.AnswerRecorded(info);
        EXPECT_FALSE(book.tables.Update_AccInfo("单位名称", "x"));
        const Journal expected = {
            "open table 系统选项", "open table AccInfo", "AddNew", "Set 单位名称=x", "Update", "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
        ASSERT_EQ(info->Contents().size(), 1u);
        EXPECT_TRUE(info->Contents()[0][1].Is("x"));
    }
}

TEST(UpdateAccInfo, OtherNamesSetNoColumn) {
    for (const char* item : {"建帐月份", "帐簿年份", "当前月份", "unknown", "单位名称 "}) {
        SCOPED_TRACE(item);
        BookScript book;
        book.cnn->Answer(OptionRows({}));
        book.AnswerRecorded(OneAccInfo());
        EXPECT_FALSE(book.tables.Update_AccInfo(item, "x"));
        const Journal expected = {"open table 系统选项", "open table AccInfo", "Update", "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
    BookScript unnamed;
    unnamed.AnswerRecorded(OneAccInfo());
    EXPECT_FALSE(unnamed.tables.Update_AccInfo("", "x"));
    const Journal expected = {"open table AccInfo", "Update", "Close"};
    EXPECT_EQ(*unnamed.cnn->Log(), expected) << "no setting has an empty name";
}

TEST(UpdateAccInfo, KeepsTheValueAsItIs) {
    BookScript book;
    const auto info = OneAccInfo();
    book.cnn->Answer(OptionRows({})).Answer(info);
    Variant value = " x ";
    EXPECT_FALSE(book.tables.Update_AccInfo("单位名称", value));
    EXPECT_TRUE(value.Is(" x "));
    EXPECT_TRUE(info->Contents()[0][1].Is(" x ")) << "no blank is added to the column";
}

TEST(UpdateAccInfo, SkipsEachStepThatFails) {
    struct Case {
        const char* failing;
        Journal after;
    };
    // Without a row both the assignment and the saving fail as well, and are tried.
    const Case cases[] = {{"AddNew", {"Set 单位名称=x", "Update", "Close"}},
                          {"Set", {"AddNew", "Update", "Close"}},
                          {"Update", {"AddNew", "Set 单位名称=x", "Close"}},
                          {"Close", {"AddNew", "Set 单位名称=x", "Update"}}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.failing);
        BookScript book;
        const auto info = MakeRows(kAccInfoColumns, {});
        info->FailAt(each.failing, 1);
        book.cnn->Answer(OptionRows({}));
        book.AnswerRecorded(info);
        EXPECT_FALSE(book.tables.Update_AccInfo("单位名称", "x"));
        const Journal& log = *book.cnn->Log();
        ASSERT_GE(log.size(), 2u);
        EXPECT_EQ(log[1], "open table AccInfo");
        EXPECT_EQ(Journal(log.begin() + 2, log.end()), each.after);
        EXPECT_TRUE(book.Messages().empty());
    }
}

TEST(UpdateAccInfo, SkipsAColumnThatIsNotThereAndATableThatIsNotThere) {
    BookScript noColumn;
    noColumn.cnn->Answer(OptionRows({}));
    noColumn.AnswerRecorded(MakeRows({{"帐簿名称", VarType::String}}, {{"旧"}}));
    EXPECT_FALSE(noColumn.tables.Update_AccInfo("单位名称", "x"));
    const Journal expected = {"open table 系统选项", "open table AccInfo", "Update", "Close"};
    EXPECT_EQ(*noColumn.cnn->Log(), expected);

    BookScript noTable;
    noTable.cnn->Answer(OptionRows({})).FailAt(2);
    EXPECT_FALSE(noTable.tables.Update_AccInfo("单位名称", "x"));
    EXPECT_EQ(noTable.cnn->Statements().size(), 2u);
    EXPECT_TRUE(noTable.Messages().empty());
}

TEST(UpdateAccInfo, ASettingThatFailsIsShownAndTheRowIsStillWritten) {
    BookScript book({MessageAnswer::Ok});
    const auto info = OneAccInfo();
    book.cnn->FailAt(1, "no such table").Answer(info);
    EXPECT_FALSE(book.tables.Update_AccInfo("单位名称", "x"));
    EXPECT_EQ(book.Messages(), std::vector<std::string>{"修改系统选项: no such table"});
    EXPECT_TRUE(info->Contents()[0][1].Is("x"));
}

TEST(UpdateAccInfo, AnErrorOfTheFirstStepReachesTheCaller) {
    BookScript book;
    book.cnn->FailAt(1);
    EXPECT_EQ(FailureOf([&] { book.tables.Update_AccInfo("单位名称", "x"); }), 5) << "nobody to show the message to";
    EXPECT_EQ(book.cnn->Statements().size(), 1u);
}

}  // namespace
}  // namespace kpTables::test
