// Which names a mistyped one may mean.
#include "kpTables/bookkeeping/DidYouMean.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kpTables::bookkeeping {
namespace {

std::string Meant(std::string_view given, const std::vector<std::string>& names) { return DidYouMean(given, names); }

TEST(DidYouMean, NamesTheNearest) {
    EXPECT_EQ(Meant("imprt", {"export", "import", "info"}), "; did you mean import?");
    EXPECT_EQ(Meant("IMPROT", {"export", "import"}), "; did you mean import?");
    EXPECT_EQ(Meant("clos", {"close", "clot", "stock"}), "; did you mean close or clot?");
    EXPECT_EQ(Meant("仓库明称", {"仓库名称", "商品名称"}), "; did you mean 仓库名称?");
    EXPECT_EQ(Meant("abc", {"abd", "abe", "abf"}), "; did you mean abd, abe or abf?");
}

TEST(DidYouMean, NamesWhatContainsIt) {
    EXPECT_EQ(Meant("名称", {"仓库名称", "结帐日期"}), "; did you mean 仓库名称?");
    EXPECT_EQ(Meant("商品名称规格", {"商品名称", "备注"}), "; did you mean 商品名称?");
}

TEST(DidYouMean, NamesNothingThatIsFarOffAndNothingAmongMany) {
    EXPECT_EQ(Meant("frobnicate", {"export", "import"}), "");
    EXPECT_EQ(Meant("", {"a"}), "");
    EXPECT_EQ(Meant("x", {"y", "ax"}), "");
    EXPECT_EQ(Meant("abc", {"abd", "abe", "abf", "abg"}), "");
    EXPECT_EQ(Meant("abc", {}), "");
}

}  // namespace
}  // namespace kpTables::bookkeeping
