#include "kpbook/batch/BatchCommand.h"

#include <new>
#include <utility>

#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpTables/Script.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Interruption.h"
#include "kpbook/Memory.h"
#include "kpbook/Names.h"
#include "kpbook/PastedValues.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/batch/BatchAnswer.h"
#include "kpbook/batch/BatchRequest.h"
#include "kpbook/input/InputFile.h"
#include "kpbook/input/LineReader.h"
#include "kpbook/output/JsonText.h"
#include "kpbook/output/Output.h"

namespace kpTables::kpbook::batch {

namespace {

/// A single statement that goes through the connection's own methods, which know how many transactions are open.
bool IsOfTransaction(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == text.npos || std::string_view("bBcCrR").find(text[first]) == std::string_view::npos) return false;
    text.remove_prefix(first);
    const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n;"));
    const bool begins = SameName(word, "BEGIN") || SameName(word, "COMMIT") || SameName(word, "ROLLBACK");
    return begins && SplitScript(text).size() == 1;
}

class BatchRunner : private __CTables {
public:
    BatchRunner(const BatchOptions& options, const GlobalOptions& global)
        : global_(global),
          clean_(options.clean),
          host_(std::make_shared<BatchHost>()),
          workspace_(options.book, host_, global) {
        // Programs read what follows: it is the same in every language.
        SetTranslator(nullptr);
        workspace_.tables.Advise(*this);
        auto trace = workspace_.connection->onSend;
        workspace_.connection->onSend = [this, trace](const bookkeeping::SentStatement& sent) {
            outcome_.sent.push_back(sent);
            if (trace) trace(sent);
        };
    }

    std::string AnswerTo(std::string_view line, std::int64_t lineNumber) {
        outcome_ = {};
        host_->messages.clear();
        BatchRequest request;
        if (Attempt([&] { Read(line, lineNumber, request); })) {
            Attempt([&] { output::AppendJsonValue(outcome_.result, Run(request)); });
            if (request.method) Attempt([&] { outcome_.arguments = ListText(request.arguments); });
        } else if (IsMemoryShort() && line.find("\"begin\"") != line.npos) {
            // It may have begun a transaction: what follows is not run without one.
            refusing_ = true;
        }
        // The part of the result that was written before the error.
        if (outcome_.error) outcome_.result.clear();
        outcome_.messages = std::move(host_->messages);
        outcome_.failed = workspace_.TakeIncidents();
        if (outcome_.error) RemoveTold(outcome_.failed, *outcome_.error);
        if (request.step == TransactionStep::Begin && !outcome_.error && !outcome_.failed.empty()) UndoBegin();
        return AnswerLine(request, outcome_);
    }

    /// Undoes what a transaction that is still open has changed; false when there is none.
    bool RollBackRest() {
        if (workspace_.connection->Level() == 0) return false;
        TellLine("kpbook: the batch ended inside a transaction, which is rolled back");
        while (workspace_.connection->Level() > 0) workspace_.connection->RollbackTrans();
        return true;
    }

private:
    void TableChanged(const std::string& procName, const std::string& tableName, std::int32_t id) override {
        outcome_.events.push_back({"TableChanged", {Variant(procName), Variant(tableName), Variant(id)}});
    }

    /// Runs an action; false when it failed. The first error of a line is kept.
    template <class Action>
    bool Attempt(Action action) {
        try {
            action();
            return true;
        } catch (const Error& raised) {
            if (!outcome_.error) outcome_.error = raised;
        } catch (const std::bad_alloc&) {
            if (!outcome_.error) outcome_.error = MemoryError();
        } catch (const std::exception& raised) {
            if (!outcome_.error) outcome_.error = Error(static_cast<int>(ErrorNumber::InvalidCall), raised.what());
        }
        return false;
    }

    static void Read(std::string_view line, std::int64_t lineNumber, BatchRequest& request) {
        try {
            ReadRequest(line, request);
        } catch (const Error& error) {
            throw Error(error.Number(), "line " + std::to_string(lineNumber) + ": " + error.Description());
        }
    }

