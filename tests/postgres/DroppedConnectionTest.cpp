// A server that drops the connection, at any statement of the methods: what is told, what is in the book, and how it
// goes on. Every statement is tried where KPTABLES_EVERY_STATEMENT is set, else a part of them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "corpus/Call.h"
#include "faults/SmallRows.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/LateBound.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/WatchedConnection.h"
#include "postgres/CuttingProxy.h"
#include "sqlite/TestBook.h"
#include "support/ScriptedHost.h"

namespace kpTables {
namespace {

using bookkeeping::WatchedConnection;
using test::CuttingProxy;

constexpr std::string_view kLost = "connection to the server failed";

bool IsTold(const std::string& failure) {
    return failure.find(kLost) != std::string::npos || failure.find("were lost") != std::string::npos;
}

/// Whoever asks is told yes.
class YesHost final : public test::DatedHost {
public:
    MessageAnswer MsgBox(const std::string&, MessageButtons buttons, const std::string&) override {
        return buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
    }
};

/// What a method answered, and what failed in it.
struct Done {
    std::string answer;
    bool changes = false;
    std::vector<std::string> failures;  ///< of statements, raised or trapped
};

std::string AnswerText(const Variant& answer) {
    if (const auto* object = answer.If<ObjectPtr>()) {
        auto* const rows = dynamic_cast<Recordset*>(object->get());
        return rows ? test::RowsOf(*rows) : "(object)";
    }
    return answer.IsNull() ? "Null" : Text(answer);
}

/// Calls a method by name as a host does that watches its statements.
Done CallOn(const BookPtr& book, const corpus::Call& call) {
    Done done;
    const auto watched = std::make_shared<WatchedConnection>(book, [&] { return book->RecordsAffected(); });
    watched->onSend = [&](const bookkeeping::SentStatement& sent) {
        const std::string head = sent.text.substr(0, 6);
        done.changes =
            done.changes || sent.op == bookkeeping::StatementOp::Open || (head != "Select" && head != "SELECT");
    };
    CTables tables(std::make_shared<YesHost>());
    tables.Cnn(watched);
    try {
        std::vector<Variant> arguments = call.arguments;
        done.answer = AnswerText(_CTables::Call(tables, call.method, arguments));
        book->FlushRows();
    } catch (const Error& error) {
        done.failures.push_back(error.Description());
    }
    for (const auto& failure : watched->Failures()) done.failures.push_back(failure.error.Description());
    return done;
}

class DroppedConnections : public testing::Test {
protected:
    DroppedConnections()
        : server_(std::getenv("KPTABLES_SERVER")),
          place_(directory_.Book("b")),
          proxy_(ServerFolder(), directory_.Path()) {
        NewBookOptions options;
        options.prepare = [](const BookPtr& book) {
            for (const std::string& statement : faults::SmallRows(*book)) book->Execute(statement);
        };
        CreateBook(place_, options);
        book_ = OpenThrough();
    }

    BookPtr OpenThrough(const BookOptions& options = {}) {
        std::string url = place_;
        return OpenBook(url.replace(url.find(ServerFolder()), ServerFolder().size(), directory_.Path().string()),
                        options);
    }

    std::string ServerFolder() const {
        const auto begin = server_.find("host=") + 5;
        return server_.substr(begin, server_.find('&', begin) - begin);
    }

    /// All rows of the book, as another program sees them.
    std::string Contents() const {
        const BookPtr other = OpenBook(place_);
        std::string all;
        for (const TableInfo& table : other->Tables()) {
            all += table.name + ": " + test::RowsOf(*other, "Select * From [" + table.name + "]") + "\n";
        }
        return all;
    }

    /// The connection works, and holds nothing that others wait for.
    void ExpectGoesOn() {
        EXPECT_EQ(test::ValueOf(*book_, "Select Count(*) From 仓库设置"), "5");
        BookOptions impatient;
        impatient.busyTimeout = std::chrono::milliseconds(2000);
        const BookPtr other = OpenBook(place_, impatient);
        EXPECT_NO_THROW(Transaction(*other).Commit());
    }

