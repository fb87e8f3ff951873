#include "kpbook/input/XlsxReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "kpTables/MemoryRecordset.h"
#include "kpbook/Exit.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::input {
namespace {

/// A workbook of two rows as kpbook writes it.
std::string WrittenWorkbook() {
    auto rows = std::make_shared<MemoryRecordset>(
        std::vector<FieldInfo>{{"名称", VarType::String}, {"数量", VarType::Double}, {"日期", VarType::Date}});
    for (const double quantity : {0.1, -12345.25}) {
        rows->AddNew();
        rows->SetValue(0, "水泥");
        rows->SetValue(1, quantity);
        rows->SetValue(2, *Date::ParseIso("2004-03-07"));
        rows->Update();
    }
    rows->MoveFirst();
    char path[] = "/tmp/kpbook-reader-XXXXXX";
    ::close(::mkstemp(path));
    output::WriteXlsx({{"表", rows, {}}}, path);
    std::ifstream file(path, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    ::unlink(path);
    return bytes;
}

std::string RowsOf(const std::string& bytes) {
    XlsxReader reader(bytes, "f.xlsx", "");
    std::string text;
    while (reader.Next()) {
        text += std::to_string(reader.Line()) + ":";
        for (std::size_t i = 0; i < reader.FieldCount(); ++i) text += "[" + std::string(reader.Field(i)) + "]";
        text += reader.Problem();
    }
    return text;
}

TEST(XlsxReader, ReadsWhatWasWritten) {
    EXPECT_EQ(RowsOf(WrittenWorkbook()),
              "1:[名称][数量][日期]2:[水泥][0.1][2004-03-07]3:[水泥][-12345.25][2004-03-07]");
}

// Each byte wrong once: some rows, or an error with the file's name, and nothing else.
TEST(XlsxReader, DamagedBytes) {
    const std::string good = WrittenWorkbook();
    int refused = 0;
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] ^ (1 + at % 255));
        try {
            RowsOf(bad);
        } catch (const CommandError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with("f.xlsx: ")) << error.what();
            ++refused;
        }
    }
    EXPECT_GT(refused, 0);
}

TEST(XlsxReader, FormatsOfDates) {
    for (const char* code :
         {"yyyy-mm-dd", "m/d/yy h:mm", "[h]:mm", "yyyy\"年\"m\"月\"", "[$-804]d", "dd.mm.", "s.00"}) {
        EXPECT_TRUE(IsDateFormat(code)) << code;
    }
    for (const char* code : {"", "0.00", "#,##0.00_);[Red](#,##0.00)", "General", "\"day\"0", "0\\d", "@", "0.00E+00",
                             "[Red]0", "0;\"d\"", "[", "\"", "\\", "_"}) {
        EXPECT_FALSE(IsDateFormat(code)) << code;
    }
}

}  // namespace
}  // namespace kpTables::kpbook::input
