// The book's two dates and how they repair themselves.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "corpus/Call.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

const std::vector<Sent> kBuiltDate = corpus::Expected("Get_BuiltDate()", "no stored date");
const Sent &kReadBuilt = kBuiltDate.at(0), &kEarliest = kBuiltDate.at(1), &kWrite = kBuiltDate.at(2);
const std::vector<Sent> kCurrentDate = corpus::Expected("Get_CurrentDate()", "repaired");
const Sent &kReadCurrent = kCurrentDate.at(0), &kPeriods = kCurrentDate.at(2);

/// Rows with a year and a month; the columns take any value.
std::shared_ptr<ScriptedRecordset> Periods(const Rows& rows) {
    return MakeRows({{"年份", VarType::Empty}, {"月份", VarType::Empty}}, rows);
}

std::int16_t Short(int value) { return static_cast<std::int16_t>(value); }

TEST(BuiltDate, AStoredDateFrom2000OnStands) {
    struct Case {
        const char* stored;
        const char* date;
    };
    const Case cases[] = {
        {"2004年03月07日 ", "2004-03-07"}, {"2000年01月01日 ", "2000-01-01"},
        {"2004-3-7", "2004-03-07"},        {"2004-3-7 12:30:00", "2004-03-07T12:30:00"},
        {"2099年12月31日", "2099-12-31"},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.stored);
            BookScript book;
            book.tables.isSQL(isSQL);
            book.cnn->Answer(Setting(each.stored));
            EXPECT_EQ(book.tables.Get_BuiltDate().ToIso('T'), each.date);
            EXPECT_EQ(book.cnn->Statements(), std::vector<Sent>{kReadBuilt});
        }
    }
}

struct BuiltCase {
    const char* name;
    const char* stored;
    Rows periods;
    const char* date;
    const char* written;
};

TEST(BuiltDate, IsMadeFromTheBalanceTableOrToday) {
    const Variant null = Variant::Null();
    const BuiltCase cases[] = {
        {"no setting, empty table", nullptr, {}, "2006-08-19", "Set Discription=2006年08月19日 "},
        {"a blank setting", " ", {}, "2006-08-19", "Set Discription=2006年08月19日 "},
        {"no date", "abc", {{Short(2005), Short(2)}}, "2005-02-01", "Set Discription=2005年02月01日 "},
        {"no such day", "2004-02-30", {{Short(2005), Short(2)}}, "2005-02-01", "Set Discription=2005年02月01日 "},
        {"before 2000", "1999年05月01日 ", {{Short(2003), Short(11)}}, "2003-11-01", "Set Discription=2003年11月01日 "},
        {"the last day before 2000", "1999-12-31", {}, "2006-08-19", "Set Discription=2006年08月19日 "},
        {"one row", nullptr, {{Short(2004), Short(12)}}, "2004-12-01", "Set Discription=2004年12月01日 "},
        {"the first row counts",
         nullptr,
         {{Short(1997), Short(11)}, {Short(1998), Short(1)}},
         "1997-11-01",
         "Set Discription=1997年11月01日 "},
        {"no year", nullptr, {{null, Short(4)}}, "2006-04-01", "Set Discription=2006年04月01日 "},
        {"no month", nullptr, {{Short(2004), null}}, "2004-01-01", "Set Discription=2004年01月01日 "},
        {"neither", nullptr, {{null, null}}, "2006-01-01", "Set Discription=2006年01月01日 "},
        {"month 0", nullptr, {{Short(2004), Short(0)}}, "2004-08-01", "Set Discription=2004年08月01日 "},
        {"month 13", nullptr, {{Short(2004), Short(13)}}, "2004-08-01", "Set Discription=2004年08月01日 "},
        {"month -1", nullptr, {{Short(2004), Short(-1)}}, "2004-08-01", "Set Discription=2004年08月01日 "},
        {"month 1", nullptr, {{Short(2004), Short(1)}}, "2004-01-01", "Set Discription=2004年01月01日 "},
        {"texts that are numbers", nullptr, {{"2004", "5"}}, "2004-05-01", "Set Discription=2004年05月01日 "},
        {"texts that are none", nullptr, {{"甲", "乙"}}, "2006-01-01", "Set Discription=2006年01月01日 "},
    };
    for (const BuiltCase& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            BookScript book;
            book.tables.isSQL(isSQL);
            book.cnn->Answer(Setting(each.stored)).Answer(Periods(each.periods));
            book.AnswerRecorded(OptionRows({}));
            EXPECT_EQ(book.tables.Get_BuiltDate().ToIso(), each.date);
            EXPECT_EQ(book.cnn->Statements(), (std::vector<Sent>{kReadBuilt, kEarliest, kWrite}));
            ASSERT_EQ(book.cnn->Log()->size(), 8u);
            EXPECT_EQ((*book.cnn->Log())[4], "Set Item=建帐日期 ");
            EXPECT_EQ((*book.cnn->Log())[5], each.written);
        }
    }
}

