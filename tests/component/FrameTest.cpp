// The object: properties, version, event, value helpers.
#include <gtest/gtest.h>

#include <functional>

#include "corpus/Call.h"
#include "kpTables/CTables.h"
#include "kpTables/Version.h"
#include "support/Failure.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

TEST(Properties, StartUnsetEmptyAndFalse) {
    const CTables tables;
    EXPECT_EQ(tables.Cnn(), nullptr);
    EXPECT_EQ(tables.Speciality(), "");
    EXPECT_FALSE(tables.isSQL());
}

TEST(Properties, KeepWhatTheyAreGiven) {
    CTables tables;
    const auto cnn = std::make_shared<ScriptedConnection>();
    tables.Cnn(cnn);
    tables.Speciality("建材");
    tables.isSQL(true);
    EXPECT_EQ(tables.Cnn(), cnn);
    EXPECT_EQ(tables.Speciality(), "建材");
    EXPECT_TRUE(tables.isSQL());
    tables.Cnn(nullptr);
    EXPECT_EQ(tables.Cnn(), nullptr);
}

TEST(Properties, DialectCountsFromTheNextCall) {
    CTables tables;
    const auto cnn = std::make_shared<ScriptedConnection>();
    tables.Cnn(cnn);
    tables.UpdateDepotClosedFlag(1, *Date::ParseIso("2004-03-31"), true);
    tables.isSQL(true);
    tables.UpdateDepotClosedFlag(1, *Date::ParseIso("2004-03-31"), true);
    tables.isSQL(false);
    tables.UpdateDepotClosedFlag(1, *Date::ParseIso("2004-03-31"), true);
    const char* const call = "UpdateDepotClosedFlag(1, #2004-03-31#, True)";
    const Sent jet = corpus::Expected(call).front();
    const Sent server = corpus::Expected(call, "", true).front();
    EXPECT_NE(jet, server);
    EXPECT_EQ(cnn->Statements(), (std::vector<Sent>{jet, server, jet}));
}

TEST(Properties, SpecialityChangesNoStatement) {
    CTables tables;
    const auto cnn = std::make_shared<ScriptedConnection>();
    tables.Cnn(cnn);
    tables.Speciality("x");
    tables.rs月份列表();
    EXPECT_EQ(cnn->Statements(), corpus::Expected("rs月份列表()"));
}

TEST(Version, JoinsMajorMinorAndRevision) {
    struct Case {
        int major, minor, build, revision;
        const char* text;
    };
    const Case cases[] = {
        {1, 0, 0, 110, "10110"}, {1, 2, 0, 10, "1210"},      {1, 0, 7, 110, "10110"},
        {0, 0, 0, 0, "000"},     {12, 34, 56, 78, "123478"},
    };
    for (const Case& each : cases) EXPECT_EQ(VersionText(each.major, each.minor, each.build, each.revision), each.text);
}

TEST(Version, OfThisBuild) { EXPECT_EQ(CTables().Version(), "10110"); }

/// Writes down the events with its own name in front; leaves when told to.
class Listener : public __CTables {
public:
    Listener(std::string name, Journal& journal) : name_(std::move(name)), journal_(journal) {}
    void TableChanged(const std::string& ProcName, const std::string& TableName, std::int32_t ID) override {
        journal_.push_back(name_ + ":" + ProcName + "," + TableName + "," + std::to_string(ID));
        if (whenCalled) whenCalled();
    }
    std::function<void()> whenCalled;

private:
    std::string name_;
    Journal& journal_;
};

TEST(Event, WithoutListenersUpdateJustAnswersEmpty) {
    CTables tables;
    EXPECT_TRUE(tables.Update("x", "y", 5).IsEmpty());
}

TEST(Event, ReachesOneListenerOnce) {
    CTables tables;
    const auto cnn = std::make_shared<ScriptedConnection>();
    tables.Cnn(cnn);
    Journal journal;
    Listener listener("a", journal);
    tables.Advise(listener);
    EXPECT_TRUE(tables.Update("x", "y", 5).IsEmpty());
    EXPECT_EQ(journal, Journal{"a:x,y,5"});
    EXPECT_TRUE(cnn->Statements().empty());
}

