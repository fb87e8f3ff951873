// Look-up of statements by shape.
#include "engines/common/StatementCache.h"

#include <gtest/gtest.h>

namespace kpTables::engines {
namespace {

CachedStatementPtr CachedStatementOf(std::vector<int> fixedLiterals = {}) {
    auto statement = std::make_shared<CachedStatement>();
    statement->translation.fixedLiterals = std::move(fixedLiterals);
    return statement;
}

std::vector<sql::LiteralValue> Numbers(std::string first, std::string second) {
    return {{sql::LiteralKind::Integer, std::move(first)}, {sql::LiteralKind::Integer, std::move(second)}};
}

TEST(StatementsOfAShape, AreToldApartByTheLiteralsThatShapedThem) {
    StatementCache cache;
    const auto one = CachedStatementOf({1});
    const auto two = CachedStatementOf({1});
    cache.Add("s", Numbers("7", "1"), one);
    cache.Add("s", Numbers("7", "2"), two);
    EXPECT_EQ(cache.Find("s", Numbers("8", "1")), one);
    EXPECT_EQ(cache.Find("s", Numbers("9", "2")), two);
    EXPECT_EQ(cache.Find("s", Numbers("7", "3")), nullptr);
    EXPECT_EQ(cache.Find("t", Numbers("7", "1")), nullptr);
}

TEST(StatementsOfAShape, TheOneUnusedForLongestGoesFirst) {
    StatementCache cache;
    const auto first = CachedStatementOf();
    cache.Add("0", {}, first);
    for (std::size_t i = 1; i < StatementCache::kCapacity; ++i) cache.Add(std::to_string(i), {}, CachedStatementOf());
    EXPECT_EQ(cache.Find("0", {}), first);
    cache.Add("new", {}, CachedStatementOf());
    EXPECT_EQ(cache.Size(), StatementCache::kCapacity);
    EXPECT_EQ(cache.Find("0", {}), first);
    EXPECT_EQ(cache.Find("1", {}), nullptr);
    EXPECT_NE(cache.Find("2", {}), nullptr);
    cache.Clear();
    EXPECT_EQ(cache.Size(), 0u);
    EXPECT_EQ(cache.Find("0", {}), nullptr);
}

}  // namespace
}  // namespace kpTables::engines
