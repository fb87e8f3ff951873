// The bill list with its arguments by name: each filter reaches the condition that is its own.
#include "kpTables/BillFilter.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "kpTables/MemoryRecordset.h"

namespace kpTables {
namespace {

/// Keeps the conditions of what is sent.
class Recorder : public Connection {
public:
    RecordsetPtr Execute(std::string_view text) override {
        const auto begin = text.find(" WHERE ");
        const auto having = text.find("HAVING ");
        sent = begin == text.npos ? "" : std::string(text.substr(begin, text.find(" GROUP BY") - begin));
        sums = having == text.npos ? "" : std::string(text.substr(having, text.find(" Order by") - having));
        inbound = text.find("入库目录") != text.npos;
        return std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"BillID", VarType::Long}});
    }
    RecordsetPtr Open(std::string_view, SourceKind) override { return nullptr; }
    int BeginTrans() override { return 1; }
    void CommitTrans() override {}
    void RollbackTrans() override {}

    std::string sent;
    std::string sums;
    bool inbound = false;
};

class BillFilters : public testing::Test {
protected:
    BillFilters() { tables.Cnn(connection); }
    std::string Sent(const BillFilter& filter) {
        EXPECT_NE(ListBills(tables, filter), nullptr);
        return connection->sent + connection->sums;
    }

    std::shared_ptr<Recorder> connection = std::make_shared<Recorder>();
    CTables tables;
};

TEST_F(BillFilters, ThatAreNotSetAllowAll) {
    EXPECT_EQ(Sent({}), "");
    EXPECT_TRUE(connection->inbound);
    EXPECT_EQ(Sent({.inbound = false}), "");
    EXPECT_FALSE(connection->inbound);
}

TEST_F(BillFilters, ReachTheirConditions) {
    EXPECT_EQ(Sent({.type = "O'Hara"}), " WHERE  类型='O''Hara'");
    EXPECT_EQ(
        Sent({.from = Date::FromYearMonthDay(2003, 3, 1), .to = Date::FromYearMonthDay(2003, 3, 31)}),
        " WHERE  ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2003-3-1#) And (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2003-3-31#))");
    EXPECT_EQ(Sent({.lowestNumber = "A1", .highestNumber = "A9"}),
              " WHERE  (Lst.单据编号>='A1' And Lst.单据编号<='A9') ");
    EXPECT_EQ(Sent({.warehouse = 2, .partner = 3, .project = 4}), " WHERE  Lst.dpID=2 And Lst.ksID=3 And Lst.pjID=4");
    EXPECT_EQ(Sent({.handler = "a", .counterpart = "b", .packing = "c"}),
              " WHERE  经手人='a' And 交接人='b' And 包装='c' And 包装='c'");
    EXPECT_EQ(Sent({.leastQuantity = 1.5, .mostQuantity = 7}), "HAVING (Sum(Rec.数量)>=1.5 And Sum(Rec.数量)<=7)");
    EXPECT_EQ(Sent({.leastAmount = Currency::FromDecimalText("0.5")}), "HAVING Sum(Rec.除税金额)>=0.5");
    EXPECT_EQ(Sent({.mostAmount = Currency::FromDecimalText("99.25")}), "HAVING Sum(Rec.除税金额)<=99.25");
}

}  // namespace
}  // namespace kpTables