TEST(Event, ReachesListenersInTheOrderOfAdvising) {
    CTables tables;
    Journal journal;
    Listener a("a", journal), b("b", journal), c("c", journal);
    tables.Advise(c);
    const auto cookie = tables.Advise(a);
    tables.Advise(b);
    tables.Update("", "仓库设置", -1);
    EXPECT_EQ(journal, (Journal{"c:,仓库设置,-1", "a:,仓库设置,-1", "b:,仓库设置,-1"}));
    journal.clear();
    tables.Unadvise(cookie);
    tables.Update("p", "t", 2147483647);
    EXPECT_EQ(journal, (Journal{"c:p,t,2147483647", "b:p,t,2147483647"}));
}

TEST(Event, AListenerMayLeaveDuringTheCall) {
    CTables tables;
    Journal journal;
    Listener a("a", journal), b("b", journal), c("c", journal);
    const auto first = tables.Advise(a);
    tables.Advise(b);
    const auto third = tables.Advise(c);
    a.whenCalled = [&] { tables.Unadvise(first); };
    b.whenCalled = [&] {
        tables.Unadvise(third);
        b.whenCalled = nullptr;
    };
    tables.Update("x", "y", 1);
    EXPECT_EQ(journal, (Journal{"a:x,y,1", "b:x,y,1"}));
    tables.Update("x", "y", 2);
    EXPECT_EQ(journal, (Journal{"a:x,y,1", "b:x,y,1", "b:x,y,2"}));
}

TEST(Event, AListenerThatJoinsDuringTheCallWaitsForTheNext) {
    CTables tables;
    Journal journal;
    Listener a("a", journal), b("b", journal);
    tables.Advise(a);
    a.whenCalled = [&] {
        tables.Advise(b);
        a.whenCalled = nullptr;
    };
    tables.Update("x", "y", 1);
    EXPECT_EQ(journal, Journal{"a:x,y,1"});
    tables.Update("x", "y", 2);
    EXPECT_EQ(journal, (Journal{"a:x,y,1", "a:x,y,2", "b:x,y,2"}));
}

TEST(Event, TheSameListenerMayAdviseTwice) {
    CTables tables;
    Journal journal;
    Listener a("a", journal);
    const auto first = tables.Advise(a);
    const auto second = tables.Advise(a);
    EXPECT_NE(first, second);
    tables.Update("x", "y", 1);
    EXPECT_EQ(journal.size(), 2u);
    tables.Unadvise(first);
    tables.Update("x", "y", 2);
    EXPECT_EQ(journal.size(), 3u);
}

TEST(Event, UnadviseRefusesACookieNotInUse) {
    CTables tables;
    Journal journal;
    Listener a("a", journal);
    const auto cookie = tables.Advise(a);
    EXPECT_EQ(FailureOf([&] { tables.Unadvise(cookie + 1); }), 5);
    tables.Unadvise(cookie);
    EXPECT_EQ(FailureOf([&] { tables.Unadvise(cookie); }), 5);
}

TEST(Event, ChangingDataRaisesNone) {
    CTables tables;
    tables.Cnn(std::make_shared<ScriptedConnection>());
    Journal journal;
    Listener a("a", journal);
    tables.Advise(a);
    tables.BillAdulting("入库", 1, "张三", *Date::ParseIso("2004-03-07"));
    tables.Del_单据(1, "出库");
    tables.Del仓库余额(1);
    tables.Del仓库余额表();
    tables.UpdateDepotClosedFlag(1, Date(), false);
    EXPECT_TRUE(journal.empty());
}

TEST(AllTrim, KeepsCodeCharactersOnly) {
    struct Case {
        const char* text;
        const char* kept;
    };
    const Case cases[] = {
        {"", ""},
        {"ab-CD 12号", "-CD号"},
        {"-", "-"},
        {"@AZ[", "AZ"},
        {"azAZ09", "AZ"},
        {"_+./\t\n", ""},
        {"商品 A-1", "商品A-"},
        {"，（）：", "，（）："},  // double-byte punctuation
        {"　", "　"},              // the ideographic space is double-byte
        {"ＡＢ１２", "ＡＢ１２"},  // full-width forms are double-byte
        {"Ä¥©", ""},               // no double-byte characters of the code page
        {"α→", "α→"},
        {"\xF0\x9F\x98\x80X", "X"},  // outside the code page
        {"\xFF\xE5X", "X"},          // no UTF-8
    };
    const CTables tables;
    for (const Case& each : cases) EXPECT_EQ(tables.AllTrim(each.text), each.kept) << each.text;
}

