#include "kpTables/bookkeeping/WatchedConnection.h"

#include <gtest/gtest.h>

#include <vector>

#include "kpTables/MemoryRecordset.h"

namespace kpTables::bookkeeping {
namespace {

/// Answers "Select" with two rows, "bad" with an error, anything else with nothing; its editable recordset fails to
/// close.
class FakeConnection : public Connection {
public:
    using Connection::Execute;
    RecordsetPtr Execute(std::string_view text) override {
        if (text == "bad") throw DatabaseError(-2147217900, "refused", std::string(text));
        if (!text.starts_with("Select")) return nullptr;
        auto rows = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"a", VarType::Long}});
        for (std::int32_t i = 0; i < 2; ++i) {
            rows->AddNew();
            rows->SetValue(0, i);
            rows->Update();
        }
        rows->MoveFirst();
        return rows;
    }
    RecordsetPtr Open(std::string_view, SourceKind) override {
        class Failing : public MemoryRecordset {
        public:
            using MemoryRecordset::MemoryRecordset;
            void Close() override { throw DatabaseError(-2147217887, "in use"); }
        };
        return std::make_shared<Failing>(std::vector<FieldInfo>{{"a", VarType::Long}});
    }
    int BeginTrans() override { return ++transactions; }
    void CommitTrans() override { --transactions; }
    void RollbackTrans() override { --transactions; }
    int transactions = 0;
};

struct Reported {
    std::vector<std::string> lines;
};

WatchedConnection Traced(const std::shared_ptr<FakeConnection>& target, Reported& reported) {
    WatchedConnection connection(target, [] { return std::int64_t{7}; });
    connection.onSend = [&reported](const SentStatement& sent) {
        reported.lines.push_back(std::string(sent.op == StatementOp::Execute ? "execute" : "open") +
                                 (sent.kind == SourceKind::Table ? " table " : " text ") + sent.text);
    };
    connection.onEnd = [&reported](const SentStatement&, const StatementEnd& end) {
        reported.lines.push_back(end.error  ? "failed: " + end.error->Description()
                                 : end.rows ? std::to_string(*end.rows) + " rows"
                                            : "open");
    };
    return connection;
}

TEST(WatchedConnection, ReportsEveryStatementInOrder) {
    Reported reported;
    auto connection = Traced(std::make_shared<FakeConnection>(), reported);
    EXPECT_EQ(connection.Execute("Select 1")->RecordCount(), 2);
    EXPECT_EQ(connection.Execute("Delete"), nullptr);
    connection.Open("仓库余额表", SourceKind::Table);
    connection.Open("Select *", SourceKind::Text);
    EXPECT_THROW(connection.Execute("bad"), DatabaseError);
    EXPECT_EQ(reported.lines, (std::vector<std::string>{"execute text Select 1", "2 rows", "execute text Delete",
                                                        "7 rows", "open table 仓库余额表", "open", "open text Select *",
                                                        "open", "execute text bad", "failed: refused"}));
}

TEST(WatchedConnection, KeepsWhatFailed) {
    Reported reported;
    auto connection = Traced(std::make_shared<FakeConnection>(), reported);
    EXPECT_FALSE(connection.LastError());
    EXPECT_THROW(connection.Execute("bad"), DatabaseError);
    ASSERT_TRUE(connection.LastError());
    EXPECT_EQ(connection.LastError()->Description(), "refused");
    connection.Execute("Select 1");
    ASSERT_TRUE(connection.LastError());
    const auto editable = connection.Open("t", SourceKind::Table);
    EXPECT_THROW(editable->Close(), DatabaseError);
    ASSERT_TRUE(connection.LastError());
    EXPECT_EQ(connection.LastError()->Description(), "in use");
    ASSERT_EQ(connection.Failures().size(), 2U);
    EXPECT_EQ(connection.Failures()[0].text, "bad");
    EXPECT_EQ(connection.Failures()[1].text, "t");
    connection.ForgetFailures();
    EXPECT_FALSE(connection.LastError());
}

TEST(WatchedConnection, KeepsTheLevelsOfOthers) {
    Reported reported;
    const auto target = std::make_shared<FakeConnection>();
    auto connection = Traced(target, reported);
    EXPECT_EQ(connection.Level(), 0);
    connection.BeginTrans();
    connection.KeepLevels(1);
    EXPECT_EQ(connection.BeginTrans(), 2);
    connection.CommitTrans();
    EXPECT_EQ(connection.Level(), 1);
    EXPECT_THROW(connection.CommitTrans(), DatabaseError);
    EXPECT_THROW(connection.RollbackTrans(), DatabaseError);
    EXPECT_EQ(target->transactions, 1);
    connection.KeepLevels(0);
    connection.RollbackTrans();
    EXPECT_EQ(connection.Level(), 0);
}

TEST(WatchedConnection, EditableRecordsetPassesCallsOn) {
    Reported reported;
    auto connection = Traced(std::make_shared<FakeConnection>(), reported);
    const auto rows = connection.Open("t", SourceKind::Table);
    for (const std::int32_t value : {3, 1, 2}) {
        rows->AddNew();
        rows->SetValue(0, value);
        rows->Update();
    }
    EXPECT_EQ(rows->RecordCount(), 3);
    EXPECT_EQ(rows->FieldCount(), 1);
    EXPECT_EQ(rows->FieldAt(0).name, "a");
    EXPECT_EQ(rows->FieldIndex("A"), 0);
    rows->MoveFirst();
    rows->MoveNext();
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    EXPECT_TRUE(rows->GetValue(0).Is(std::int32_t{1}));
    rows->MoveFirst();
    rows->Find("a=2");
    EXPECT_TRUE(rows->GetValue(0).Is(std::int32_t{2}));
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    rows->Sort("a");
    EXPECT_TRUE(rows->GetValue(0).Is(std::int32_t{1}));
}

TEST(WatchedConnection, PassesTransactionsOn) {
    const auto target = std::make_shared<FakeConnection>();
    WatchedConnection connection(target, [] { return std::int64_t{0}; });
    EXPECT_EQ(connection.BeginTrans(), 1);
    EXPECT_EQ(connection.BeginTrans(), 2);
    EXPECT_EQ(target->transactions, 2);
    connection.CommitTrans();
    connection.CommitTrans();
    EXPECT_EQ(target->transactions, 0);
    connection.BeginTrans();
    connection.RollbackTrans();
    EXPECT_EQ(target->transactions, 0);
}

}  // namespace
}  // namespace kpTables::bookkeeping
