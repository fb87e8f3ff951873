// Functions of a host's own SQL answer on a server as in a file, Null and untidy values included.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using Texts = std::vector<std::string>;

void Fill(Book& book) {
    book.Dialect(SqlDialect::Jet);
    book.Execute("Create Table V (N LONG PRIMARY KEY, I LONG, D DOUBLE, C CURRENCY, S TEXT(50), T DATETIME)");
    const Texts numbers = {"0", "1", "-1", "2.5", "-2.5", "0.125", "2.675", "-0.4", "9.96", "99.995", "1234567.891"};
    const Texts texts = {"''",    "'a'",      "'abc def'", "'Hello wORLD  '", "'水泥42.5'", "'50%'",
                         "'[x]'", "'a!^_%b'", "'  pad'",   "'Ａé'",           "'1.25'"};
    const Texts dates = {"#2004-1-31#",         "#2004-2-29 15:05:09#", "#1999-12-31 0:30:00#", "#1900-1-1#",
                         "#2004-3-7 12:00:00#", "#2050-10-10 9:09:09#", "#2003-2-28#",          "#1970-1-1#",
                         "#2023-5-6 23:59:59#", "#2000-2-29#",          "#2024-7-8 8:00:00#"};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        book.Execute("Insert Into V Values (" + std::to_string(i) + ", " + std::to_string(static_cast<int>(i) - 3) +
                     ", " + numbers[i] + ", " + numbers[i] + ", " + texts[i] + ", " + dates[i] + ")");
    }
    book.Execute("Insert Into V (N) Values (99)");
}

/// What the expression is for every row, or that it fails for one.
std::string Answers(Book& book, const std::string& expression) {
    try {
        return test::RowsOf(*book.Execute("Select " + expression + " From V Order by N"));
    } catch (const Error&) {
        return "an error";
    }
}

void Compare(SqlDialect dialect, const Texts& expressions) {
    const BookPtr server = test::NewBook();
    const BookPtr file = CreateBook("memory:", {});
    for (Book* book : {server.get(), file.get()}) {
        Fill(*book);
        book->Dialect(dialect);
    }
    for (const std::string& expression : expressions) {
        EXPECT_EQ(Answers(*server, expression), Answers(*file, expression)) << expression;
    }
}

TEST(FunctionsOnServer, AnswerAsInAFileInJetsDialect) {
    Compare(SqlDialect::Jet, {"Sin(D)",
                              "Cos(D)",
                              "Atn(D)",
                              "CSng(D)",
                              "StrConv(S, 3)",
                              "AscW(S & 'x')",
                              "ChrW(I + 100)",
                              "Partition(I, 0, 7, 3)",
                              "Partition(N, 2, 40, 10)",
                              "Partition(I, 5, 5, 1)",
                              "S Like '%[a-c]%'",
                              "S Like '[!a-z]%'",
                              "S Like '[^a-z]%'",
                              "S Like '%!%%' Escape '!'",
                              "S Like '%!_!%b' Escape '!'",
                              "S Like '[[]x]'",
                              "S Like '%[!^]%'",
                              "S Like 'ａÉ'",
                              "S Like S",
                              "S Like '%a' Escape 'xy'",
                              "DateDiff('ww', T, #2004-3-7#)",
                              "Format(D, '0.00')",
                              "Format(D, '#,##0.0')",
                              "Format(C, '#,##0')",
                              "Format(I, '0')",
                              "Format(T, 'yyyy年MM月dd日')",
                              "Format(T, 'yy-m-d')",
                              "Format(T, 'dd/mm/yyyy hh:nn:ss')",
                              "Format(T, 'h:n:s')",
                              "Format(T, 'dddd d mmmm ddd mmm')",
                              "Format(T)",
                              "Format(C)",
                              "Format(D)",
                              "Format(S)",
                              "Hex(I)",
                              "Oct(I)",
                              "Hex(D)",
                              "MonthName(N + 1)",
                              "MonthName(N - N + 2, I)",
                              "MonthName(I)",
                              "WeekdayName(N - N + 3, I)",
                              "WeekdayName(I)",
                              "WeekdayName(N - N + 2, False, 2)",
                              "CDbl(S)",
                              "InStr(2, S, 'e')",
                              "InStr(S, 'o')",
                              "Val(S)",
                              "CDbl(D)",
                              "Round(D, 1)"});
}

