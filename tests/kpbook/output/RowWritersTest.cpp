#include "kpbook/output/RowWriters.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "kpTables/MemoryRecordset.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/Output.h"

namespace kpTables::kpbook::output {
namespace {

using Rows = std::vector<std::vector<Variant>>;

std::unique_ptr<MemoryRecordset> Filled(const std::vector<FieldInfo>& fields, const Rows& rows) {
    auto recordset = std::make_unique<MemoryRecordset>(fields);
    for (const auto& row : rows) {
        recordset->AddNew();
        for (std::size_t i = 0; i < row.size(); ++i) recordset->SetValue(static_cast<int>(i), row[i]);
        recordset->Update();
    }
    if (!rows.empty()) recordset->MoveFirst();
    return recordset;
}

const std::vector<int> kNoTotals;

template <class Write, class... Totalled>
std::string Written(Write write, const std::vector<FieldInfo>& fields, const Rows& rows, const Totalled&... totalled) {
    char path[] = "/tmp/kpbook-rows-XXXXXX";
    const int descriptor = ::mkstemp(path);
    EXPECT_GE(descriptor, 0);
    ::close(descriptor);
    Output output(path);
    const auto recordset = Filled(fields, rows);
    EXPECT_EQ(write(*recordset, output, totalled...), static_cast<std::int64_t>(rows.size()));
    output.Close();
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    ::unlink(path);
    return text.str();
}

const std::vector<FieldInfo> kGoods = {
    {"pdID", VarType::Long}, {"名称", VarType::String}, {"金额", VarType::Currency}, {"note", VarType::String}};
const Rows kTwoGoods = {{std::int32_t{7}, "水泥", Currency::FromScaled(125000), "a|b"},
                        {std::int32_t{12}, "Bolt", Variant::Null(), "two\nlines, \"quoted\""}};

TEST(RowWriters, Table) {
    EXPECT_EQ(Written(WriteTable, kGoods, kTwoGoods, kNoTotals),
              "pdID  名称  金额  note\n"
              "----  ----  ----  --------------------\n"
              "   7  水泥  12.5  a|b\n"
              "  12  Bolt        two\\nlines, \"quoted\"\n");
}

TEST(RowWriters, TableWithoutRows) {
    EXPECT_EQ(Written(WriteTable, kGoods, {}, kNoTotals),
              "pdID  名称  金额  note\n"
              "----  ----  ----  ----\n");
}

TEST(RowWriters, TableEndsNoLineInBlanks) {
    EXPECT_EQ(Written(WriteTable, {{"a", VarType::Long}, {"b", VarType::String}}, {{std::int32_t{1}, Variant::Null()}},
                      kNoTotals),
              "a  b\n-  -\n1\n");
}

TEST(RowWriters, TableAlignsCombiningMarks) {
    EXPECT_EQ(Written(WriteTable, {{"name", VarType::String}, {"n", VarType::Long}},
                      {{"Jose\xCC\x81", std::int32_t{1}}, {"北京", std::int32_t{2}}}, kNoTotals),
              "name  n\n----  -\nJose\xCC\x81  1\n北京  2\n");
}

TEST(RowWriters, TableWithTotals) {
    const Rows rows = {{std::int32_t{7}, "水泥", Currency::FromScaled(999999), 0.1},
                       {std::int32_t{12}, "Bolt", Variant::Null(), 0.2}};
    const std::vector<FieldInfo> fields = {
        {"No", VarType::Long}, {"名称", VarType::String}, {"金额", VarType::Currency}, {"数量", VarType::Double}};
    EXPECT_EQ(Written(WriteTable, fields, rows, std::vector<int>{2, 3}),
              "  No  名称     金额  数量\n"
              "----  ----  -------  ----\n"
              "   7  水泥  99.9999   0.1\n"
              "  12  Bolt            0.2\n"
              "----  ----  -------  ----\n"
              "合计        99.9999   0.3\n");
    EXPECT_EQ(Written(WriteTable, fields, {}, std::vector<int>{2, 3}),
              "No  名称  金额  数量\n"
              "--  ----  ----  ----\n");
    EXPECT_EQ(Written(WriteMarkdown, fields, rows, std::vector<int>{2, 3}),
              "| No | 名称 | 金额 | 数量 |\n"
              "| ---: | --- | ---: | ---: |\n"
              "| 7 | 水泥 | 99.9999 | 0.1 |\n"
              "| 12 | Bolt |  | 0.2 |\n"
              "| 合计 |  | 99.9999 | 0.3 |\n");
}

TEST(RowWriters, TotalWiderThanItsColumn) {
    EXPECT_EQ(Written(WriteTable, {{"名称", VarType::String}, {"n", VarType::Long}},
                      {{"甲", std::int32_t{9}}, {"乙", std::int32_t{9}}}, std::vector<int>{1}),
              "名称   n\n----  --\n甲     9\n乙     9\n----  --\n合计  18\n");
}

TEST(RowWriters, Csv) {
    EXPECT_EQ(Written(WriteCsv, kGoods, kTwoGoods),
              "pdID,名称,金额,note\n"
              "7,水泥,12.5,a|b\n"
              "12,Bolt,,\"two\nlines, \"\"quoted\"\"\"\n");
}

TEST(RowWriters, CsvOfOneColumnKeepsEmptyFields) {
    EXPECT_EQ(Written(WriteCsv, {{"a", VarType::String}}, {{""}, {"x"}, {Variant::Null()}}), "a\n\"\"\nx\n\"\"\n");
}

TEST(RowWriters, Json) {
    EXPECT_EQ(Written(WriteJson, kGoods, kTwoGoods),
              "{\"columns\":[{\"name\":\"pdID\",\"type\":\"Long\"},{\"name\":\"名称\",\"type\":\"String\"},"
              "{\"name\":\"金额\",\"type\":\"Currency\"},{\"name\":\"note\",\"type\":\"String\"}],\"rows\":[\n"
              "[7,\"水泥\",\"12.5\",\"a|b\"],\n"
              "[12,\"Bolt\",null,\"two\\nlines, \\\"quoted\\\"\"]\n"
              "]}\n");
}

TEST(RowWriters, Markdown) {
    EXPECT_EQ(Written(WriteMarkdown, kGoods, kTwoGoods, kNoTotals),
              "| pdID | 名称 | 金额 | note |\n"
              "| ---: | --- | ---: | --- |\n"
              "| 7 | 水泥 | 12.5 | a\\|b |\n"
              "| 12 | Bolt |  | two<br>lines, \"quoted\" |\n");
}

TEST(RowWriters, XlsxRefusesATextTooLongForACell) {
    // A text beyond what a cell holds is an error, and no half of a workbook stays behind.
    char folder[] = "/tmp/kpbook-xlsx-XXXXXX";
    ASSERT_TRUE(::mkdtemp(folder));
    const std::string path = std::string(folder) + "/rows.xlsx";
    const RecordsetPtr recordset = Filled({{"a", VarType::String}}, {{std::string(40'000, 'x')}});
    EXPECT_THROW(WriteXlsx({{"", recordset, {}}}, path), std::runtime_error);
    EXPECT_NE(::access(path.c_str(), F_OK), 0);
    ::rmdir(folder);
}

struct TextCase {
    Variant value;
    std::string text;
};

TEST(CellText, FullPrecision) {
    const TextCase cases[] = {
        {Variant(), ""},
        {Variant::Null(), ""},
        {true, "True"},
        {false, "False"},
        {std::int16_t{-3}, "-3"},
        {25.0, "25"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1e16, "10000000000000000"},
        {1e17, "1e+17"},
        {1e-6, "0.000001"},
        {1.5e-7, "1.5e-07"},
        {0.0, "0"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {Currency::FromScaled(-1), "-0.0001"},
        {*Date::FromParts({2004, 3, 7, 0, 0, 0}), "2004-03-07"},
        {*Date::FromParts({2004, 3, 7, 9, 5, 0}), "2004-03-07 09:05:00"},
        {"文字", "文字"},
        {nullptr, "(nothing)"},
        {std::make_shared<VariantArray>(std::vector<Variant>{std::int32_t{1}, "a"}), "1, a"},
    };
    for (const auto& each : cases) EXPECT_EQ(CellText(each.value), each.text);
}

TEST(CellText, FifteenDigitsForPeople) {
    const TextCase cases[] = {
        {0.1 + 0.2, "0.3"},
        {1565.1049999999998, "1565.105"},
        {200.0 / 3, "66.6666666666667"},
        {-0.1, "-0.1"},
        {123456789012345678.0, "123456789012346000"},
        {0.0, "0"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {Currency::FromScaled(10001), "1.0001"},
        {"0.30000000000000004", "0.30000000000000004"},
        {Variant::Null(), ""},
    };
    for (const auto& each : cases) EXPECT_EQ(ShownText(each.value), each.text);
}

TEST(RowWriters, TablesShowFifteenDigitsAndFilesAll) {
    const std::vector<FieldInfo> fields = {{"a", VarType::Double}};
    const Rows rows = {{0.1 + 0.2}};
    EXPECT_EQ(Written(WriteTable, fields, rows, kNoTotals), "  a\n---\n0.3\n");
    EXPECT_EQ(Written(WriteMarkdown, fields, rows, kNoTotals), "| a |\n| ---: |\n| 0.3 |\n");
    EXPECT_EQ(Written(WriteCsv, fields, rows), "a\n0.30000000000000004\n");
}

}  // namespace
}  // namespace kpTables::kpbook::output