TEST(BuiltDate, WhatWasWrittenReadsBack) {
    BookScript book;
    const auto options = OptionRows({});
    book.cnn->Answer(Setting(nullptr)).Answer(Periods({{Short(2004), Short(3)}})).Answer(options).Answer(options);
    EXPECT_EQ(book.tables.Get_BuiltDate().ToIso(), "2004-03-01");
    EXPECT_EQ(options->Contents().size(), 1u);
    options->MoveFirst();
    EXPECT_EQ(book.tables.Get_BuiltDate().ToIso(), "2004-03-01");
    EXPECT_EQ(book.cnn->Statements(), (std::vector<Sent>{kReadBuilt, kEarliest, kWrite, kReadBuilt}));
}

TEST(BuiltDate, TrapsEveryError) {
    BookScript noOptions({MessageAnswer::Ok});
    noOptions.cnn->FailAt(1).Answer(Periods({{Short(2004), Short(3)}}));
    EXPECT_EQ(noOptions.tables.Get_BuiltDate().ToIso(), "2004-03-01") << "an unreadable setting is a missing one";

    BookScript noBalance;
    noBalance.cnn->FailAt(2);
    EXPECT_EQ(noBalance.tables.Get_BuiltDate(), Date());
    EXPECT_EQ(noBalance.cnn->Statements(), (std::vector<Sent>{kReadBuilt, kEarliest})) << "nothing is stored";

    BookScript otherColumns;
    otherColumns.cnn->Answer(Setting(nullptr)).Answer(MakeRows({{"年份", VarType::Integer}}, {{Short(2004)}}));
    EXPECT_EQ(otherColumns.tables.Get_BuiltDate(), Date());

    BookScript noSuchYear;
    noSuchYear.cnn->Answer(Setting(nullptr)).Answer(Periods({{100000, Short(3)}}));
    EXPECT_EQ(noSuchYear.tables.Get_BuiltDate(), Date());
    EXPECT_EQ(noSuchYear.cnn->Statements(), (std::vector<Sent>{kReadBuilt, kEarliest}));

    CTables unconnected;
    EXPECT_EQ(unconnected.Get_BuiltDate(), Date());
}

TEST(BuiltDate, IsAnsweredAlthoughItCannotBeStored) {
    BookScript shown({MessageAnswer::Ok});
    shown.cnn->Answer(Setting(nullptr)).Answer(Periods({{Short(2004), Short(3)}})).FailAt(3, "read-only");
    EXPECT_EQ(shown.tables.Get_BuiltDate().ToIso(), "2004-03-01");
    EXPECT_EQ(shown.Messages(), std::vector<std::string>{"修改系统选项: read-only"});

    BookScript nobody;
    nobody.cnn->Answer(Setting(nullptr)).Answer(Periods({})).FailAt(3);
    EXPECT_EQ(nobody.tables.Get_BuiltDate().ToIso(), "2006-08-19");
}

struct CurrentCase {
    const char* name;
    const char* current;
    const char* built;
    Rows periods;
    const char* date;     ///< null for the zero date
    const char* written;  ///< null when nothing is stored
};

