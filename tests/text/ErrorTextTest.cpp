#include "text/ErrorText.h"

#include <gtest/gtest.h>

namespace kpTables::text {
namespace {

TEST(ErrorText, OfANumber) {
    EXPECT_STREQ(ErrorText(13), "Type mismatch");
    EXPECT_STREQ(ErrorText(3265),
                 "Item cannot be found in the collection corresponding to the requested name or ordinal");
    EXPECT_STREQ(ErrorText(1), "Application-defined or object-defined error");
}

}  // namespace
}  // namespace kpTables::text
