#include "kpbook/input/CsvReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace kpTables::kpbook::input {
namespace {

/// Gives a text a few bytes at a time, so that every boundary falls somewhere.
CsvReader::Source InPieces(std::string text, std::size_t piece) {
    return [text = std::move(text), piece, at = std::size_t{0}](char* buffer, std::size_t size) mutable {
        const auto count = std::min({piece, size, text.size() - at});
        std::memcpy(buffer, text.data() + at, count);
        at += count;
        return count;
    };
}

struct Record {
    std::int64_t line;
    std::vector<std::string> fields;
    std::string problem;
    bool operator==(const Record&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Record& record) {
    out << record.line << ":";
    for (const auto& field : record.fields) out << '[' << field << ']';
    return out << ' ' << record.problem;
}

std::vector<Record> ReadAll(const std::string& text, std::size_t piece) {
    CsvReader reader(InPieces(text, piece));
    std::vector<Record> records;
    while (reader.Next()) {
        Record record{reader.Line(), {}, reader.Problem()};
        for (std::size_t i = 0; i < reader.FieldCount(); ++i) record.fields.emplace_back(reader.Field(i));
        records.push_back(record);
    }
    return records;
}

struct CsvCase {
    const char* name;
    std::string text;
    std::vector<Record> records;
};

const CsvCase kCases[] = {
    {"nothing", "", {}},
    {"one line without an end", "a,b", {{1, {"a", "b"}, ""}}},
    {"one line", "a,b\n", {{1, {"a", "b"}, ""}}},
    {"two lines", "a,b\nc,d\n", {{1, {"a", "b"}, ""}, {2, {"c", "d"}, ""}}},
    {"CRLF", "a,b\r\nc,d\r\n", {{1, {"a", "b"}, ""}, {2, {"c", "d"}, ""}}},
    {"carriage return at the very end", "a,b\r", {{1, {"a", "b"}, ""}}},
    {"byte order mark", "\xEF\xBB\xBF\xE4\xBB\x93,b\n", {{1, {"仓", "b"}, ""}}},
    {"byte order mark before a quote", "\xEF\xBB\xBF\"a\",b\n", {{1, {"a", "b"}, ""}}},
    {"byte order mark alone", "\xEF\xBB\xBF", {}},
    {"empty fields", ",,\n", {{1, {"", "", ""}, ""}}},
    {"empty last field at the end", "a,", {{1, {"a", ""}, ""}}},
    {"blanks stay", " a , b \n", {{1, {" a ", " b "}, ""}}},
    {"quoted", "\"a\",\"b\"\n", {{1, {"a", "b"}, ""}}},
    {"quoted and empty", "\"\",\"\"\n", {{1, {"", ""}, ""}}},
    {"quoted separator", "\"a,b\",c\n", {{1, {"a,b", "c"}, ""}}},
    {"quoted quotes", "\"say \"\"hi\"\"\",c\n", {{1, {"say \"hi\"", "c"}, ""}}},
    {"only a quoted quote", "\"\"\"\"\n", {{1, {"\""}, ""}}},
    {"quoted line breaks", "\"a\nb\",c\r\nd,e\n", {{1, {"a\nb", "c"}, ""}, {3, {"d", "e"}, ""}}},
    {"quoted CRLF", "\"a\r\nb\"\r\nd\n", {{1, {"a\r\nb"}, ""}, {3, {"d"}, ""}}},
    {"quoted at the end of the text", "a,\"b\"", {{1, {"a", "b"}, ""}}},
    {"lines without a character", "a\n\n\r\nb\n\n", {{1, {"a"}, ""}, {4, {"b"}, ""}}},
    {"Chinese", "名称,数量\n水泥,5\n", {{1, {"名称", "数量"}, ""}, {2, {"水泥", "5"}, ""}}},
    {"quote inside a plain field",
     "a,b\"c\nd,e\n",
     {{1, {"a", "b\"c"}, "field 2: a quote in the middle of a field without quotes"}, {2, {"d", "e"}, ""}}},
    {"quote after a blank", " \"a\"\n", {{1, {" \"a\""}, "field 1: a quote in the middle of a field without quotes"}}},
    {"text after a closing quote",
     "\"a\"b,c\nd\n",
     {{1, {"ab", "c"}, "field 1: text after a closing quote"}, {2, {"d"}, ""}}},
    {"blank after a closing quote", "\"a\" ,c\n", {{1, {"a ", "c"}, "field 1: text after a closing quote"}}},
    {"carriage return alone", "a\rb,c\n", {{1, {"a\rb", "c"}, "field 1: a carriage return that no line feed follows"}}},
    {"carriage return alone after a quote",
     "\"a\"\rb\n",
     {{1, {"a\rb"}, "field 1: a carriage return that no line feed follows"}}},
    {"quote never closed",
     "a,b\nc,\"d\ne,f\n",
     {{1, {"a", "b"}, ""}, {2, {"c", "d\ne,f\n"}, "field 2: the quote that opens on line 2 is never closed"}}},
    {"second quote of a record never closed",
     "\"a\nb\",\"c\n",
     {{1, {"a\nb", "c\n"}, "field 2: the quote that opens on line 2 is never closed"}}},
    {"only the first fault of a record is told",
     "a\"b,\"c\"d\n",
     {{1, {"a\"b", "cd"}, "field 1: a quote in the middle of a field without quotes"}}},
};

TEST(CsvReader, Records) {
    for (const auto& each : kCases) {
        for (const std::size_t piece : {1, 2, 3, 7, 1000}) {
            EXPECT_EQ(ReadAll(each.text, piece), each.records) << each.name << ", pieces of " << piece;
        }
    }
}

TEST(CsvReader, LongFieldsAcrossBuffers) {
    const std::string plain(300'000, 'p');
    const std::string quoted(300'000, 'q');
    const auto records = ReadAll(plain + ",\"" + quoted + "\"\nx,y\n", 1 << 20);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_TRUE(records[0].fields == (std::vector<std::string>{plain, quoted}));
    EXPECT_EQ(records[1], (Record{2, {"x", "y"}, ""}));
}

std::string FieldsOf(const std::string& text, std::optional<char> separator, std::size_t piece) {
    CsvReader reader(InPieces(text, piece), separator);
    std::string fields;
    while (reader.Next()) {
        for (std::size_t i = 0; i < reader.FieldCount(); ++i) fields += "[" + std::string(reader.Field(i)) + "]";
        fields += reader.Problem() + "\n";
    }
    return fields;
}

TEST(CsvReader, Separators) {
    const std::optional<char> recognised;
    for (const std::size_t piece : {1, 2, 1000}) {
        EXPECT_EQ(FieldsOf("a\tb,c\td\n1\t2\t\"3\t4\"\n", recognised, piece), "[a][b,c][d]\n[1][2][3\t4]\n");
        EXPECT_EQ(FieldsOf("a;b\n1;2,5\n", recognised, piece), "[a][b]\n[1][2,5]\n");
        EXPECT_EQ(FieldsOf("\r\n\"x;y;z\",b\n1,2;\n", recognised, piece), "[x;y;z][b]\n[1][2;]\n");
        EXPECT_EQ(FieldsOf("a\n1;2\n", recognised, piece), "[a]\n[1;2]\n");
        EXPECT_EQ(FieldsOf("a;b\n1;2\n", ',', piece), "[a;b]\n[1;2]\n");
        EXPECT_EQ(FieldsOf("a|b\n\"1\"|2\n", '|', piece), "[a][b]\n[1][2]\n");
        EXPECT_EQ(FieldsOf("", recognised, piece), "");
    }
}

TEST(CsvReader, Quotes) {
    CsvReader reader(InPieces("a,\"a\",,\"\"\n", 3));
    ASSERT_TRUE(reader.Next());
    for (const std::size_t i : {0, 2}) EXPECT_FALSE(reader.IsQuoted(i));
    for (const std::size_t i : {1, 3}) EXPECT_TRUE(reader.IsQuoted(i));
}

}  // namespace
}  // namespace kpTables::kpbook::input
