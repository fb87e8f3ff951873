// Methods that trap errors.
#include "kpTables/Trapped.h"

#include <gtest/gtest.h>

#include <new>

#include "kpTables/Error.h"
#include "kpTables/TrappedError.h"

namespace kpTables::test {
namespace {

TEST(Trapped, IsWhatTheFunctionAnswers) {
    EXPECT_EQ(Trapped(1, [] { return 2; }), 2);
}

TEST(Trapped, IsTheFallbackAfterAnError) {
    EXPECT_EQ(Trapped(1, []() -> int { Raise(ErrorNumber::TypeMismatch); }), 1);
    EXPECT_EQ(Trapped(std::string("none"), []() -> std::string { throw std::bad_alloc(); }), "none");
}

TEST(Trapped, ReadsTheFallbackAfterTheError) {
    int reached = 1;
    EXPECT_EQ(Trapped(reached,
                      [&]() -> int {
                          reached = 2;
                          Raise(ErrorNumber::TypeMismatch);
                      }),
              2);
}

TEST(Trapped, KeepsTheLastErrorForOneWhoAsks) {
    TakeTrappedError();
    Done([] { Raise(ErrorNumber::TypeMismatch); });
    Done([] { throw std::bad_alloc(); });
    const auto trapped = TakeTrappedError();
    ASSERT_TRUE(trapped);
    EXPECT_THROW(std::rethrow_exception(trapped), std::bad_alloc);
    EXPECT_FALSE(TakeTrappedError());
    Done([] {});
    EXPECT_FALSE(TakeTrappedError());
}

TEST(Trapped, LetsPassWhatIsNoError) {
    EXPECT_THROW(Trapped(1, []() -> int { throw 5; }), int);
}

TEST(Done, TellsWhetherItFailed) {
    EXPECT_TRUE(Done([] {}));
    EXPECT_FALSE(Done([] { Raise(ErrorNumber::TypeMismatch); }));
}

TEST(Composed, IsNothingAfterAnError) {
    EXPECT_EQ(Composed([] { return std::string("Select 1"); }), "Select 1");
    EXPECT_EQ(Composed([] { return std::string(); }), "");
    EXPECT_EQ(Composed([]() -> std::string { Raise(ErrorNumber::TypeMismatch); }), std::nullopt);
    EXPECT_EQ(Composed([]() -> std::string { throw std::bad_alloc(); }), std::nullopt);
}

}  // namespace
}  // namespace kpTables::test
