// Which scheme and address a book's URL has.
#include "engines/BookUrl.h"

#include <gtest/gtest.h>

#include "kpTables/Error.h"

namespace kpTables::engines {
namespace {

std::string Parts(const std::string& url) {
    const BookUrl parts = ParseBookUrl(url);
    return parts.scheme + "|" + parts.address;
}

TEST(BookUrl, APathIsAFile) {
    EXPECT_EQ(Parts("shop.kpbook"), "file|shop.kpbook");
    EXPECT_EQ(Parts("/books/帐簿 100%.kpbook"), "file|/books/帐簿 100%.kpbook");
    EXPECT_EQ(Parts("./a:b"), "file|./a:b");
    EXPECT_EQ(Parts("2004:03"), "file|2004:03");
    EXPECT_EQ(Parts("帐簿:1"), "file|帐簿:1");
    EXPECT_EQ(Parts("C:/shop.kpbook"), "file|C:/shop.kpbook");
    EXPECT_EQ(Parts(":memory:"), "file|:memory:");
    EXPECT_EQ(Parts(""), "file|");
}

TEST(BookUrl, AFilesUrlIsDecoded) {
    EXPECT_EQ(Parts("file:shop.kpbook"), "file|shop.kpbook");
    EXPECT_EQ(Parts("FILE:shop"), "file|shop");
    EXPECT_EQ(Parts("file:///books/my%20shop%2F%E5%B8%90"), "file|/books/my shop/帐");
    EXPECT_EQ(Parts("file://localhost/shop"), "file|/shop");
    EXPECT_EQ(Parts("file:a:b"), "file|a:b");
}

TEST(BookUrl, OthersKeepTheirAddress) {
    EXPECT_EQ(Parts("memory:"), "memory|");
    EXPECT_EQ(Parts("PostgreSQL://host/shop?a=%20"), "postgresql|//host/shop?a=%20");
}

TEST(BookUrl, RefusesWhatNamesNoFileHere) {
    for (const char* url : {"file://server/shop", "file:shop?mode=memory", "file:shop#1", "file:100%", "file:%zz",
                            "file:%2", "file:%-1"}) {
        EXPECT_THROW(ParseBookUrl(url), DatabaseError) << url;
    }
}

}  // namespace
}  // namespace kpTables::engines