    /// A new connection to the server, on which nothing is prepared.
    void Renew() {
        proxy_.DropAll();
        EXPECT_EQ(test::ValueOf(*book_, "Select Count(*) From 仓库设置"), "5");
    }

    /// For each method, the first of the corpus's calls that succeeds here: one that changes the book if there is one.
    std::vector<std::pair<corpus::Call, Done>> Calls(bool changing) {
        std::vector<std::pair<corpus::Call, Done>> chosen;
        std::set<std::string> methods;
        for (const corpus::Case& each : corpus::Cases()) {
            const corpus::Call call = corpus::ParseCall(each.call);
            if (methods.contains(call.method)) continue;
            Done done = Undone(call);
            if (!done.failures.empty() || done.changes != changing) continue;
            methods.insert(call.method);
            chosen.emplace_back(call, std::move(done));
        }
        return chosen;
    }

    Done Undone(const corpus::Call& call) {
        const Transaction undone(*book_);
        return CallOn(book_, call);
    }

    /// How many messages a piece of work on a new connection sends.
    int CountMessages(const std::function<void()>& work) {
        Renew();
        proxy_.CutAt(0);
        work();
        return proxy_.Statements();
    }

    static bool TriesEvery() { return std::getenv("KPTABLES_EVERY_STATEMENT") != nullptr; }

