#include "kpTables/bookkeeping/CapitalFigures.h"

#include <gtest/gtest.h>

namespace kpTables::bookkeeping {
namespace {

TEST(CapitalFigures, AreReadAsOnACheque) {
    constexpr struct {
        const char* amount;
        const char* text;
    } kCases[] = {
        {"0", "零元整"},
        {"1", "壹元整"},
        {"10", "壹拾元整"},
        {"16", "壹拾陆元整"},
        {"100", "壹佰元整"},
        {"101", "壹佰零壹元整"},
        {"110", "壹佰壹拾元整"},
        {"1001", "壹仟零壹元整"},
        {"1010", "壹仟零壹拾元整"},
        {"10050", "壹万零伍拾元整"},
        {"10000", "壹万元整"},
        {"10001", "壹万零壹元整"},
        {"100000", "壹拾万元整"},
        {"107000.53", "壹拾万柒仟元伍角叁分"},
        {"6007.14", "陆仟零柒元壹角肆分"},
        {"1680.32", "壹仟陆佰捌拾元叁角贰分"},
        {"325.04", "叁佰贰拾伍元零肆分"},
        {"1409.5", "壹仟肆佰零玖元伍角整"},
        {"10020030", "壹仟零贰万零叁拾元整"},
        {"100000000", "壹亿元整"},
        {"100000001", "壹亿零壹元整"},
        {"100010000", "壹亿零壹万元整"},
        {"123456789.99", "壹亿贰仟叁佰肆拾伍万陆仟柒佰捌拾玖元玖角玖分"},
        {"1000000000000", "壹万亿元整"},
        {"1000000000001", "壹万亿零壹元整"},
        {"922337203685477.5807", "玖佰贰拾贰万叁仟叁佰柒拾贰亿零叁佰陆拾捌万伍仟肆佰柒拾柒元伍角捌分"},
        {"0.5", "伍角整"},
        {"0.05", "伍分"},
        {"0.55", "伍角伍分"},
        {"1.05", "壹元零伍分"},
        {"-10050.5", "负壹万零伍拾元伍角整"},
        {"-0.05", "负伍分"},
        // To the fen, a half away from zero.
        {"0.0049", "零元整"},
        {"-0.0049", "零元整"},
        {"0.005", "壹分"},
        {"-0.005", "负壹分"},
        {"9.995", "壹拾元整"},
    };
    for (const auto& each : kCases) {
        EXPECT_EQ(CapitalFigures(Currency::FromDecimalText(each.amount)), each.text) << each.amount;
    }
    EXPECT_EQ(CapitalFigures(Currency::FromScaled(INT64_MIN)),
              "负玖佰贰拾贰万叁仟叁佰柒拾贰亿零叁佰陆拾捌万伍仟肆佰柒拾柒元伍角捌分");
}

}  // namespace
}  // namespace kpTables::bookkeeping