TEST(FunctionsOnServer, AnswerAsInAFileInSqlServersDialect) {
    Compare(SqlDialect::SqlServer, {"SUBSTRING(S, 2, 3)",
                                    "SUBSTRING(S, I, 3)",
                                    "SUBSTRING(S, 2, I)",
                                    "STUFF(S, 2, 3, 'XY')",
                                    "STUFF(S, I, 1, S)",
                                    "REPLICATE(S, I)",
                                    "REPLICATE(S, 3)",
                                    "UNICODE(S)",
                                    "NCHAR(I + 20000)",
                                    "NCHAR(I)",
                                    "CHARINDEX('e', S)",
                                    "CHARINDEX('', S)",
                                    "CHARINDEX('o', S, I)",
                                    "STR(D, 8, 2)",
                                    "STR(D)",
                                    "STR(D, 3, 1)",
                                    "STR(D, I, 1)",
                                    "ROUND(D, 2)",
                                    "ROUND(D, 0)",
                                    "ROUND(D, 1, 1)",
                                    "ROUND(D, -2)",
                                    "ROUND(C, 1)",
                                    "ROUND(C, -1)",
                                    "ROUND(C, 2, 1)",
                                    "I & 3",
                                    "CAST(D AS DECIMAL(10,2))",
                                    "CAST(C AS DECIMAL(10,1))",
                                    "CAST(D AS DECIMAL(5,2))",
                                    "CAST(D AS BIGINT)",
                                    "CAST(C AS DECIMAL(38,4))",
                                    "TAN(D)",
                                    "EOMONTH(T)",
                                    "EOMONTH(T, I)",
                                    "DATENAME(month, T)",
                                    "DATENAME(dw, T)",
                                    "DATENAME(yy, T)",
                                    "S Like 'a[!b]%'",
                                    "S Like '%[^a-z ]%'",
                                    "S Like 'a!!^!_!%b' Escape '!'",
                                    "PATINDEX('%[0-9]%', S)",
                                    "PATINDEX('a%', S)",
                                    "PATINDEX('%o', S)",
                                    "PATINDEX('%', S)",
                                    "PATINDEX(S, S)",
                                    "PATINDEX('%[^a-z]%', S)",
                                    "ISDATE(S)",
                                    "ISDATE('2004-03-07T15:05:09.5')",
                                    "ISDATE('20040307 15:05')",
                                    "CONVERT(varchar(30), T)",
                                    "CONVERT(varchar(20), C, 1)",
                                    "CONVERT(varchar(20), C, 0)",
                                    "CONVERT(varchar(20), C, 2)",
                                    "CONVERT(datetime, S, 103)",
                                    "CONVERT(datetime, '13/07/04', 3)",
                                    "CONVERT(datetime, '7/13/2004 15:05', 101)",
                                    "CONVERT(datetime, '49.07.13', 2)",
                                    "CONVERT(datetime, '2004-07-13 15:05:09.123', 121)"});
}

TEST(FunctionsOnServer, WriteDatesInEveryStyle) {
    Texts expressions;
    for (int style = 0; style < 135; ++style) {
        expressions.push_back("CONVERT(varchar(40), T, " + std::to_string(style) + ")");
    }
    Compare(SqlDialect::SqlServer, expressions);
}

TEST(FunctionsOnServer, RankAndLookAround) {
    Compare(
        SqlDialect::SqlServer,
        {"N, LAG(C, 1, 0) OVER (ORDER BY N)", "N, LAG(S, 2) OVER (ORDER BY N)", "N, LEAD(T) OVER (ORDER BY N DESC)",
         "N, FIRST_VALUE(D) OVER (PARTITION BY I % 2 ORDER BY N)", "N, LAST_VALUE(S) OVER (ORDER BY S)",
         "N, RANK() OVER (ORDER BY I % 3)", "N, DENSE_RANK() OVER (ORDER BY I % 3)", "N, NTILE(4) OVER (ORDER BY N)",
         "N, ROW_NUMBER() OVER (ORDER BY S, N)", "N, SUM(C) OVER (ORDER BY N ROWS 2 PRECEDING)",
         "N, AVG(C) OVER (PARTITION BY I % 2)", "N, COUNT(S) OVER (ORDER BY I)", "N, MAX(T) OVER (ORDER BY N)"});
}

