// A connection to the schema of one book. Every result of libpq is checked here.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engines/postgres/Library.h"
#include "engines/postgres/Parameters.h"
#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

/// Rows that the server has answered with, in binary form unless a plain text was run.
class Result {
public:
    explicit Result(PGresult* result = nullptr) noexcept : result_(result) {}

    int Rows() const { return LoadedLibrary().Rows(Get()); }
    int Columns() const { return LoadedLibrary().Columns(Get()); }
    Oid TypeOf(int column) const { return LoadedLibrary().ColumnType(Get(), column); }
    bool IsNull(int row, int column) const { return LoadedLibrary().IsNull(Get(), row, column) != 0; }
    /// The value's bytes, valid as long as the result.
    std::string_view Value(int row, int column) const;
    /// The same; no data for Null.
    std::string_view ValueOrNull(int row, int column) const;
    /// A number in its written form.
    std::int64_t Integer(int row, int column) const;
    std::int64_t AffectedRows() const;

    PGresult* Get() const noexcept { return result_.get(); }
    explicit operator bool() const noexcept { return result_ != nullptr; }

private:
    struct Clear {
        void operator()(PGresult* result) const noexcept { LoadedLibrary().Clear(result); }
    };
    std::unique_ptr<PGresult, Clear> result_;
};

/// Receives a query's rows, one at a time.
using RowSink = std::function<void(const Result& rows, int row)>;

/// How a query's answer is read.
enum class Reading {
    RowByRow,  ///< as the rows come, so that a large result is not held twice
    AtOnce,    ///< which is faster for a row or none
};

/// Rows that are gathered to be sent together.
class PendingRows {
public:
    virtual ~PendingRows() = default;
    /// Sends them. Raises the DatabaseError of one that the server refuses.
    virtual void Send() = 0;
    virtual void Drop() noexcept = 0;

protected:
    PendingRows() = default;
    PendingRows(const PendingRows&) = default;
    PendingRows& operator=(const PendingRows&) = default;
};

/// Whether other programs have changed the book. Whoever changes it locks the row of kp_book, where the server keeps
/// the number of the transaction that did so last.
class OtherPrograms {
public:
    /// How many times others are known to have changed it.
    std::int64_t Count() const noexcept { return count_; }
    /// Rows were read; oldest: the transaction that was under way longest then. What one of those has changed was not
    /// seen, so that the number is not to be found again.
    void Read(std::uint32_t last, std::uint32_t oldest) noexcept {
        Saw(last);
        // Numbers come round.
        const bool mayBeUnderWay = last != 0 && static_cast<std::int32_t>(last - oldest) >= 0;
        if (mayBeUnderWay && last != own_) last_ = kUnknown;
    }
    /// A change of this connection's own begins, in that transaction; last: the one before it.
    void Began(std::int64_t last, std::int64_t own) noexcept {
        Saw(last);
        last_ = own_ = own;
    }

private:
    static constexpr std::int64_t kUnknown = -1;

    void Saw(std::int64_t last) noexcept {
        count_ += last != last_;
        last_ = last;
    }

    std::int64_t last_ = kUnknown;
    std::int64_t own_ = kUnknown;
    std::int64_t count_ = 0;
};

/// A prepared statement with its values.
struct Command {
    std::string name;
    Parameters parameters;
};

/// The server wants a password that it was not given.
class PasswordNeeded : public DatabaseError {
public:
    using DatabaseError::DatabaseError;
};

/// A connection that the server has dropped is made anew by the next statement, unless a transaction was lost with it:
/// then every statement is an error until AcceptLoss.
class Database {
public:
    /// Raises a DatabaseError when the server cannot be reached or refuses the user. interrupted: see BookOptions.
    Database(std::string connection, std::function<bool()> interrupted);
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Runs statements that every connection to this server begins with, this one and those made anew.
    void SetUp(std::string_view text);
    /// Runs statements separated by semicolons; the last one's result, with its values as texts.
    Result Run(std::string_view text, std::string_view shown = {});
    /// Runs one that the server takes by itself only, outside a transaction.
    void RunAlone(std::string_view text);
    /// One statement with parameters, its values as texts.
    Result Ask(std::string_view text, const Parameters& parameters);

    /// Prepares a statement, also on connections made anew; its name.
    std::string Prepare(std::string_view text, std::string_view shown);
    /// Runs a prepared statement that answers with no rows, or with few: its values in binary form.
    Result RunPrepared(const std::string& name, const Parameters& parameters, std::string_view shown);
    /// Passes each row on; the values in binary form.
    void ReadPrepared(const std::string& name, const Parameters& parameters, std::string_view shown,
                      const RowSink& sink, Reading reading = Reading::RowByRow);
    /// Runs prepared statements in one round trip; their results. None runs behind one that fails, whose error it
    /// raises.
    std::vector<Result> RunTogether(const std::vector<Command>& commands, std::string_view shown);
    /// Runs COPY ... FROM STDIN (FORMAT binary), in two round trips; rows: as it takes them, without header and
    /// trailer. The number of rows added.
    std::int64_t CopyRows(std::string_view copy, std::string_view rows);
    /// Frees a prepared statement at the next occasion.
    void Forget(std::string name) { forgotten_.push_back(std::move(name)); }

