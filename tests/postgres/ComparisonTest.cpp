// All texts that the component sends, on both engines over the same messy book: same rows, same order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "corpus/Corpus.h"
#include "kpTables/Book.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"
#include "text/TextOrder.h"

namespace kpTables {
namespace {

/// Rows with few different values, so that they meet in joins; with Nulls, and texts that differ in case, width and
/// trailing blanks alone.
class MessyRows {
public:
    explicit MessyRows(unsigned seed) : random_(seed) {}

    Variant Value(const TableInfo::Column& column) {
        constexpr int kOneIn = 12;
        if (!column.required && Below(kOneIn) == 0) return Variant::Null();
        switch (column.type) {
            case VarType::Boolean:
                return Below(2) == 0;
            case VarType::Integer:
                return static_cast<std::int16_t>(Whole(column.name));
            case VarType::Long:
                return static_cast<std::int32_t>(Whole(column.name));
            case VarType::Double:
                return (Below(4000) - 500) / 8.0;
            case VarType::Currency:
                return Currency::FromScaled(std::int64_t{Below(2000000)} - 300000);
            case VarType::Date: {
                // One after the other: compilers evaluate arguments in orders of their own.
                const int year = 2003 + Below(2);
                const int month = 1 + Below(12);
                return Date::FromYearMonthDay(year, month, 1 + Below(28));
            }
            default:
                return Variant(std::string(kTexts[static_cast<std::size_t>(Below(std::size(kTexts)))]));
        }
    }
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    int Below(std::size_t limit) { return Below(static_cast<int>(limit)); }

private:
    int Whole(const std::string& column) {
        if (column == "年份") return 2003 + Below(2);
        if (column == "月份") return 1 + Below(12);
        if (column == "日子") return 1 + Below(28);
        return Below(9);
    }