bool HasExtension() { return std::getenv("KPTABLES_EXTENSION") != nullptr; }

const Texts kCarriedInJetsDialect = {"CByte(I + 3)",
                                     "CByte(D)",
                                     "FormatNumber(D)",
                                     "FormatNumber(D, 1, 0, -1, 0)",
                                     "FormatCurrency(C)",
                                     "FormatCurrency(D, 0)",
                                     "FormatPercent(D, 1)",
                                     "FormatNumber(D, I)",
                                     "Chr(I + 200)",
                                     "Chr(N + 65)",
                                     "Asc(S)",
                                     "Asc('水')",
                                     "Asc(S & 'x')",
                                     "InStrRev(S, 'o')",
                                     "InStrRev(S, 'O', 5)",
                                     "InStrRev(S, 'O', -1, 0)",
                                     "InStr(1, S, 'H', 0)",
                                     "InStr(I, S, 'l', 1)",
                                     "InStr(S, 'ａ')",
                                     "StrComp(S, 'ABC DEF', 0)",
                                     "StrComp(S, 'ABC DEF', 1)",
                                     "StrComp(S, 'a')",
                                     "TimeSerial(I, 5, 6)",
                                     "TimeSerial(25, N, D)",
                                     "TimeValue(T)",
                                     "Weekday(T, 2)",
                                     "Weekday(T)",
                                     "Weekday(T, I)",
                                     "DateDiff('ww', T, #2004-3-7#, 2)",
                                     "DateDiff('ww', T, #2004-3-7#, 3, 2)",
                                     "DatePart('ww', T, 2, 2)",
                                     "DatePart('ww', T, 2)",
                                     "DatePart('x', T)",
                                     "Format(D, '0.0E+00')",
                                     "Format(D, '[>1]0')",
                                     "Format(D, '0%')",
                                     "Format(D, '#,##0.00;(#,##0.00);零')",
                                     "Format(D, 'Currency')",
                                     "Format(T, 'Long Date')",
                                     "Format(T, 'ww q AM/PM')",
                                     "Format(T, 'yyyy-mm-dd hh:mm:ss AMPM')",
                                     "Format(S, '>')",
                                     "Format(S, '@@@@@@')",
                                     "Format(S, '&')",
                                     "FormatDateTime(T, 1)",
                                     "CDate(S)",
                                     "CDate((N Mod 28 + 1) & ' March 2004 ' & (N Mod 9) & ':05')",
                                     "CDate('2004年3月' & (N Mod 28 + 1) & '日 下午 3:05')",
                                     "IsDate('Mar ' & I & ', 2004')",
                                     "CDbl(D) * 1E20 & ''",
                                     "Rnd(-1)",
                                     "Rnd(-I - 100)"};

const Texts kCarriedInSqlServersDialect = {"TRY_CAST(S AS INT)",
                                           "TRY_CAST(SUBSTRING('12 x', N, 1) AS INT)",
                                           "TRY_CAST(S AS FLOAT)",
                                           "TRY_CAST(S AS MONEY)",
                                           "TRY_CAST(S AS SMALLINT)",
                                           "TRY_CAST(S AS BIT)",
                                           "TRY_CAST(S AS DATETIME)",
                                           "TRY_CAST(D AS SMALLINT)",
                                           "TRY_CAST(D * 1000000000 AS INT)",
                                           "TRY_CAST(I AS DATETIME)",
                                           "TRY_CAST(I AS BIT)",
                                           "TRY_CONVERT(INT, '12x')",
                                           "TRY_CONVERT(MONEY, '12.5')",
                                           "TRY_CONVERT(DATETIME, '7 Mar 2004')",
                                           "CAST('7 March 2004' AS DATETIME)",
                                           "CAST(T AS TIME)",
                                           "CONVERT(datetime, '07 Mar 04', 6)",
                                           "ISDATE('Mar 7, 2004')",
                                           "CHAR(I + 200)",
                                           "ASCII(S)",
                                           "DATEPART(dw, T)",
                                           "DATEDIFF(week, T, '2004-03-07')"};