    /// A failed statement ends the server's transaction. Runs the work behind a savepoint, so that only what failed is
    /// undone. Outside a transaction the work must be one that only reads: see Repeated.
    template <class Work>
    auto Guarded(const Work& work) {
        SendPending();
        if (!InTransaction()) return Repeated(work);
        savepointDue_ = true;
        try {
            return work();
        } catch (...) {
            ReturnToSavepoint();
            throw;
        }
    }
    /// Runs work that changes nothing, and once more on a new connection if the server drops this one meanwhile.
    template <class Work>
    auto Repeated(const Work& work) {
        const int before = attempts_;
        try {
            return work();
        } catch (const DatabaseError&) {
            if (IsConnected() || HasLostTransaction() || attempts_ != before) throw;
        }
        return work();
    }
    /// Saves the open transaction; not to be interrupted. Raises an UncertainSave when the connection is lost
    /// meanwhile.
    void Commit();
    /// Whether a transaction was lost with the connection.
    bool HasLostTransaction() const noexcept { return inTransaction_ && !IsConnected(); }
    /// The owner of the transaction knows that it is over.
    void AcceptLoss() noexcept { inTransaction_ = false; }

    /// Ends the savepoint of the last guarded statement: before a level begins or ends.
    void DropSavepoint();
    /// It has ended with its transaction or level.
    void ForgetSavepoint() noexcept { hasSavepoint_ = false; }

    /// Sends rows before the next statement; those of another sender are sent first.
    void Pend(PendingRows& rows);
    void SendPending();
    void DropPending() noexcept;
    /// These rows are not to be sent any more.
    void Withdraw(const PendingRows& rows) noexcept {
        if (pending_ == &rows) pending_ = nullptr;
    }
    /// How many statements have been sent or gathered so far.
    std::int64_t Statements() const noexcept { return statements_; }

    OtherPrograms others;
    /// The next query is to be asked for them, too.
    void LookForOthers() noexcept { looksForOthers_ = true; }
    bool TakeLookForOthers() noexcept { return std::exchange(looksForOthers_, false); }

    /// A user's password as the server keeps it, so that it is sent and logged in no other form.
    std::string EncryptedPassword(const std::string& password, const std::string& user) const;

    /// How often the server has told so far that a program has changed the book's schema.
    int SchemaChanges() noexcept;

    bool InTransaction() const noexcept;
    bool IsConnected() const noexcept;
    /// Whether a pooler stands between this program and the server. Statements then run on the server's connection that
    /// was set up, or are refused.
    bool IsPooled() const noexcept { return !guard_.empty(); }
    /// A connection like this one, not set up; it is dropped when an answer has not come by that time.
    std::unique_ptr<Database> Another(std::chrono::steady_clock::time_point answerBy) const;
    /// Nothing is interrupted while it is false.
    void Interruptible(bool is) noexcept { interruptible_ = is; }

private:
    struct Finish {
        void operator()(PGconn* connection) const noexcept { LoadedLibrary().Finish(connection); }
    };

    /// What goes to the server in one round trip.
    class Exchange;

    /// What a statement's name stands for, and the connection on which it was prepared last.
    struct Prepared {
        std::string text;
        int connection = 0;
    };

    /// Raises a DatabaseError when the server cannot be reached.
    void Connect();
    /// Connects again. A server gets the time to start, or another to take its place; once it has not come, later
    /// statements only try.
    void Reconnect();
    bool HasHungUp() const noexcept;
    /// Runs the statements that a connection begins with.
    void Settle();
    /// Before a statement is sent.
    void BeReady(std::string_view shown);
    /// Sends a prepared statement and reads its answer.
    Result RunHere(const std::string& name, const Parameters& parameters, std::string_view shown, const RowSink& sink,
                   Reading reading);
    /// Prepares a statement on this connection if that is still to be done.
    void PrepareHere(const std::string& name, std::string_view shown);

    /// Runs statements on the connection as it is.
    Result RunHere(std::string_view text, std::string_view shown);
    void ReturnToSavepoint() noexcept;
    /// What goes before a statement: the guard, or what sets the savepoint that is due.
    std::vector<const char*> TakeStatementsBefore();
    /// A text of several statements, of which those are the first.
    std::string BehindWhatComesBefore(std::string_view text);
    void Sent(int success, std::string_view shown) const;
    /// The host's answer.
    bool IsToEnd() const noexcept;
    /// The next result, null after the last one. Asks the host meanwhile whether to go on.
    Result Next(std::string_view shown);
    void Cancel() const noexcept;
    /// Once for what is on its way.
    void CancelIfItIsToEnd() noexcept;
    [[noreturn]] void RaiseUnreached() const;
    [[noreturn]] void RaiseLost(std::string_view shown) const;
    [[noreturn]] void RaiseLost(std::string_view shown, const std::string& reason) const;
    /// failed: the server's last words.
    [[noreturn]] void RaiseEnded(const Result& failed, std::string_view shown);
    [[noreturn]] void RaiseError(const Result& failed, std::string_view shown) const;

    std::string address_;  ///< for libpq
    std::unique_ptr<PGconn, Finish> connection_;
    std::function<bool()> interrupted_;
    std::string setUp_;
    std::string guard_;  ///< behind a pooler: a statement that fails where the connection was not set up
    std::chrono::steady_clock::time_point answerBy_ = std::chrono::steady_clock::time_point::max();
    bool interruptible_ = true;
    bool isCancelled_ = false;  ///< what is on its way, because the host said so
    bool hasSavepoint_ = false;
    bool savepointDue_ = false;  ///< it goes along with the next statement
    bool looksForOthers_ = false;
    PendingRows* pending_ = nullptr;
    std::int64_t statements_ = 0;
    bool inTransaction_ = false;  ///< as the server last said
    bool hasGivenUp_ = false;     ///< the server did not come back
    bool isSaving_ = false;       ///< a commit is under way
    int attempts_ = 0;            ///< to connect again
    int connections_ = 0;         ///< set up so far
    int prepared_ = 0;
    int schemaChanges_ = 0;
    std::unordered_map<std::string, Prepared> preparedTexts_;
    std::vector<std::string> forgotten_;
};

}  // namespace kpTables::engines::postgres