    static constexpr std::string_view kTexts[] = {"",   "水泥", "水泥 ", "砂",   "a",         "A",
                                                  "Ａ", "入库", "出库",  "公斤", "中心 仓库", "1",
                                                  "01", "001",  "袋",    "é",    "转仓",      "中  "};
    std::mt19937 random_;
};

void Fill(Book& one, Book& other, unsigned seed) {
    MessyRows messy(seed);
    constexpr int kRows = 30;
    for (const TableInfo& table : one.Tables()) {
        std::vector<std::string> columns;
        for (const auto& column : table.columns) columns.push_back(column.name);
        const auto first = one.AppendTo(table.name, columns);
        const auto second = other.AppendTo(table.name, columns);
        for (int row = 0; row < kRows; ++row) {
            std::vector<Variant> values;
            for (const auto& column : table.columns) {
                values.push_back(column.counter ? Variant::Missing() : messy.Value(column));
            }
            // A row whose key is there already is in neither book.
            bool isIn = true;
            try {
                first->Append(values);
            } catch (const DatabaseError&) {
                isIn = false;
            }
            EXPECT_EQ(test::NumberOf([&] { second->Append(values); }) == 0, isIn) << table.name;
        }
    }
}

bool SameValue(const Variant& a, const Variant& b) {
    if (a.IsNull() || b.IsNull()) return a.IsNull() && b.IsNull();
    if (a.Type() != b.Type()) return false;
    if (const auto* number = a.If<double>()) {
        constexpr double kDigits = 1e-13;
        const double other = *b.If<double>();
        return std::abs(*number - other) <= kDigits * std::max({1.0, std::abs(*number), std::abs(other)});
    }
    // A group shows one of the texts that are equal in the book's order, whichever comes first.
    if (const auto* text = a.If<std::string>()) return text::CompareTexts(*text, *b.If<std::string>()) == 0;
    return Text(a) == Text(b);
}

std::vector<std::vector<Variant>> RowsIn(Recordset& rows) {
    std::vector<std::vector<Variant>> all;
    for (; !rows.Eof(); rows.MoveNext()) {
        all.emplace_back();
        for (int i = 0; i < rows.FieldCount(); ++i) all.back().push_back(rows.GetValue(i));
    }
    return all;
}

std::string Written(const std::vector<Variant>& row) {
    std::string text;
    for (const Variant& value : row) text += (value.IsNull() ? "Null" : Text(value)) + "|";
    return text;
}

/// Calls whose ORDER BY leaves rows equal, which the embedded engine finds by an index that orders them otherwise than
/// by their ids: in each engine's own sequence.
constexpr std::string_view kWithTies[] = {
    "rs仓库余额表期初(3, 0, True)", "rs出库记录(1, -1)",          "rs单位出库记录(1)", "rsLog()",
    "Delete_LogRecs(300)",          "Delete_LogRecs(1073741823)",
};

/// "" when both have the same rows in the same order, else the first difference.
std::string Difference(Recordset& expected, Recordset& actual, bool inAnyOrder) {
    if (expected.FieldCount() != actual.FieldCount()) return "other columns";
    for (int i = 0; i < expected.FieldCount(); ++i) {
        const FieldInfo& a = expected.FieldAt(i);
        const FieldInfo& b = actual.FieldAt(i);
        if (a.name != b.name) return "column " + a.name + " is called " + b.name;
        if (a.type != b.type && a.type != VarType::Empty) return "column " + a.name + " has another type";
    }
    auto first = RowsIn(expected);
    auto second = RowsIn(actual);
    if (inAnyOrder) {
        std::ranges::sort(first, {}, Written);
        std::ranges::sort(second, {}, Written);
    }
    if (first.size() != second.size()) {
        return std::to_string(first.size()) + " and " + std::to_string(second.size()) + " rows";
    }
    for (std::size_t row = 0; row < first.size(); ++row) {
        if (!std::equal(first[row].begin(), first[row].end(), second[row].begin(), SameValue)) {
            return "row " + std::to_string(row) + " of " + std::to_string(first.size()) + ": " + Written(first[row]) +
                   " and " + Written(second[row]);
        }
    }
    return "";
}

struct Answer {
    RecordsetPtr rows;
    std::int32_t error = 0;
    std::string description = {};
};

Answer AnswerOf(Book& book, const corpus::Statement& statement) {
    try {
        if (statement.kind == "execute") return {book.Execute(statement.text)};
        return {book.Open(statement.text, SourceKind::Text)};
    } catch (const Error& error) {
        return {nullptr, error.Number(), error.Description()};
    }
}

class Comparison : public testing::TestWithParam<unsigned> {};

TEST_P(Comparison, TheCorpusAnswersAlike) {
    const char* const server = std::getenv("KPTABLES_SERVER");
    ASSERT_TRUE(server) << "run it beside a server: tests/postgres/private_server.py";
    const BookPtr expected = CreateBook("memory:");
    const BookPtr actual = test::NewBook();
    Fill(*expected, *actual, GetParam());
    std::set<std::string> done;
    int compared = 0;
    for (const corpus::SentText& text : corpus::Texts()) {
        if (!text.statement->refusal.empty() || !done.insert(text.statement->text).second) continue;
        SCOPED_TRACE(text.source->Name() + "\n" + text.statement->text);
        expected->BeginTrans();
        actual->BeginTrans();
        const Answer a = AnswerOf(*expected, *text.statement);
        const Answer b = AnswerOf(*actual, *text.statement);
        EXPECT_EQ(a.error, b.error) << a.description << " and " << b.description;
        EXPECT_EQ(static_cast<bool>(a.rows), static_cast<bool>(b.rows));
        const bool ties = std::ranges::find(kWithTies, text.source->call) != std::end(kWithTies);
        if (a.rows && b.rows) {
            EXPECT_EQ(Difference(*a.rows, *b.rows, ties), "");
        }
        if (!a.rows && !b.rows && a.error == 0) {
            EXPECT_EQ(expected->RecordsAffected(), actual->RecordsAffected());
        }
        compared += a.rows && b.rows;
        expected->RollbackTrans();
        actual->RollbackTrans();
    }
    EXPECT_GT(compared, 300);
}

INSTANTIATE_TEST_SUITE_P(Books, Comparison, testing::Values(1U, 2U));

}  // namespace
}  // namespace kpTables