TEST(ExtensionOnServer, AnswersAsInAFileInJetsDialect) {
    if (!HasExtension()) GTEST_SKIP() << "the server has no extension";
    Compare(SqlDialect::Jet, kCarriedInJetsDialect);
}

TEST(ExtensionOnServer, AnswersAsInAFileInSqlServersDialect) {
    if (!HasExtension()) GTEST_SKIP() << "the server has no extension";
    Compare(SqlDialect::SqlServer, kCarriedInSqlServersDialect);
}

TEST(ExtensionOnServer, SaysWhatIsWrongAsInAFile) {
    if (!HasExtension()) GTEST_SKIP() << "the server has no extension";
    const BookPtr server = test::NewBook();
    const BookPtr file = CreateBook("memory:", {});
    const auto complaint = [](Book& book, const std::string& expression) {
        try {
            book.Execute("Select " + expression + " From 仓库设置");
        } catch (const DatabaseError& error) {
            return std::to_string(error.Number()) + " " + error.Description();
        }
        return std::string("none");
    };
    for (Book* book : {server.get(), file.get()}) book->Execute("Insert Into 仓库设置 (仓库名称) Values ('水泥')");
    for (const char* expression :
         {"CByte(256 + dpID)", "InStr(0 * dpID, 仓库名称, 'x', 1)", "CDate(仓库名称)", "Chr(dpID * 70000)"}) {
        EXPECT_EQ(complaint(*server, expression), complaint(*file, expression)) << expression;
        EXPECT_NE(complaint(*file, expression), "none") << expression;
    }
    // The connection and its transaction live on.
    EXPECT_EQ(test::RowsOf(*server->Execute("Select CByte(dpID + 6) From 仓库设置")),
              test::RowsOf(*file->Execute("Select CByte(dpID + 6) From 仓库设置")));
}

TEST(ExtensionOnServer, RndKeepsTheLastNumber) {
    if (!HasExtension()) GTEST_SKIP() << "the server has no extension";
    const BookPtr server = test::NewBook();
    const auto next = [&](const char* expression) {
        return test::RowsOf(*server->Execute(std::string("Select ") + expression));
    };
    const std::string first = next("Rnd(1)");
    EXPECT_EQ(next("Rnd(0)"), first);
    EXPECT_NE(next("Rnd(1)"), first);
}

TEST(FunctionsOnServer, AreRefusedByNameWithoutTheExtension) {
    if (HasExtension()) GTEST_SKIP() << "the server has the extension";
    const BookPtr server = test::NewBook();
    Fill(*server);
    const auto refusal = [&](const char* expression) {
        try {
            server->Execute(std::string("Select ") + expression + " From V");
        } catch (const DatabaseError& error) {
            return error.Description();
        }
        return std::string();
    };
    struct Case {
        const char* expression;
        const char* function;
    };
    for (const auto& [expression, function] :
         {Case{"CByte(I)", "to_byte"}, Case{"FormatNumber(D)", "format_as_number"},
          Case{"InStr(1, S, 'a', 0)", "instr"}, Case{"Weekday(T, 2)", "weekday"}}) {
        EXPECT_NE(refusal(expression).find(std::string("'") + function + "' with the extension kptables alone"),
                  std::string::npos)
            << refusal(expression);
    }
    // What the server finds only when it runs.
    for (const char* expression : {"Chr(200)", "Format(D, '0%')", "Rnd(0)"})
        EXPECT_NE(refusal(expression).find("without the extension kptables"), std::string::npos) << refusal(expression);
}

TEST(FunctionsOnServer, TellTheTimeOfTheDay) {
    const BookPtr server = test::NewBook();
    const std::string difference = "Abs(CDbl(Time()) - (CDbl(Now()) - CDbl(Date()))) * 86400";
    EXPECT_EQ(test::RowsOf(*server->Execute("Select IIf(" + difference + " < 2, 'same', 'other')")), "same");
}

}  // namespace
}  // namespace kpTables
