#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Arithmetic, WholeNumbersStayWhole) {
    CheckExpressions({
        {"s+l", R"("T"."s" + "T"."l")", Type::Long},
        {"s-1", R"("T"."s" - ?1)", Type::Long, "0 Number"},
        {"l*s", R"("T"."l" * "T"."s")", Type::Long},
        {"-l", R"(-"T"."l")", Type::Long},
        {"-(-l)", R"(-(-"T"."l"))", Type::Long},
        {"-5", "-?1", Type::Long, "0 Number"},
        {"l-(s-1)", R"("T"."l" - ("T"."s" - ?1))", Type::Long, "0 Number"},
        {"(l+s)*2", R"(("T"."l" + "T"."s") * ?1)", Type::Long, "0 Number"},
    });
}

TEST(Arithmetic, CurrencyIsExactAmongItselfAndWholeNumbers) {
    CheckExpressions({
        {"c+c2", R"("T"."c" + "T"."c2")", Type::Currency},
        {"c-c2", R"("T"."c" - "T"."c2")", Type::Currency},
        {"c+5", R"("T"."c" + ?1)", Type::Currency, "0 Currency"},
        {"5-c", R"(?1 - "T"."c")", Type::Currency, "0 Currency"},
        {"c+-5", R"("T"."c" + ?1)", Type::Currency, "0 -Currency"},
        {"c- -(-5)", R"("T"."c" - ?1)", Type::Currency, "0 Currency"},
        {"c+l", R"("T"."c" + "T"."l" * 10000)", Type::Currency},
        {"(l+s)-c", R"(("T"."l" + "T"."s") * 10000 - "T"."c")", Type::Currency},
        {"c*l", R"("T"."c" * "T"."l")", Type::Currency},
        {"c*3", R"("T"."c" * ?1)", Type::Currency, "0 Number"},
        {"c*c2", R"(kp_cur_mul("T"."c", "T"."c2"))", Type::Currency},
        {"-c", R"(-"T"."c")", Type::Currency},
    });
}

TEST(Arithmetic, CurrencyBesideADoubleIsADouble) {
    CheckExpressions({
        {"c+d", R"("T"."c" / 10000.0 + "T"."d")", Type::Double},
        {"c*d", R"("T"."c" / 10000.0 * "T"."d")", Type::Double},
        {"d*c", R"("T"."d" * ("T"."c" / 10000.0))", Type::Double},
        {"c*1.17", R"("T"."c" / 10000.0 * ?1)", Type::Double, "0 Number"},
        {"d-0.5", R"("T"."d" - ?1)", Type::Double, "0 Number"},
    });
}

TEST(Arithmetic, QuotientsComeFromTheEngine) {
    CheckExpressions({
        {"l/s", R"(kp_div("T"."l", "T"."s"))", Type::Double},
        {"c/d", R"(kp_div("T"."c" / 10000.0, "T"."d"))", Type::Double},
        {"c/2", R"(kp_div("T"."c" / 10000.0, ?1))", Type::Double, "0 Number"},
        {"l\\2", R"(kp_idiv("T"."l", ?1))", Type::Long, "0 Number"},
        {"l Mod 2", R"(kp_mod("T"."l", ?1))", Type::Long, "0 Number"},
        {"d^2", R"(kp_pow("T"."d", ?1))", Type::Double, "0 Number"},
    });
}

TEST(Arithmetic, Dates) {
    CheckExpressions({
        {"at+1", R"(kp_date_add("T"."at", ?1))", Type::Date, "0 Number"},
        {"1+at", R"(kp_date_add("T"."at", ?1))", Type::Date, "0 Number"},
        {"at-l", R"(kp_date_add("T"."at", -"T"."l"))", Type::Date},
        {"at-c", R"(kp_date_add("T"."at", -("T"."c" / 10000.0)))", Type::Date},
        {"at-at2", R"(kp_date_diff("T"."at", "T"."at2"))", Type::Double},
        {"at-#2004-3-7#", R"(kp_date_diff("T"."at", ?1))", Type::Double, "0 Date"},
    });
}

