// Figures as people read them, pages and charts.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>

#include "kpTables/MemoryRecordset.h"
#include "kpbook/output/Chart.h"
#include "kpbook/output/HtmlPage.h"
#include "kpbook/output/HtmlText.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::output {
namespace {

/// What a writer puts into a file.
template <class Write>
std::string WrittenTo(Write write) {
    char path[] = "/tmp/kpbook-page-XXXXXX";
    const int descriptor = ::mkstemp(path);
    EXPECT_GE(descriptor, 0);
    ::close(descriptor);
    Output output(path);
    write(output);
    output.Close();
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    ::unlink(path);
    return text.str();
}

std::string Money(std::int64_t tenThousandths) {
    return ShownText(Variant(Currency::FromScaled(tenThousandths)), Look::Money);
}

TEST(Presentation, MoneyHasTwoDecimalsAndSeparators) {
    EXPECT_EQ(Money(12345678900), "1,234,567.89");
    EXPECT_EQ(Money(-12345678950), "-1,234,567.90");
    EXPECT_EQ(Money(9999999), "1,000.00");
    EXPECT_EQ(Money(1250), "0.13");
    EXPECT_EQ(Money(-40), "0.00");
    EXPECT_EQ(Money(0), "0.00");
    EXPECT_EQ(Money(-50), "-0.01");
    // A Double has no such amount.
    EXPECT_EQ(Money(std::numeric_limits<std::int64_t>::max()), "922,337,203,685,477.58");
    EXPECT_EQ(Money(std::numeric_limits<std::int64_t>::min()), "-922,337,203,685,477.58");
    EXPECT_EQ(ShownText(Variant(Currency::FromScaled(-12345)), Look::Price), "-1.2345");
    EXPECT_EQ(ShownText(Variant(Currency::FromScaled(12300)), Look::Price), "1.23");
    EXPECT_EQ(ShownText(Variant(1234.5), Look::Money), "1,234.50");
    EXPECT_EQ(ShownText(Variant(1e300), Look::Money), "1e+300");
    EXPECT_EQ(ShownText(Variant::Null(), Look::Money), "");
    EXPECT_EQ(ShownText(Variant("much"), Look::Money), "much");
}

TEST(Presentation, PricesAndQuantitiesKeepTheirDecimals) {
    EXPECT_EQ(ShownText(Variant(1234.0), Look::Price), "1,234.00");
    EXPECT_EQ(ShownText(Variant(0.12345), Look::Price), "0.1235");
    EXPECT_EQ(ShownText(Variant(0.125), Look::Price), "0.125");
    EXPECT_EQ(ShownText(Variant(138859.102), Look::Quantity), "138,859.102");
    EXPECT_EQ(ShownText(Variant(0.1 + 0.2), Look::Quantity), "0.3");
    EXPECT_EQ(ShownText(Variant(std::int32_t{2004}), Look::Plain), "2004");
}

TEST(Presentation, Separators) {
    EXPECT_EQ(WithSeparators("999"), "999");
    EXPECT_EQ(WithSeparators("-1000"), "-1,000");
    EXPECT_EQ(WithSeparators("1234567.1234567"), "1,234,567.1234567");
    EXPECT_EQ(WithSeparators("1e+30"), "1e+30");
    EXPECT_EQ(WithSeparators(""), "");
}

TEST(HtmlText, MarkupIsEscaped) {
    EXPECT_EQ(HtmlText("<b a=\"x\">水 & 泥's</b>"), "&lt;b a=&quot;x&quot;&gt;水 &amp; 泥&#39;s&lt;/b&gt;");
    EXPECT_EQ(HtmlText("a\nb\x01\x7f\xff"), "a\nb\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

View OneRow() {
    auto rows = std::make_shared<MemoryRecordset>(
        std::vector<FieldInfo>{{"名称<1>", VarType::String}, {"金额", VarType::Currency}});
    rows->AddNew();
    rows->SetValue(0, "<script>alert(1)</script>");
    rows->SetValue(1, Currency::FromLong(1234));
    rows->Update();
    rows->MoveFirst();
    return {"标题 & 更多", {"注意 <这里>"}, rows, {{1}, {Look::Plain, Look::Money}}, {}};
}

TEST(HtmlPage, ValuesAreEscapedAndNothingIsFetched) {
    const std::string page = WrittenTo([](Output& output) { WriteHtml({OneRow()}, output, {"index.html", "<全部>"}); });
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">"));
    EXPECT_NE(page.find("<h1>标题 &amp; 更多</h1>"), page.npos);
    EXPECT_NE(page.find("注意 &lt;这里&gt;"), page.npos);
    EXPECT_NE(page.find("<td>&lt;script&gt;alert(1)&lt;/script&gt;</td><td class=\"n\">1,234.00</td>"), page.npos);
    EXPECT_NE(page.find("<tfoot><tr><td>合计</td><td class=\"n\">1,234.00</td></tr>"), page.npos);
    EXPECT_NE(page.find("<a href=\"index.html\">&lt;全部&gt;</a>"), page.npos);
    EXPECT_EQ(page.find("alert(1)</script>"), page.npos);
    for (const char* fetched : {"http:", "https:", "src=", "@import", "url("}) {
        EXPECT_EQ(page.find(fetched), page.npos) << fetched;
    }
}

Chart TwoSeries(Chart::Shape shape, double second) {
    return {"入库 <和> 出库", shape, {"1", "2"}, {{"入库", {100, 50}}, {"出库", {20, second}}}};
}

TEST(SvgChart, HasABoxForEveryFigureWithItsText) {
    const std::string svg = SvgChart(TwoSeries(Chart::Shape::Columns, 0));
    EXPECT_NE(svg.find("<figcaption>入库 &lt;和&gt; 出库</figcaption>"), svg.npos);
    EXPECT_NE(svg.find("<title>1 入库: 100.00</title>"), svg.npos);
    EXPECT_NE(svg.find("<title>1 出库: 20.00</title>"), svg.npos);
    EXPECT_EQ(svg.find("<title>2 出库"), svg.npos) << "a figure of 0 has no box";
    // The plot is 262 high and the axis ends at 100: 50 is half of it.
    EXPECT_NE(svg.find("height=\"262.0\" fill=\"#2f6fab\"><title>1 入库"), svg.npos) << svg;
    EXPECT_NE(svg.find("height=\"131.0\" fill=\"#2f6fab\"><title>2 入库"), svg.npos) << svg;
}

TEST(SvgChart, StackedSeriesStandOnEachOther) {
    const std::string svg = SvgChart(TwoSeries(Chart::Shape::Stacked, 70));
    // 100 + 20 and 50 + 70 reach 120 of an axis that ends at 125 with lines every 25; 10 above the plot.
    EXPECT_NE(svg.find("y=\"20.5\" width=\"331.2\" height=\"41.9\" fill=\"#d9822b\"><title>1 出库"), svg.npos) << svg;
    EXPECT_NE(svg.find("y=\"20.5\" width=\"331.2\" height=\"146.7\" fill=\"#d9822b\"><title>2 出库"), svg.npos) << svg;
}

TEST(SvgChart, NegativeFiguresHangBelowZero) {
    const std::string svg = SvgChart(TwoSeries(Chart::Shape::Columns, -100));
    EXPECT_NE(svg.find("y=\"141.0\" width=\"165.6\" height=\"131.0\" fill=\"#d9822b\"><title>2 出库: -100.00"),
              svg.npos)
        << svg;
}

TEST(SvgChart, NothingToDraw) {
    EXPECT_EQ(SvgChart({"空", Chart::Shape::Bars, {"a"}, {{"b", {0}}}}), "");
    EXPECT_EQ(SvgChart({"空", Chart::Shape::Bars, {}, {{"b", {}}}}), "");
}

TEST(TerminalChart, ABarALine) {
    const Chart chart{"最大的商品", Chart::Shape::Bars, {"水泥", "螺栓 M8", "坏\n名"}, {{"金额", {4000, 1000, -50}}}};
    const std::string blocks = "██████████";
    EXPECT_EQ(WrittenTo([&](Output& output) { WriteTerminalChart(chart, output); }),
              "\n最大的商品\n"
              "水泥     " +
                  blocks + blocks + blocks + blocks +
                  " 4,000.00\n"
                  "螺栓 M8  " +
                  blocks +
                  " 1,000.00\n"
                  "坏\\n名   -▌ -50.00\n");
}

}  // namespace
}  // namespace kpTables::kpbook::output
