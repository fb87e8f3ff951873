// What a method traps is raised.
#include "bookkeeping/CheckedTables.h"

#include <gtest/gtest.h>

#include <new>

namespace kpTables::bookkeeping {
namespace {

/// A connection for which there is no memory.
class ConnectionWithoutMemory : public Connection {
public:
    RecordsetPtr Execute(std::string_view) override { throw std::bad_alloc(); }
    RecordsetPtr Open(std::string_view, SourceKind) override { throw std::bad_alloc(); }
    int BeginTrans() override { return 1; }
    void CommitTrans() override {}
    void RollbackTrans() override {}
};

const auto otherHalf = [](CTables& tables) { return tables.GetShiftID(8, "出库"); };

TEST(CheckedTables, RaiseAnErrorThatIsNoneOfTheDatabase) {
    const auto book = std::make_shared<ConnectionWithoutMemory>();
    CTables tables;
    tables.Cnn(book);
    ASSERT_EQ(otherHalf(tables), 0) << "trapped: the bill seems to have no other half";
    EXPECT_THROW(CheckedTables(book).Ask(otherHalf), std::bad_alloc);
}

TEST(CheckedTables, RaiseWhatThisCallTrapped) {
    const auto book = std::make_shared<ConnectionWithoutMemory>();
    CheckedTables checked(book);
    CTables tables;
    tables.Cnn(book);
    otherHalf(tables);
    EXPECT_EQ(checked.Ask([](CTables&) { return 1; }), 1) << "an error that was trapped before";
}

}  // namespace
}  // namespace kpTables::bookkeeping