void ExpectCurrentDate(const CurrentCase& each, bool isSQL) {
    SCOPED_TRACE(each.name);
    BookScript book;
    book.tables.isSQL(isSQL);
    book.cnn->Answer(Setting(each.current)).Answer(Setting(each.built)).Answer(Periods(each.periods));
    book.AnswerRecorded(OptionRows({}));
    const Date answer = book.tables.Get_CurrentDate();
    if (each.date)
        EXPECT_EQ(answer.ToIso(), each.date);
    else
        EXPECT_EQ(answer, Date());
    std::vector<Sent> sent = {kReadCurrent, kReadBuilt, kPeriods};
    if (each.written) sent.push_back(kWrite);
    EXPECT_EQ(book.cnn->Statements(), sent);
    if (each.written) {
        ASSERT_EQ(book.cnn->Log()->size(), 9u);
        EXPECT_EQ((*book.cnn->Log())[5], "Set Item=当前日期 ");
        EXPECT_EQ((*book.cnn->Log())[6], each.written);
    }
    EXPECT_TRUE(book.Messages().empty());
}

TEST(CurrentDate, FewerThanTwoPeriodsRepairNothing) {
    const Rows none = {}, one = {{Short(2004), Short(9)}};
    const CurrentCase cases[] = {
        {"empty table", "2004-3-15", "2004年01月01日", none, "2004-03-15", nullptr},
        {"one row", "2004-3-15", "2004年01月01日", one, "2004-03-15", nullptr},
        {"one row, another year", "2003-3-15", "2004年01月01日", one, "2003-03-15", nullptr},
        {"one row, before the book was set up", "2004-3-15", "2004年05月01日", one, "2004-03-15", nullptr},
        {"one row, no current date", nullptr, "2004年01月01日", one, nullptr, nullptr},
        {"one row, a bad date", "abc", "2004年01月01日", one, nullptr, nullptr},
        {"nothing at all", nullptr, nullptr, none, nullptr, nullptr},
        {"no built date", "2004年03月15日", nullptr, one, "2004-03-15", nullptr},
    };
    for (const CurrentCase& each : cases)
        for (const bool isSQL : {false, true}) ExpectCurrentDate(each, isSQL);
}

TEST(CurrentDate, TwoPeriodsRepairIt) {
    const Rows february = {{Short(2004), Short(2)}, {Short(2004), Short(1)}};
    const CurrentCase cases[] = {
        {"none", nullptr, "2004年01月05日", february, "2004-02-01", "Set Discription=2004-2-1 "},
        {"blank", " ", "2004年01月05日", february, "2004-02-01", "Set Discription=2004-2-1 "},
        {"a bad date", "2004-2-30", "2004年01月05日", february, "2004-02-01", "Set Discription=2004-2-1 "},
        {"a later year", "2005-3-15", "2004年01月05日", february, "2004-02-01", "Set Discription=2004-2-1 "},
        {"an earlier year", "2003-12-31", "2004年01月05日", february, "2004-02-01", "Set Discription=2004-2-1 "},
        {"an earlier month than the book's first", "2004-3-31", "2004年04月01日", february, "2004-02-01",
         "Set Discription=2004-2-1 "},
        {"the year is the built date's",
         nullptr,
         "2004年01月05日",
         {{Short(1997), Short(12)}, {Short(1997), Short(11)}},
         "2004-12-01",
         "Set Discription=2004-12-1 "},
        {"a built date before 2000 counts", nullptr, "1998年01月05日", february, "1998-02-01",
         "Set Discription=1998-2-1 "},
        {"a later month in the table",
         "2004-3-15",
         "2004年01月05日",
         {{Short(2004), Short(4)}, {Short(2004), Short(3)}},
         "2004-04-01",
         "Set Discription=2004-4-1 "},
    };
    for (const CurrentCase& each : cases)
        for (const bool isSQL : {false, true}) ExpectCurrentDate(each, isSQL);
}