    const std::string server_;
    const test::TemporaryDirectory directory_;
    const std::string place_;
    CuttingProxy proxy_;
    BookPtr book_;
};

TEST_F(DroppedConnections, WhileIdleAreMadeAnew) {
    const std::string before = test::RowsOf(*book_, "Select * From 商品设置 Where pdID=3");
    proxy_.DropAll();
    // A statement that was prepared on the connection before.
    EXPECT_EQ(test::RowsOf(*book_, "Select * From 商品设置 Where pdID=3"), before);
    proxy_.DropAll();
    book_->Execute("Update 商品设置 Set 商品名称='新' Where pdID=3");
    proxy_.DropAll();
    {
        Transaction transaction(*book_);
        book_->Execute("Update 商品设置 Set 商品名称='又新' Where pdID=5");
        transaction.Commit();
    }
    EXPECT_EQ(test::RowsOf(*book_, "Select 商品名称 From 商品设置 Where pdID In (3,5) Order by pdID"), "新 / 又新");
    BookOptions reading;
    reading.readOnly = true;
    const BookPtr reader = OpenThrough(reading);
    proxy_.DropAll();
    EXPECT_EQ(test::NumberOf([&] { reader->Execute("Update 商品设置 Set 商品名称='不可' Where pdID=3"); }),
              test::Code(DatabaseErrorNumber::NotPermitted));
}

TEST_F(DroppedConnections, ShowAChangeOfTheSchemaThatWasMadeMeanwhile) {
    EXPECT_EQ(book_->Execute("Select * From 仓库设置 Where dpID=1")->Fields("仓库名称").Value().IsNull(), false);
    proxy_.DropAll();
    OpenBook(place_)->Execute("Alter Table 仓库设置 Add Column 电话 Text(20)");
    EXPECT_TRUE(book_->Execute("Select * From 仓库设置 Where dpID=1")->Fields("电话").Value().IsNull());
}

TEST_F(DroppedConnections, EndATransactionThatNothingContinues) {
    const std::string before = Contents();
    book_->BeginTrans();
    book_->Execute("Update 商品设置 Set 商品名称='失' Where pdID=3");
    proxy_.DropAll();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(test::Refused([&] { book_->Execute("Select * From 商品设置"); }));
        EXPECT_TRUE(test::Refused([&] { book_->Execute("Update 商品设置 Set 商品名称='失' Where pdID=5"); }));
    }
    EXPECT_TRUE(test::Refused([&] { book_->CommitTrans(); }));
    book_->RollbackTrans();
    EXPECT_EQ(Contents(), before);
    ExpectGoesOn();
}

TEST_F(DroppedConnections, LoseRowsOfARecordsetAndSaySo) {
    const std::string before = Contents();
    const RecordsetPtr rows = book_->Open("商品设置", SourceKind::Table);
    rows->AddNew();
    rows->Fields("商品名称").SetValue("失");
    rows->Update();
    proxy_.DropAll();
    const auto error = test::Refused([&] { rows->Close(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(Contents(), before);
    ExpectGoesOn();
}

TEST_F(DroppedConnections, WhileAChangeIsSavedAreToldAsUncertain) {
    const std::string change = "Update 商品设置 Set 商品名称='存' Where pdID=3";
    book_->Execute(change);
    const int messages = CountMessages([&] { book_->Execute(change); });
    for (const auto cut : {CuttingProxy::Cut::Before, CuttingProxy::Cut::After}) {
        book_->Execute("Update 商品设置 Set 商品名称='旧' Where pdID=3");
        Renew();
        proxy_.CutAt(messages, cut);
        const auto error = test::Refused([&] { book_->Execute(change); });
        ASSERT_TRUE(error && proxy_.HasCut());
        EXPECT_NE(error->Description().find("while a change was being saved"), std::string::npos)
            << error->Description();
        EXPECT_EQ(test::ValueOf(*book_, "Select 商品名称 From 商品设置 Where pdID=3"),
                  cut == CuttingProxy::Cut::Before ? "旧" : "存");
        ExpectGoesOn();
    }
}

TEST_F(DroppedConnections, WhileATransactionIsSavedStayUncertainUntilItIsRolledBack) {
    const std::string uncertain = "it is not known whether it was";
    const auto refusal = [](const std::function<void()>& work) {
        const auto error = test::Refused(work);
        return error ? error->Description() : std::string("(none)");
    };
    for (const auto cut : {CuttingProxy::Cut::Before, CuttingProxy::Cut::After}) {
        book_->Execute("Update 商品设置 Set 商品名称='旧' Where pdID=3");
        Renew();
        book_->BeginTrans();
        book_->Execute("Update 商品设置 Set 商品名称='存' Where pdID=3");
        proxy_.CutAt(1, cut);
        EXPECT_NE(refusal([&] { book_->CommitTrans(); }).find("look whether it is in the book"), std::string::npos);
        ASSERT_TRUE(proxy_.HasCut());
        const RecordsetPtr rows = book_->Open("商品设置", SourceKind::Table);
        const std::vector<std::function<void()>> changes = {
            [&] { book_->Execute("Update 商品设置 Set 商品名称='又' Where pdID=3"); },
            [&] {
                rows->AddNew();
                rows->Fields("商品名称").SetValue("又");
                rows->Update();
            },
            [&] { book_->BeginTrans(); },
            [&] { book_->CommitTrans(); },
        };
        for (const auto& change : changes) EXPECT_NE(refusal(change).find(uncertain), std::string::npos);
        // To look is allowed, and answers nothing for the host.
        const std::string found = test::ValueOf(*book_, "Select 商品名称 From 商品设置 Where pdID=3");
        EXPECT_EQ(found, cut == CuttingProxy::Cut::Before ? "旧" : "存");
        EXPECT_NE(refusal(changes.front()).find(uncertain), std::string::npos);
        book_->RollbackTrans();
        EXPECT_EQ(test::ValueOf(*book_, "Select 商品名称 From 商品设置 Where pdID=3"), found);
        ExpectGoesOn();
        // The next loss is told as what it is.
        book_->BeginTrans();
        proxy_.DropAll();
        const std::string lost = refusal([&] { book_->Execute("Update 商品设置 Set 商品名称='又' Where pdID=3"); });
        EXPECT_NE(lost.find("nothing of the change was saved"), std::string::npos) << lost;
        book_->RollbackTrans();
    }
}

TEST_F(DroppedConnections, WhileRowsAreSavedAreToldAsUncertain) {
    const auto close = [&](const RecordsetPtr& rows) {
        rows->AddNew();
        rows->Fields("商品名称").SetValue("存");
        rows->Update();
    };
    const auto count = [&] { return test::ValueOf(*book_, "Select Count(*) From 商品设置 Where 商品名称='存'"); };
    RecordsetPtr rows = book_->Open("商品设置", SourceKind::Table);
    close(rows);
    proxy_.CutAt(1, CuttingProxy::Cut::After);
    // A recordset that is dropped cannot raise; the next statement does.
    rows = nullptr;
    const auto error = test::Refused([&] { book_->Execute("Update 商品设置 Set 商品名称='又' Where pdID=5"); });
    ASSERT_TRUE(error && proxy_.HasCut());
    EXPECT_NE(error->Description().find("look whether it is in the book"), std::string::npos) << error->Description();
    EXPECT_EQ(error->Description().find("not saved"), std::string::npos) << error->Description();
    EXPECT_EQ(count(), "1");
    ExpectGoesOn();
}

TEST_F(DroppedConnections, InATransactionLeaveTheBookAsItWas) {
    const std::string before = Contents();
    std::size_t cuts = 0;
    int offset = 0;
    for (const auto& [call, uncut] : Calls(true)) {
        const auto run = [&, &its = call] {
            book_->BeginTrans();
            CallOn(book_, its);
        };
        const int messages = CountMessages([&] {
            run();
            book_->RollbackTrans();
        });
        // The first message begins the transaction and is sent again. What is known of the tables need not be asked
        // again, so that there may be fewer: then the commit is lost.
        constexpr int kStep = 10;
        for (int at = 2 + (TriesEvery() ? 0 : offset++ % kStep); at <= messages; at += TriesEvery() ? 1 : kStep) {
            Renew();
            proxy_.CutAt(at);
            run();
            if (!proxy_.HasCut()) proxy_.CutAt(1);
            const auto error = test::Refused([&] { book_->CommitTrans(); });
            EXPECT_TRUE(error && proxy_.HasCut()) << call.method << " at " << at << " of " << messages;
            EXPECT_NO_THROW(book_->RollbackTrans()) << call.method << " at " << at;
            ++cuts;
        }
        EXPECT_TRUE(Contents() == before) << call.method;
    }
    EXPECT_GT(cuts, 50U);
    ExpectGoesOn();
}

TEST_F(DroppedConnections, OutsideATransactionAreToldOrMadeAnew) {
    std::size_t told = 0;
    int offset = 0;
    for (const auto& [call, uncut] : Calls(true)) {
        const int messages = CountMessages([&, &its = call] { Undone(its); });
        constexpr int kStep = 11;
        for (int at = 1 + (TriesEvery() ? 0 : offset++ % kStep); at <= messages; at += TriesEvery() ? 1 : kStep) {
            // What earlier calls have left may not suit this one.
            if (!Undone(call).failures.empty()) continue;
            Renew();
            proxy_.CutAt(at);
            const Done done = CallOn(book_, call);
            const bool hasCut = proxy_.HasCut();
            proxy_.CutAt(0);
            EXPECT_EQ(test::NumberOf([&] { book_->RollbackTrans(); }), test::Code(DatabaseErrorNumber::Failure));
            if (!hasCut) continue;
            ExpectGoesOn();
            if (done.failures.empty()) continue;
            ++told;
            EXPECT_TRUE(IsTold(done.failures.front())) << call.method << " at " << at << ": " << done.failures.front();
        }
    }
    EXPECT_GT(told, 5U);
}

TEST_F(DroppedConnections, DoNotShowInWhatIsOnlyRead) {
    std::size_t cuts = 0;
    for (const auto& [call, uncut] : Calls(false)) {
        const int messages = CountMessages([&, &its = call] { CallOn(book_, its); });
        for (int at = 1; at <= messages; at += TriesEvery() ? 1 : 4) {
            Renew();
            proxy_.CutAt(at, at % 2 == 0 ? CuttingProxy::Cut::Before : CuttingProxy::Cut::After);
            const Done done = CallOn(book_, call);
            cuts += proxy_.HasCut() ? 1 : 0;
            proxy_.CutAt(0);
            EXPECT_TRUE(done.failures.empty())
                << call.method << " at " << at << ": " << (done.failures.empty() ? "" : done.failures.front());
            EXPECT_EQ(done.answer, uncut.answer) << call.method << " at " << at << " of " << messages;
        }
    }
    EXPECT_GT(cuts, 50U);
}

}  // namespace
}  // namespace kpTables