    Variant Run(BatchRequest& request) {
        host_->today = request.today ? request.today : global_.today;
        host_->answer = request.answer ? request.answer : global_.answer;
        if (request.step) return Step(*request.step);
        if (refusing_) {
            throw Error(static_cast<int>(ErrorNumber::InvalidCall),
                        "The transaction did not begin; its lines are not run");
        }
        if (request.execute) {
            const auto recordset = Execute(request);
            if (!recordset) workspace_.Log("执行 " + *request.execute);
            return recordset ? Variant(recordset) : Variant(nullptr);
        }
        if (const auto* member = _CTables::Find(*request.method)) {
            if (const auto fault = clean_ ? QuoteFault(*member, request.arguments) : ""; !fault.empty()) {
                throw Error(static_cast<int>(ErrorNumber::InvalidCall), fault);
            }
            HideSecrets(*member, request.arguments, *global_.incidents);
        }
        Variant result = request.isSQL ? RunInDialect(*request.isSQL, request)
                                       : CallMember(workspace_.tables, *request.method, request.arguments);
        workspace_.LogCall(*request.method);
        return result;
    }

    /// What tells of a failure is not taken for the beginning of a transaction.
    void UndoBegin() {
        Attempt([&] { workspace_.connection->RollbackTrans(); });
        refusing_ = true;
        outcome_.result.clear();
        outcome_.error = outcome_.failed.front().error;
        outcome_.failed.erase(outcome_.failed.begin());
    }

    /// Answers with the level of nesting after the step, as BeginTrans counts it.
    Variant Step(TransactionStep step) {
        const bool wasRefusing = std::exchange(refusing_, step == TransactionStep::Begin);
        if (wasRefusing && !refusing_) {
            throw Error(static_cast<int>(ErrorNumber::InvalidCall), "The transaction did not begin");
        }
        switch (step) {
            case TransactionStep::Begin:
                workspace_.connection->BeginTrans();
                refusing_ = false;
                break;
            case TransactionStep::Commit:
                workspace_.connection->CommitTrans();
                break;
            default:
                workspace_.connection->RollbackTrans();
        }
        return workspace_.connection->Level();
    }

    /// The host's own statements, in the dialect of their line.
    RecordsetPtr Execute(const BatchRequest& request) {
        Connection& connection = *workspace_.connection;
        struct Restore {
            Connection& connection;
            SqlDialect dialect;
            ~Restore() { connection.Dialect(dialect); }
        };
        const Restore restore{connection, connection.Dialect()};
        if (request.isSQL) connection.Dialect(DialectOf(*request.isSQL));
        // What is pasted into a statement can begin no second one unless the line asks for several.
        if (!request.several && !IsOfTransaction(*request.execute))
            return connection.Execute(*request.execute, request.values);
        try {
            return ExecuteScript(connection, *request.execute, request.values);
        } catch (const DatabaseError&) {
            // It is told as the line's error, with its place in the whole text.
            workspace_.connection->ForgetFailures();
            throw;
        }
    }

    /// The dialect of a line applies to its call only, unless the call sets the property itself.
    Variant RunInDialect(bool isSQL, BatchRequest& request) {
        struct Restore {
            CTables& tables;
            bool isSQL;
            ~Restore() { tables.isSQL(isSQL); }
        };
        if (SameName(*request.method, "isSQL") && !request.arguments.empty()) {
            return CallMember(workspace_.tables, *request.method, request.arguments);
        }
        const Restore restore{workspace_.tables, workspace_.tables.isSQL()};
        workspace_.tables.isSQL(isSQL);
        return CallMember(workspace_.tables, *request.method, request.arguments);
    }

    const GlobalOptions& global_;
    bool clean_;
    bool refusing_ = false;  ///< after a transaction that did not begin, until its end
    std::shared_ptr<BatchHost> host_;
    BatchOutcome outcome_;
    Workspace workspace_;
};

}  // namespace

int RunBatch(const BatchOptions& options, const GlobalOptions& global) {
    BatchRunner runner(options, global);
    input::InputFile file(options.path);
    input::LineReader lines(file);
    output::Output output("");
    try {
        while (const auto line = lines.Next()) {
            ThrowIfInterrupted();
            if (line->find_first_not_of(" \t\r") == line->npos) continue;
            output.Write(runner.AnswerTo(*line, lines.Number()));
            output.Flush();
        }
    } catch (...) {
        runner.RollBackRest();
        throw;
    }
    return runner.RollBackRest() ? kFailed : kSucceeded;
}

}  // namespace kpTables::kpbook::batch
