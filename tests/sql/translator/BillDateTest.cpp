#include "ExpressionCases.h"

namespace kpTables::sql::test {

namespace {

constexpr const char* kServerDate =
    "CAST(CAST(y AS char(4)) + '-' + CAST(m AS char(2)) + '-' + CAST(n AS char(2)) AS DATETIME)";

// Follows a comparison other than =: with a part that is Null there is no date.
constexpr const char* kKnown = R"( AND "T"."y" = "T"."y" AND "T"."m" = "T"."m" AND "T"."n" = "T"."n")";

}  // namespace

TEST(BillDate, ComparesByItsColumns) {
    const std::string known = kKnown;
    CheckConditions({
        {"CDATE(y & '-' & m & '-' & n)>=#2004-3-7#", R"(("T"."y", "T"."m", "T"."n") >= (?1, ?2, ?3))" + known,
         "2 DateYear, 2 DateMonth, 2 DateDay"},
        {"CDATE(y & '-' & m & '-' & n)<'2004-3-7'", R"(("T"."y", "T"."m", "T"."n") < (?1, ?2, ?3))" + known,
         "2 DateYear, 2 DateMonth, 2 DateDay"},
        {"CDate([T].y & '/' &  [T].m & '/' & [T].n)<>#2004-3-7#",
         R"(("T"."y", "T"."m", "T"."n") <> (?1, ?2, ?3))" + known, "2 DateYear, 2 DateMonth, 2 DateDay"},
        {"#2004-3-7#<CDATE(y & '-' & m & '-' & n)", R"(("T"."y", "T"."m", "T"."n") > (?1, ?2, ?3))" + known,
         "0 DateYear, 0 DateMonth, 0 DateDay"},
        {"CDATE(y & '-' & m & '-' & n)=#2004-3-7#", R"("T"."y" = ?1 AND "T"."m" = ?2 AND "T"."n" = ?3)",
         "2 DateYear, 2 DateMonth, 2 DateDay"},
        {"CDATE(y & '-' & m & '-' & n) Between #2004-3-1# And #2004-3-31#",
         R"(("T"."y", "T"."m", "T"."n") >= (?1, ?2, ?3))" + known +
             R"( AND (("T"."y", "T"."m", "T"."n") <= (?4, ?5, ?6))" + known + ")",
         "2 DateYear, 2 DateMonth, 2 DateDay, 3 DateYear, 3 DateMonth, 3 DateDay"},
    });
}

// The opposite of a comparison holds for no bill whose date has a part that is Null.
TEST(BillDate, IsUnknownInAnOpposite) {
    const std::string known = kKnown;
    const std::string unknown = R"( OR "T"."y" <> "T"."y" OR "T"."m" <> "T"."m" OR "T"."n" <> "T"."n")";
    CheckConditions({
        {"Not CDATE(y & '-' & m & '-' & n)=#2004-3-7#",
         R"(NOT ("T"."y" = ?1 AND "T"."m" = ?2 AND "T"."n" = ?3)" + unknown + ")",
         "2 DateYear, 2 DateMonth, 2 DateDay"},
        {"Not (CDATE(y & '-' & m & '-' & n)<#2004-3-7# And id=1)",
         R"(NOT ((("T"."y", "T"."m", "T"."n") < (?1, ?2, ?3))" + known + unknown + R"() AND "T"."id" = ?4))",
         "2 DateYear, 2 DateMonth, 2 DateDay, 3 Number"},
    });
}

TEST(BillDate, PartsMayBeConverted) {
    const std::string known = kKnown;
    for (const char* date :
         {"CDATE(CStr(y) & '-' & m & '-' & CStr(n))", "CVDate(CStr(y) + '-' + CStr(m) + '/' + CStr(n))",
          "CDATE(CAST(y AS varchar(4)) & '-' & m & '-' & n)"})
        EXPECT_EQ(ConditionText(Translated("Delete From T Where " + std::string(date) + ">=#2004-3-7#")),
                  R"(("T"."y", "T"."m", "T"."n") >= (?1, ?2, ?3))" + known)
            << date;
}

TEST(BillDate, ServerSpelling) {
    const std::string date = kServerDate;
    const std::string known = kKnown;
    CheckConditions({
        {(date + ">=CAST('2004-3-7' AS DATETIME)").c_str(), R"(("T"."y", "T"."m", "T"."n") >= (?1, ?2, ?3))" + known,
         "5 DateYear, 5 DateMonth, 5 DateDay"},
        // The date without quotes is arithmetic: 2004-3-1 is day 2000 of the server's count.
        {(date + ">=CAST(2004-3-1 AS DATETIME)").c_str(),
         R"(("T"."y", "T"."m", "T"."n") >= (kp_year(kp_server_date(?1 - ?2 - ?3)), )"
         R"(kp_month(kp_server_date(?1 - ?2 - ?3)), kp_day_and_time(kp_server_date(?1 - ?2 - ?3))))" +
             known,
         "5 Number, 6 Number, 7 Number"},
    });
}

TEST(BillDate, AsAValue) {
    CheckExpressions({
        {"CDATE(y & '-' & m & '-' & n)", R"(kp_ymd("T"."y", "T"."m", "T"."n"))", Type::Date},
        {kServerDate, R"(kp_ymd("T"."y", "T"."m", "T"."n"))", Type::Date},
        {"Max(CDATE(y & '-' & m & '-' & n))", R"(MAX(kp_ymd("T"."y", "T"."m", "T"."n")))", Type::Date},
    });
    CheckConditions({
        {"CDATE(y & '-' & m & '-' & n)=at", R"(kp_ymd("T"."y", "T"."m", "T"."n") = "T"."at")"},
    });
}

TEST(BillDate, OnlyOfWholeNumbersAndSeparators) {
    CheckExpressions({
        {"CDATE(d & '-' & m & '-' & n)",
         R"(kp_to_date(COALESCE(kp_text_double("T"."d"), '') || ?1 || COALESCE("T"."m", '') || ?2 || )"
         R"(COALESCE("T"."n", '')))",
         Type::Date, "0 Text, 1 Text"},
        {"CDATE(y & '+' & m & '-' & n)",
         R"(kp_to_date(COALESCE("T"."y", '') || ?1 || COALESCE("T"."m", '') || ?2 || COALESCE("T"."n", '')))",
         Type::Date, "0 Text, 1 Text"},
        {"CDATE(t)", R"(kp_to_date("T"."t"))", Type::Date},
        {"CDATE('2004-3-7')", "?1", Type::Date, "0 Date"},
    });
}

TEST(BillDate, SeparatorsAreFixed) {
    EXPECT_EQ(FixedOf(Translated("Delete From T Where CDATE(y & '-' & m & '-' & n)>=#2004-3-7#")), "0 1");
    // The lengths of char(n) are fixed with them.
    EXPECT_EQ(FixedOf(Translated("Select " + std::string(kServerDate) + " From T")), "0 1 2 3 4");
}

TEST(BillDate, OrdersByItsColumns) {
    CheckStatements({
        {"Select id From T Where y=l And m>2 And n<9 Order By CDATE(y & '-' & m & '-' & n) DESC, id",
         R"(SELECT "T"."id" FROM "T" WHERE "T"."y" = "T"."l" AND "T"."m" > ?1 AND "T"."n" < ?2 )"
         R"(ORDER BY "T"."y" DESC, "T"."m" DESC, "T"."n" DESC, "T"."id")",
         "0 Number, 1 Number", "id Long"},
        {"Select Top 2 CDATE(y & '-' & m & '-' & n) As 日期 From T Where CDATE(y & '-' & m & '-' & n)<=#2004-3-7# "
         "Order By 日期",
         R"(SELECT kp_ymd("T"."y", "T"."m", "T"."n") AS "日期" FROM "T" WHERE ("T"."y", "T"."m", "T"."n") <= (?1, ?2, ?3) )"
         R"(AND "T"."y" = "T"."y" AND "T"."m" = "T"."m" AND "T"."n" = "T"."n" ORDER BY "T"."y", "T"."m", "T"."n" LIMIT 2)",
         "5 DateYear, 5 DateMonth, 5 DateDay", "日期 Date"},
        // A date with a Null part is Null, whatever the other parts are.
        {"Select id From T Order By CDATE(y & '-' & m & '-' & n) DESC, id",
         R"(SELECT "T"."id" FROM "T" ORDER BY kp_ymd("T"."y", "T"."m", "T"."n") DESC, "T"."id")", "", "id Long"},
        {"Select id From T Where y=1 And (m=1 Or n=1) And Not n=5 Order By CDATE(y & '-' & m & '-' & n)",
         R"(SELECT "T"."id" FROM "T" WHERE "T"."y" = ?1 AND ("T"."m" = ?2 OR "T"."n" = ?3) AND NOT "T"."n" = ?4 )"
         R"(ORDER BY kp_ymd("T"."y", "T"."m", "T"."n"))",
         "0 Number, 1 Number, 2 Number, 3 Number", "id Long"},
        {"Select Distinct CDATE(y & '-' & m & '-' & n) As 日期 From T Order By CDATE(y & '-' & m & '-' & n)",
         R"(SELECT DISTINCT kp_ymd("T"."y", "T"."m", "T"."n") AS "日期" FROM "T" ORDER BY 1)", "", "日期 Date"},
    });
}

}  // namespace kpTables::sql::test
