// The repair of missing balance rows.
#include <gtest/gtest.h>

#include "kpTables/CTables.h"
#include "support/Failure.h"
#include "support/ScriptedConnection.h"
#include "support/ScriptedHost.h"

namespace kpTables::test {
namespace {

const auto kYes = MessageAnswer::Yes;
const auto kNo = MessageAnswer::No;

const std::string kMissingIn =
    "Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表 Where 月份<=3) "
    "And "
    "BillID In (Select BillId From 入库目录 Where 月份<=3)";
const std::string kMissingOut =
    "Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表 Where 月份<=3) "
    "And "
    "BillID In (Select BillId From 出库目录 Where 月份<=3)";
const std::string kYear = "Select Top 2 年份 From 仓库余额表 Order by 年份 DESC";

std::shared_ptr<ScriptedRecordset> Missing(const Rows& rows) {
    return MakeRows({{"pdID", VarType::Long}, {"dpID", VarType::Long}}, rows);
}

std::shared_ptr<ScriptedRecordset> Years(const Rows& rows) { return MakeRows({{"年份", VarType::Integer}}, rows); }

struct Repair {
    explicit Repair(std::deque<MessageAnswer> answers = {})
        : host(std::make_shared<ScriptedHost>(std::move(answers))), tables(host) {
        tables.Cnn(cnn);
    }
    void ExpectMessage(std::size_t index, const std::string& text, const std::string& title) const {
        ASSERT_LT(index, host->Messages().size());
        EXPECT_EQ(host->Messages()[index].text, text);
        EXPECT_EQ(host->Messages()[index].title, title);
        EXPECT_EQ(host->Messages()[index].buttons, MessageButtons::YesNo);
    }

