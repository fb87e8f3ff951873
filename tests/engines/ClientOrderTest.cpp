// Rows that an engine leaves to the client to sort.
#include "engines/common/ClientOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "engines/common/BookTexts.h"
#include "engines/common/Limits.h"
#include "kpTables/Error.h"
#include "text/TextOrder.h"

namespace kpTables::engines {
namespace {

struct SortedRow {
    std::int32_t number;
    std::optional<std::string> text;
    std::int32_t group;
};

/// Of so many rows: the first column is shown, the others are hidden.
struct HiddenKeys {
    std::vector<SortedRow> rows;
    recordset::RowStore store{std::vector<FieldInfo>{{"n", VarType::Long}, {"", VarType::String}, {"", VarType::Long}}};

    explicit HiddenKeys(std::int32_t count) {
        std::mt19937 random(static_cast<unsigned>(count));
        constexpr const char* kWords[] = {"水泥", "砂", "a", "A", "é", "e", "重庆", "中国", "10", "９", "-", " "};
        for (std::int32_t i = 0; i < count; ++i) {
            SortedRow row{i, std::nullopt, static_cast<std::int32_t>(random() % 3)};
            if (random() % 9 != 0) {
                row.text = "";
                // Some have long beginnings in common.
                if (random() % 4 == 0) row.text = std::string(60, 'x');
                for (auto words = random() % 4; words > 0; --words) *row.text += kWords[random() % std::size(kWords)];
            }
            store.BeginRow();
            store.PutLong(0, row.number);
            if (row.text) store.PutText(1, *row.text);
            store.PutLong(2, row.group);
            rows.push_back(std::move(row));
        }
    }
};

int CompareKeys(const std::optional<std::string>& left, const std::optional<std::string>& right) {
    if (!left || !right) return static_cast<int>(left.has_value()) - static_cast<int>(right.has_value());
    return text::CompareTexts(*left, *right);
}

class OrderByTheClient : public testing::TestWithParam<std::int32_t> {};

TEST_P(OrderByTheClient, IsStableAndDropsWhatIsHidden) {
    HiddenKeys table(GetParam());
    const sql::ClientOrder order{{{2, true}, {1, false}}, {sql::Type::Text, sql::Type::Long}};
    PutInOrder(table.store, order, kBookTexts, {}, "shown");
    std::ranges::stable_sort(table.rows, [](const SortedRow& left, const SortedRow& right) {
        return left.group != right.group ? left.group > right.group : CompareKeys(left.text, right.text) < 0;
    });
    ASSERT_EQ(table.store.Columns(), 1);
    ASSERT_EQ(table.store.Rows(), table.rows.size());
    for (std::size_t row = 0; row < table.rows.size(); ++row)
        ASSERT_TRUE(table.store.GetValue(row, 0).Is(table.rows[row].number)) << row;
}

TEST_P(OrderByTheClient, DescendsWithNullsLast) {
    HiddenKeys table(GetParam());
    PutInOrder(table.store, {{{1, true}}, {sql::Type::Text, sql::Type::Long}}, kBookTexts, {}, "shown");
    std::ranges::stable_sort(table.rows, [](const SortedRow& left, const SortedRow& right) {
        return CompareKeys(left.text, right.text) > 0;
    });
    for (std::size_t row = 0; row < table.rows.size(); ++row)
        ASSERT_TRUE(table.store.GetValue(row, 0).Is(table.rows[row].number)) << row;
}

TEST_P(OrderByTheClient, WithoutKeysIsTheEngines) {
    HiddenKeys table(GetParam());
    PutInOrder(table.store, {}, kBookTexts, {}, "shown");
    ASSERT_EQ(table.store.Columns(), 3);
    for (std::size_t row = 0; row < table.rows.size(); ++row)
        ASSERT_TRUE(table.store.GetValue(row, 0).Is(table.rows[row].number)) << row;
}

TEST(OrderByTheClientOfManyRows, EndsWhenTheHostSaysSo) {
    constexpr std::int32_t kMany = 200000;
    HiddenKeys table(kMany);
    for (const int patience : {0, 1, 2, 3}) {
        int asked = 0;
        Limits limits;
        limits.interrupted = [&] { return asked++ == patience; };
        try {
            PutInOrder(table.store, {{{1, false}}, {}}, kBookTexts, limits, "shown");
            FAIL() << "asked " << asked << " times";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.Number(), static_cast<std::int32_t>(DatabaseErrorNumber::Cancelled));
            EXPECT_EQ(error.Description(), "The statement was interrupted");
            EXPECT_EQ(error.Statement(), "shown");
        }
        EXPECT_EQ(asked, patience + 1);
        // The rows stand as they did.
        for (std::size_t row = 0; row < table.rows.size(); ++row)
            ASSERT_TRUE(table.store.GetValue(row, 0).Is(table.rows[row].number)) << row;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, OrderByTheClient, testing::Values(0, 1, 2, 31, 100, 20000));

}  // namespace
}  // namespace kpTables::engines