TEST(CurrentDate, TwoPeriodsMayLeaveIt) {
    const Rows march = {{Short(2004), Short(3)}, {Short(2004), Short(2)}};
    const CurrentCase cases[] = {
        {"the table's latest month", "2004-3-15", "2004年01月05日", march, "2004-03-15", nullptr},
        {"a later month", "2004-5-31", "2004年01月05日", march, "2004-05-31", nullptr},
        {"the month of the built date", "2004-3-1", "2004年03月31日", march, "2004-03-01", nullptr},
        {"Null is month 0",
         "2004-1-15",
         "2004年01月05日",
         {{Short(2004), Variant::Null()}, {Short(2004), Short(1)}},
         "2004-01-15",
         nullptr},
    };
    for (const CurrentCase& each : cases)
        for (const bool isSQL : {false, true}) ExpectCurrentDate(each, isSQL);
}

TEST(CurrentDate, WhatCannotBeRepairedStaysAsItIs) {
    const Rows march = {{Short(2004), Short(3)}, {Short(2004), Short(2)}};
    const Rows noMonth = {{Short(2004), Variant::Null()}, {Short(2004), Short(1)}};
    const CurrentCase cases[] = {
        {"no year without a built date", "2004-1-15", nullptr, march, "2004-01-15", nullptr},
        {"neither date", nullptr, nullptr, march, nullptr, nullptr},
        {"no built date, a bad date", "abc", "xyz", march, nullptr, nullptr},
        {"there is no month 0", nullptr, "2004年01月05日", noMonth, nullptr, nullptr},
        {"there is no month 0, another year", "2003-1-15", "2004年01月05日", noMonth, "2003-01-15", nullptr},
    };
    for (const CurrentCase& each : cases)
        for (const bool isSQL : {false, true}) ExpectCurrentDate(each, isSQL);
}

TEST(CurrentDate, AnUnknownCountRepairsNothing) {
    BookScript book;
    const auto periods = Periods({{Short(2004), Short(9)}, {Short(2004), Short(8)}});
    periods->ReportCount(-1);
    book.cnn->Answer(Setting("2004-3-15")).Answer(Setting("2004年01月05日")).Answer(periods);
    EXPECT_EQ(book.tables.Get_CurrentDate().ToIso(), "2004-03-15");
    EXPECT_EQ(book.cnn->Statements(), (std::vector<Sent>{kReadCurrent, kReadBuilt, kPeriods}));
}

TEST(CurrentDate, TrapsEveryError) {
    BookScript noBalance;
    noBalance.cnn->Answer(Setting("2004-3-15")).Answer(Setting("2004年01月05日")).FailAt(3);
    EXPECT_EQ(noBalance.tables.Get_CurrentDate().ToIso(), "2004-03-15");

    BookScript noBalanceNoDate;
    noBalanceNoDate.cnn->Answer(Setting(nullptr)).Answer(Setting("2004年01月05日")).FailAt(3);
    EXPECT_EQ(noBalanceNoDate.tables.Get_CurrentDate(), Date());

    BookScript unreadable;
    unreadable.cnn->FailAt(1)
        .Answer(Setting("2004年01月05日"))
        .Answer(Periods({{Short(2004), Short(2)}, {Short(2004), Short(1)}}))
        .Answer(OptionRows({}));
    EXPECT_EQ(unreadable.tables.Get_CurrentDate().ToIso(), "2004-02-01") << "an unreadable setting is a missing one";

    CTables unconnected;
    EXPECT_EQ(unconnected.Get_CurrentDate(), Date());
}

TEST(CurrentDate, IsAnsweredAlthoughItCannotBeStored) {
    for (const bool asked : {true, false}) {
        BookScript book(asked ? std::deque<MessageAnswer>{MessageAnswer::Ok} : std::deque<MessageAnswer>{});
        book.cnn->Answer(Setting(nullptr))
            .Answer(Setting("2004年01月05日"))
            .Answer(Periods({{Short(2004), Short(2)}, {Short(2004), Short(1)}}))
            .FailAt(4, "read-only");
        EXPECT_EQ(book.tables.Get_CurrentDate().ToIso(), "2004-02-01");
        EXPECT_EQ(book.Messages(), std::vector<std::string>{"修改系统选项: read-only"});
    }
}

}  // namespace
}  // namespace kpTables::test