    std::shared_ptr<ScriptedConnection> cnn = std::make_shared<ScriptedConnection>();
    std::shared_ptr<ScriptedHost> host;
    CTables tables;
};

TEST(CheckBnProduct, NothingMissingAsksNothing) {
    for (const bool isSQL : {false, true}) {
        Repair repair;
        repair.cnn->Answer(Missing({})).Answer(Missing({}));
        repair.tables.isSQL(isSQL);
        repair.tables.CheckBnProduct(3);
        EXPECT_EQ(repair.cnn->Statements(), (std::vector<Sent>{Executed(kMissingIn), Executed(kMissingOut)}));
        EXPECT_TRUE(repair.host->Messages().empty());
    }
}

TEST(CheckBnProduct, WithoutAMonthLooksAtTheWholeBook) {
    for (const std::int16_t month : {std::int16_t{0}, std::int16_t{-1}}) {
        Repair repair;
        repair.cnn->Answer(Missing({})).Answer(Missing({}));
        repair.tables.CheckBnProduct(month);
        const std::vector<Sent> expected = {
            Executed("Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表) "
                     "And BillID In (Select BillId From 入库目录)"),
            Executed(
                "Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表) "
                "And BillID In (Select BillId From 出库目录)"),
        };
        EXPECT_EQ(repair.cnn->Statements(), expected);
    }
}

TEST(CheckBnProduct, YesToBothAddsRowsInTheOrderFound) {
    Repair repair({kYes, kYes});
    repair.cnn->Answer(Missing({{7, 1}, {5, 2}}))
        .Answer(Years({{std::int16_t{2004}}, {std::int16_t{2003}}}))
        .Answer(nullptr)
        .Answer(nullptr)
        .Answer(Missing({{9, 3}}))
        .Answer(Years({{std::int16_t{2004}}}))
        .Answer(nullptr);
    repair.tables.CheckBnProduct(3);
    const std::vector<Sent> expected = {
        Executed(kMissingIn),
        Executed(kYear),
        Executed("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,3,7,1)"),
        Executed("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,3,5,2)"),
        Executed(kMissingOut),
        Executed(kYear),
        Executed("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,3,9,3)"),
    };
    EXPECT_EQ(repair.cnn->Statements(), expected);
    ASSERT_EQ(repair.host->Messages().size(), 2u);
    repair.ExpectMessage(0, "入库记录中，有仓库余额表中没有的记录：2,是否修正？", "检查入库记录");
    repair.ExpectMessage(1, "出库记录中，有仓库余额表中没有的记录：1,是否修正？", "检查出库记录");
}

TEST(CheckBnProduct, NoStillAsksTheOutboundQuestion) {
    Repair repair({kNo, kNo});
    repair.cnn->Answer(Missing({{7, 1}})).Answer(Missing({{9, 3}, {9, 4}, {10, 4}}));
    repair.tables.CheckBnProduct(3);
    EXPECT_EQ(repair.cnn->Statements(), (std::vector<Sent>{Executed(kMissingIn), Executed(kMissingOut)}));
    ASSERT_EQ(repair.host->Messages().size(), 2u);
    repair.ExpectMessage(0, "入库记录中，有仓库余额表中没有的记录：1,是否修正？", "检查入库记录");
    repair.ExpectMessage(1, "出库记录中，有仓库余额表中没有的记录：3,是否修正？", "检查出库记录");
}

TEST(CheckBnProduct, EachSideHasItsOwnAnswer) {
    Repair noYes({kNo, kYes});
    noYes.cnn->Answer(Missing({{7, 1}})).Answer(Missing({{9, 3}})).Answer(Years({{std::int16_t{1997}}}));
    noYes.tables.CheckBnProduct(3);
    EXPECT_EQ(noYes.cnn->Statements(),
              (std::vector<Sent>{Executed(kMissingIn), Executed(kMissingOut), Executed(kYear),
                                 Executed("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (1997,3,9,3)")}));

    Repair yesNo({kYes, kNo});
    yesNo.cnn->Answer(Missing({{7, 1}}))
        .Answer(Years({{std::int16_t{1997}}}))
        .Answer(nullptr)
        .Answer(Missing({{9, 3}}));
    yesNo.tables.CheckBnProduct(3);
    EXPECT_EQ(yesNo.cnn->Statements(),
              (std::vector<Sent>{Executed(kMissingIn), Executed(kYear),
                                 Executed("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (1997,3,7,1)"),
                                 Executed(kMissingOut)}));
}

TEST(CheckBnProduct, AnswersOtherThanYesAreNo) {
    Repair repair({MessageAnswer::Ok});
    repair.cnn->Answer(Missing({{7, 1}})).Answer(Missing({}));
    repair.tables.CheckBnProduct(3);
    EXPECT_EQ(repair.cnn->Statements(), (std::vector<Sent>{Executed(kMissingIn), Executed(kMissingOut)}));
}

TEST(CheckBnProduct, OneSideMissingAsksOnce) {
    Repair repair({kYes});
    repair.cnn->Answer(Missing({})).Answer(Missing({{9, 3}})).Answer(Years({{std::int16_t{1997}}}));
    repair.tables.CheckBnProduct(3);
    ASSERT_EQ(repair.host->Messages().size(), 1u);
    repair.ExpectMessage(0, "出库记录中，有仓库余额表中没有的记录：1,是否修正？", "检查出库记录");
}

TEST(CheckBnProduct, AnEmptyTableHasNoYear) {
    const RecordsetPtr noYears[] = {Years({}), Years({{Variant::Null()}})};
    for (const auto& years : noYears) {
        Repair repair({kYes});
        repair.cnn->Answer(Missing({{7, 1}})).Answer(years).FailAt(3, "syntax error");
        EXPECT_EQ(FailureOf([&] { repair.tables.CheckBnProduct(3); }), kRefused);
        EXPECT_EQ(repair.cnn->Statements(),
                  (std::vector<Sent>{Executed(kMissingIn), Executed(kYear),
                                     Executed("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (,3,7,1)")}));
    }
}

TEST(CheckBnProduct, AnUnknownCountFindsNothing) {
    Repair repair({kYes, kYes});
    const auto in = Missing({{7, 1}});
    const auto out = Missing({{9, 3}});
    in->ReportCount(-1);
    out->ReportCount(-1);
    repair.cnn->Answer(in).Answer(out);
    repair.tables.CheckBnProduct(3);
    EXPECT_EQ(repair.cnn->Statements(), (std::vector<Sent>{Executed(kMissingIn), Executed(kMissingOut)}));
    EXPECT_TRUE(repair.host->Messages().empty());
}

TEST(CheckBnProduct, AFailingStatementEndsIt) {
    for (const int failing : {1, 2, 3, 4, 5, 6, 7}) {
        SCOPED_TRACE(failing);
        Repair repair({kYes, kYes});
        repair.cnn->Answer(Missing({{7, 1}, {5, 2}}))
            .Answer(Years({{std::int16_t{2004}}}))
            .Answer(nullptr)
            .Answer(nullptr)
            .Answer(Missing({{9, 3}}))
            .Answer(Years({{std::int16_t{2004}}}))
            .FailAt(failing);
        EXPECT_EQ(FailureOf([&] { repair.tables.CheckBnProduct(3); }), kRefused);
        EXPECT_EQ(repair.cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
}

TEST(CheckBnProduct, WithNobodyToAskRaisesError5) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(Missing({{7, 1}}));
    CTables tables;
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.CheckBnProduct(3); }), 5);
    EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Executed(kMissingIn)});
}

}  // namespace
}  // namespace kpTables::test