TEST(Arithmetic, JoinedTextsReadNullAsEmpty) {
    CheckExpressions({
        {"y & '-' & m", R"(COALESCE("T"."y", '') || ?1 || COALESCE("T"."m", ''))", Type::Text, "0 Text"},
        {"t & (s & '-')", R"(COALESCE("T"."t", '') || (COALESCE("T"."s", '') || ?1))", Type::Text, "0 Text"},
        {"5 & l & d", R"(?1 || COALESCE("T"."l", '') || COALESCE(kp_text_double("T"."d"), ''))", Type::Text, "0 Text"},
        {"12.50 & #2004-3-7#", "?1 || COALESCE(kp_text_date(?2), '')", Type::Text, "0 Text, 1 Date"},
        {"(s+l) & ''", R"(COALESCE("T"."s" + "T"."l", '') || ?1)", Type::Text, "0 Text"},
        {"(t + t2) & ''", R"(COALESCE("T"."t" || "T"."t2", '') || ?1)", Type::Text, "0 Text"},
    });
}

TEST(Arithmetic, JoinedTextsThatMayAllBeNullMayBeNull) {
    CheckExpressions({
        {"t & t2", R"(kp_join("T"."t", "T"."t2"))", Type::Text},
        {"Null & Null", "kp_join(NULL, NULL)", Type::Text},
        {"t & (s & l)", R"(kp_join("T"."t", kp_join("T"."s", "T"."l")))", Type::Text},
        {"t & t2 & s", R"(kp_join(kp_join("T"."t", "T"."t2"), "T"."s"))", Type::Text},
        {"t & t2 & '-'", R"(COALESCE(kp_join("T"."t", "T"."t2"), '') || ?1)", Type::Text, "0 Text"},
        {"d & c", R"(kp_join(kp_text_double("T"."d"), kp_text_currency("T"."c")))", Type::Text},
        {"at & b", R"(kp_join(kp_text_date("T"."at"), kp_text_boolean("T"."b")))", Type::Text},
    });
}

TEST(Arithmetic, PlusJoinsTextsAndAddsATextToANumber) {
    CheckExpressions({
        {"t+t2", R"("T"."t" || "T"."t2")", Type::Text},
        {"t+'-'", R"("T"."t" || ?1)", Type::Text, "0 Text"},
        {"'a'+Null", "?1 || NULL", Type::Text, "0 Text"},
        {"Null+t", R"(NULL || "T"."t")", Type::Text},
        {"'5'+l", R"(?1 + "T"."l")", Type::Double, "0 Number"},
        {"t+1", R"(kp_to_double("T"."t") + ?1)", Type::Double, "0 Number"},
        {"CAST(y AS char(4))+'-'+CAST(m AS varchar(2))",
         R"(kp_char(CAST("T"."y" AS TEXT), 4) || ?1 || substr(CAST("T"."m" AS TEXT), 1, 2))", Type::Text, "1 Text"},
    });
}

TEST(Arithmetic, TestsAsValuesAreMinusOne) {
    CheckExpressions({
        {"l>1", R"(-("T"."l" > ?1))", Type::Boolean, "0 Number"},
        {"(l>1)+1", R"(-("T"."l" > ?1) + ?2)", Type::Long, "0 Number, 1 Number"},
        {"b And l>1", R"(-("T"."b" AND "T"."l" > ?1))", Type::Boolean, "0 Number"},
        {"Not b", R"(-(NOT "T"."b"))", Type::Boolean},
        {"t Is Null", R"(-("T"."t" IS NULL))", Type::Boolean},
        {"(l=1)=(s=2)", R"(-(-("T"."l" = ?1) = -("T"."s" = ?2)))", Type::Boolean, "0 Number, 1 Number"},
        {"True", "-1", Type::Boolean},
        {"Null", "NULL", Type::Null},
    });
}

}  // namespace kpTables::sql::test
