// Errors before and after an engine writes.
#include <gtest/gtest.h>

#include "engines/FakeDriver.h"
#include "kpTables/Error.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

class Writer : public testing::Test {
protected:
    std::int64_t Insert(const Variant& text) {
        engines::ColumnSet set(3);
        set.Add(2);
        const Variant* const values[] = {&text};
        return writer->Insert(set, values);
    }

    FakeDatabase database;
    FakeDriver driver{database};
    std::shared_ptr<engines::RowWriter> writer =
        driver.MakeWriter({"T", {{"k", {}, 0}, {"n", {}, 0}, {"x", {}, 3}}, 0, true});
};

TEST_F(Writer, ATextTooLongForItsColumn) {
    EXPECT_EQ(Insert("帐簿一"), 1);
    EXPECT_EQ(NumberOf([&] { Insert("abcd"); }), Code(DatabaseErrorNumber::Overflow));
    engines::ColumnSet set(3);
    set.Add(2);
    const Variant text("abcd");
    const Variant* const values[] = {&text};
    EXPECT_EQ(NumberOf([&] { writer->Change({.id = 1}, set, values); }), Code(DatabaseErrorNumber::Overflow));
    EXPECT_EQ(database.TakeJournal(), "insert x=帐簿一");
}

TEST_F(Writer, ACounterBeyondThirtyTwoBitsIsTakenBack) {
    database.nextRowId = std::int64_t{1} << 31;
    EXPECT_EQ(NumberOf([&] { Insert("a"); }), Code(DatabaseErrorNumber::Overflow));
    EXPECT_EQ(database.TakeJournal(), "insert x=a; delete 2147483648");
    EXPECT_TRUE(database.rows.empty());
}

}  // namespace
}  // namespace kpTables
