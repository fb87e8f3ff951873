// The repair of missing balance rows.
#include <gtest/gtest.h>

#include "corpus/Call.h"
#include "kpTables/CTables.h"
#include "support/Failure.h"
#include "support/ScriptedConnection.h"
#include "support/ScriptedHost.h"

namespace kpTables::test {
namespace {

const auto kYes = MessageAnswer::Yes;
const auto kNo = MessageAnswer::No;

/// What the repair of month 3 sends, by the title of the corpus.
std::vector<Sent> Asked(const char* title) { return corpus::Expected("CheckBnProduct(3)", title); }

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
        EXPECT_EQ(repair.cnn->Statements(), Asked("nothing missing"));
        EXPECT_TRUE(repair.host->Messages().empty());
    }
}

TEST(CheckBnProduct, WithoutAMonthLooksAtTheWholeBook) {
    for (const std::int16_t month : {std::int16_t{0}, std::int16_t{-1}}) {
        Repair repair;
        repair.cnn->Answer(Missing({})).Answer(Missing({}));
        repair.tables.CheckBnProduct(month);
        EXPECT_EQ(repair.cnn->Statements(), corpus::Expected("CheckBnProduct(" + std::to_string(month) + ")"));
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
    EXPECT_EQ(repair.cnn->Statements(), Asked("rows missing on both sides"));
    ASSERT_EQ(repair.host->Messages().size(), 2u);
    repair.ExpectMessage(0, "入库记录中，有仓库余额表中没有的记录：2,是否修正？", "检查入库记录");
    repair.ExpectMessage(1, "出库记录中，有仓库余额表中没有的记录：1,是否修正？", "检查出库记录");
}

TEST(CheckBnProduct, NoStillAsksTheOutboundQuestion) {
    Repair repair({kNo, kNo});
    repair.cnn->Answer(Missing({{7, 1}})).Answer(Missing({{9, 3}, {9, 4}, {10, 4}}));
    repair.tables.CheckBnProduct(3);
    EXPECT_EQ(repair.cnn->Statements(), Asked("rows missing, No to both"));
    ASSERT_EQ(repair.host->Messages().size(), 2u);
    repair.ExpectMessage(0, "入库记录中，有仓库余额表中没有的记录：1,是否修正？", "检查入库记录");
    repair.ExpectMessage(1, "出库记录中，有仓库余额表中没有的记录：3,是否修正？", "检查出库记录");
}

TEST(CheckBnProduct, EachSideHasItsOwnAnswer) {
    Repair noYes({kNo, kYes});
    noYes.cnn->Answer(Missing({{7, 1}})).Answer(Missing({{9, 3}})).Answer(Years({{std::int16_t{1997}}}));
    noYes.tables.CheckBnProduct(3);
    EXPECT_EQ(noYes.cnn->Statements(), Asked("rows missing, No and Yes"));

    Repair yesNo({kYes, kNo});
    yesNo.cnn->Answer(Missing({{7, 1}}))
        .Answer(Years({{std::int16_t{1997}}}))
        .Answer(nullptr)
        .Answer(Missing({{9, 3}}));
    yesNo.tables.CheckBnProduct(3);
    EXPECT_EQ(yesNo.cnn->Statements(), Asked("rows missing, Yes and No"));
}

TEST(CheckBnProduct, AnswersOtherThanYesAreNo) {
    Repair repair({MessageAnswer::Ok});
    repair.cnn->Answer(Missing({{7, 1}})).Answer(Missing({}));
    repair.tables.CheckBnProduct(3);
    EXPECT_EQ(repair.cnn->Statements(), Asked("rows missing, Ok is not Yes"));
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
        std::vector<Sent> expected = Asked("rows missing, an empty table has no year");
        expected.resize(3);
        EXPECT_EQ(repair.cnn->Statements(), expected);
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
    EXPECT_EQ(repair.cnn->Statements(), Asked("nothing missing"));
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
    EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Asked("nothing missing").front()});
}

}  // namespace
}  // namespace kpTables::test