TEST(AllTrim, OverflowsBeyond32767Characters) {
    const CTables tables;
    EXPECT_EQ(tables.AllTrim(std::string(32767, 'A')).size(), 32767u);
    EXPECT_EQ(FailureOf([&] { tables.AllTrim(std::string(32768, 'a')); }), 6);
    std::string chinese;
    for (int i = 0; i < 32767; ++i) chinese += "号";
    EXPECT_EQ(tables.AllTrim(chinese).size(), 3u * 32767);
    EXPECT_EQ(FailureOf([&] { tables.AllTrim(chinese + "号"); }), 6);
}

TEST(AllTrim, CountsACharacterOutsideTheBasicPlaneAsTwo) {
    const CTables tables;
    std::string text = "\xF0\x9F\x98\x80";
    text.append(32765, 'A');
    EXPECT_EQ(tables.AllTrim(text).size(), 32765u);
    EXPECT_EQ(FailureOf([&] { tables.AllTrim(text + "A"); }), 6);
}

TEST(CalcPrice, DividesNumericArguments) {
    struct Case {
        Variant account, number;
        double price;
    };
    const Case cases[] = {
        {100, 0, 0},
        {"abc", 3, 0},
        {10, 4, 2.5},
        {10, -4, 0},
        {-10, 4, -2.5},
        {"10", "4", 2.5},
        {Currency::FromScaled(2000000), 3, 200.0 / 3},
        {Variant::Null(), 4, 0},
        {10, Variant::Null(), 0},
        {10, Variant(), 0},
        {Variant(), 4, 0},
        {10, "", 0},
        {10, true, 0},  // True is -1
        {10, *Date::ParseIso("2004-03-07"), 0},
        {1, 3.0, 1.0 / 3},
    };
    const CTables tables;
    for (const Case& each : cases)
        EXPECT_EQ(tables.CalcPrice(each.account, each.number), each.price)
            << Shown(each.account) << " / " << Shown(each.number);
}

TEST(CalcPrice, LeavesItsArgumentsAlone) {
    const CTables tables;
    Variant account = "10", number = "4";
    EXPECT_EQ(tables.CalcPrice(account, number), 2.5);
    EXPECT_TRUE(account.Is("10"));
    EXPECT_TRUE(number.Is("4"));
}

TEST(CalcPrice, OverflowsBeyondADouble) {
    EXPECT_EQ(FailureOf([] { CTables().CalcPrice(1e308, 1e-10); }), 6);
}

TEST(ChineseDay, ReadsMonthAndDayByName) {
    struct Case {
        std::int16_t month, day;
        const char* text;
    };
    const Case cases[] = {{3, 7, "03月07日"}, {12, 31, "12月31日"}, {10, 1, "10月01日"}};
    const CTables tables;
    for (const Case& each : cases) {
        const auto row = MakeRows({{"日子", VarType::Integer}, {"年份", VarType::Integer}, {"月份", VarType::Integer}},
                                  {{each.day, std::int16_t{2004}, each.month}});
        EXPECT_EQ(tables.Get单据中文日期(row.get()), each.text);
    }
}

TEST(ChineseDay, Failures) {
    const CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get单据中文日期(nullptr); }), 91);
    const auto noDay = MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}});
    EXPECT_EQ(FailureOf([&] { tables.Get单据中文日期(noDay.get()); }), 3265);
    const auto neither = MakeRows({{"年份", VarType::Integer}}, {{std::int16_t{2004}}});
    try {
        tables.Get单据中文日期(neither.get());
        FAIL() << "a row with neither field";
    } catch (const Error& error) {
        EXPECT_TRUE(error.Description().ends_with("月份")) << "the month is read first: " << error.Description();
    }
    const auto noRow = MakeRows({{"月份", VarType::Integer}, {"日子", VarType::Integer}}, {});
    EXPECT_EQ(FailureOf([&] { tables.Get单据中文日期(noRow.get()); }), 3021);
}

}  // namespace
}  // namespace kpTables::test
