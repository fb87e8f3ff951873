#include "engines/postgres/Database.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <initializer_list>
#include <utility>

#include "engines/postgres/Failure.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "platform/Socket.h"

namespace kpTables::engines::postgres {

namespace {

/// What the server or its client library said first; advice for the server's keeper may follow it.
std::string FirstLine(const char* message) {
    const std::string text(message ? message : "");
    return text.substr(0, text.find('\n'));
}

std::string Field(const Result& result, int code) {
    const char* const text = LoadedLibrary().ResultErrorField(result.Get(), code);
    return text ? text : "";
}

/// Whether the server, or a pooler before it, ends the connection.
bool AreLastWords(const Result& failed) {
    const std::string state = Field(failed, PG_DIAG_SQLSTATE);
    return state.starts_with("57P0") || state.starts_with("08");
}

constexpr int kTexts = 0;
constexpr int kBinary = 1;

}  // namespace

std::string_view Result::Value(int row, int column) const {
    const Library& library = LoadedLibrary();
    return {library.Value(Get(), row, column), static_cast<std::size_t>(library.Length(Get(), row, column))};
}

std::string_view Result::ValueOrNull(int row, int column) const {
    const Library& library = LoadedLibrary();
    PGresult* const result = Get();
    const auto length = static_cast<std::size_t>(library.Length(result, row, column));
    if (length == 0 && library.IsNull(result, row, column) != 0) return {};
    return {library.Value(result, row, column), length};
}

std::int64_t Result::Integer(int row, int column) const {
    const std::string_view text = Value(row, column);
    std::int64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::int64_t Result::AffectedRows() const {
    const std::string_view text = LoadedLibrary().AffectedRows(Get());
    std::int64_t rows = 0;
    std::from_chars(text.data(), text.data() + text.size(), rows);
    return rows;
}

Database::Database(std::string connection, std::function<bool()> interrupted)
    : address_(std::move(connection)), interrupted_(std::move(interrupted)) {
    Connect();
}

/// Opens a pipeline when the statement does not go alone, and ends it however the statement ends.
class Database::Exchange {
public:
    enum class Way {
        Text,      ///< statements of one text, which has what must come before them
        Alone,     ///< one statement
        Together,  ///< several
    };

    Exchange(Database& database, std::string_view shown, Way way) : database_(database), shown_(shown) {
        ++database_.statements_;
        database_.isCancelled_ = false;
        if (way == Way::Text) return;
        const std::vector<const char*> before = database.TakeStatementsBefore();
        isPipeline_ = way == Way::Together || !before.empty();
        if (!isPipeline_) return;
        Check(Library().EnterPipelineMode(Connection()));
        for (const char* text : before) {
            Add(Library().SendQueryParams(Connection(), text, 0, nullptr, nullptr, nullptr, nullptr, kTexts));
        }
        leading_ = statements_;
    }
    ~Exchange() {
        // After a lost connection there is nothing left to end.
        if (isPipeline_) Library().ExitPipelineMode(Connection());
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    static const postgres::Library& Library() { return LoadedLibrary(); }
    PGconn* Connection() const noexcept { return database_.connection_.get(); }

    /// A statement is on its way.
    void Add(int success) {
        Check(success);
        ++statements_;
    }
    /// What a COPY among the statements is to read.
    void Feed(std::initializer_list<std::string_view> bytes) { fed_ = bytes; }
    /// The last result of each statement, without those before the caller's; the rows of the last statement go to the
    /// sink. Raises the first error.
    std::vector<Result> Finish(const RowSink& sink = {}, Reading reading = Reading::RowByRow) {
        if (isPipeline_) Check(Library().PipelineSync(Connection()));
        std::vector<Result> results;
        for (int i = 0; i < statements_; ++i) {
            const bool toSink = sink && i + 1 == statements_;
            if (toSink && reading == Reading::RowByRow) Library().SetSingleRowMode(Connection());
            results.push_back(ReadOne(toSink ? sink : RowSink()));
        }
        if (failed_ && AreLastWords(failed_)) database_.RaiseEnded(failed_, shown_);
        if (isPipeline_) database_.Next(shown_);  // that all of them have ended
        if (database_.IsConnected()) database_.inTransaction_ = database_.InTransaction();
        if (raised_) std::rethrow_exception(raised_);
        if (failed_) database_.RaiseError(failed_, shown_);
        if (results.empty() || !results.back()) database_.RaiseLost(shown_);
        results.erase(results.begin(), results.begin() + leading_);
        return results;
    }

private:
    void Check(int success) const { database_.Sent(success, shown_); }

    Result ReadOne(const RowSink& sink) {
        Result last;
        bool isSingle = false;
        for (Result result = database_.Next(shown_); result; result = database_.Next(shown_)) {
            switch (Library().ResultStatus(result.Get())) {
                case PGRES_SINGLE_TUPLE:
                    // libpq may still be in the mode of the statement before the pipeline.
                    isSingle = !sink;
                    isSingle ? void(last = std::move(result)) : Pass(result, sink);
                    break;
                case PGRES_COMMAND_OK:
                case PGRES_TUPLES_OK:
                case PGRES_EMPTY_QUERY:
                    if (std::exchange(isSingle, false)) break;
                    // None, where they have come one by one.
                    if (sink) Pass(result, sink);
                    last = std::move(result);
                    break;
                case PGRES_COPY_IN:
                    SendFed();
                    break;
                case PGRES_PIPELINE_ABORTED:
                    break;
                default:
                    if (!failed_) failed_ = std::move(result);
            }
        }
        return last;
    }

    /// In pieces, since libpq keeps a copy of each.
    void SendFed() {
        constexpr std::size_t kPiece = std::size_t{1} << 16;
        for (std::string_view bytes : fed_) {
            for (; !bytes.empty(); bytes.remove_prefix(std::min(kPiece, bytes.size()))) {
                const std::string_view piece = bytes.substr(0, kPiece);
                Check(Library().PutCopyData(Connection(), piece.data(), static_cast<int>(piece.size())) > 0);
            }
        }
        Check(Library().PutCopyEnd(Connection(), nullptr) > 0);
    }

    void Pass(const Result& rows, const RowSink& sink) {
        constexpr std::int64_t kBetweenQuestions = 4096;
        if (failed_ || raised_) return;
        // While rows come, nobody waits.
        if (++passed_ % kBetweenQuestions == 0) database_.CancelIfItIsToEnd();
        try {
            for (int row = 0; row < rows.Rows(); ++row) sink(rows, row);
        } catch (...) {
            raised_ = std::current_exception();
            database_.Cancel();
        }
    }

    Database& database_;
    std::string_view shown_;
    bool isPipeline_ = false;
    int leading_ = 0;  ///< statements before the caller's
    int statements_ = 0;
    std::vector<std::string_view> fed_;
    std::int64_t passed_ = 0;  ///< answers that went to the sink
    Result failed_;
    std::exception_ptr raised_;
};

Result Database::Run(std::string_view text, std::string_view shown) {
    SendPending();
    const std::string_view told = shown.empty() ? text : shown;
    BeReady(told);
    return RunHere(text, told);
}

void Database::RunAlone(std::string_view text) {
    SendPending();
    BeReady(text);
    Exchange exchange(*this, text, Exchange::Way::Text);
    exchange.Add(LoadedLibrary().SendQuery(connection_.get(), std::string(text).c_str()));
    exchange.Finish();
}

Result Database::RunHere(std::string_view text, std::string_view shown) {
    const std::string all = BehindWhatComesBefore(text);
    Exchange exchange(*this, shown, Exchange::Way::Text);
    exchange.Add(LoadedLibrary().SendQuery(connection_.get(), all.c_str()));
    return std::move(exchange.Finish().back());
}

std::int64_t Database::CopyRows(std::string_view copy, std::string_view rows) {
    using namespace std::string_view_literals;
    BeReady(copy);
    const std::string all = BehindWhatComesBefore(copy);
    Exchange exchange(*this, copy, Exchange::Way::Text);
    exchange.Feed({"PGCOPY\n\377\r\n\0\0\0\0\0\0\0\0\0"sv, rows, "\377\377"sv});
    exchange.Add(LoadedLibrary().SendQuery(connection_.get(), all.c_str()));
    return exchange.Finish().back().AffectedRows();
}

Result Database::Ask(std::string_view text, const Parameters& parameters) {
    SendPending();
    BeReady(text);
    Exchange exchange(*this, text, Exchange::Way::Alone);
    exchange.Add(LoadedLibrary().SendQueryParams(connection_.get(), std::string(text).c_str(), parameters.Count(),
                                                 nullptr, parameters.Values(), parameters.Lengths(),
                                                 parameters.Formats(), kTexts));
    return std::move(exchange.Finish().back());
}

std::string Database::Prepare(std::string_view text, std::string_view shown) {
    SendPending();
    BeReady(shown);
    std::string freed;
    for (const std::string& name : std::exchange(forgotten_, {})) {
        const auto known = preparedTexts_.extract(name);
        if (!known.empty() && known.mapped().connection == connections_) freed += "DEALLOCATE " + name + ";";
    }
    if (!freed.empty()) Run(freed);
    std::string name = "kp" + std::to_string(++prepared_);
    const auto known = preparedTexts_.insert_or_assign(name, Prepared{std::string(text)}).first;
    try {
        PrepareHere(name, shown);
    } catch (...) {
        preparedTexts_.erase(known);
        throw;
    }
    return name;
}

void Database::PrepareHere(const std::string& name, std::string_view shown) {
    Prepared& statement = preparedTexts_.at(name);
    if (statement.connection == connections_) return;
    Exchange exchange(*this, shown, Exchange::Way::Alone);
    exchange.Add(LoadedLibrary().SendPrepare(connection_.get(), name.c_str(), statement.text.c_str(), 0, nullptr));
    exchange.Finish();
    statement.connection = connections_;
}

Result Database::RunPrepared(const std::string& name, const Parameters& parameters, std::string_view shown) {
    return RunHere(name, parameters, shown, {}, Reading::AtOnce);
}

void Database::ReadPrepared(const std::string& name, const Parameters& parameters, std::string_view shown,
                            const RowSink& sink, Reading reading) {
    RunHere(name, parameters, shown, sink, reading);
}

Result Database::RunHere(const std::string& name, const Parameters& parameters, std::string_view shown,
                         const RowSink& sink, Reading reading) {
    SendPending();
    BeReady(shown);
    PrepareHere(name, shown);
    Exchange exchange(*this, shown, Exchange::Way::Alone);
    exchange.Add(LoadedLibrary().SendQueryPrepared(connection_.get(), name.c_str(), parameters.Count(),
                                                   parameters.Values(), parameters.Lengths(), parameters.Formats(),
                                                   kBinary));
    return std::move(exchange.Finish(sink, reading).back());
}

std::vector<Result> Database::RunTogether(const std::vector<Command>& commands, std::string_view shown) {
    BeReady(shown);
    for (const Command& command : commands) PrepareHere(command.name, shown);
    Exchange exchange(*this, shown, Exchange::Way::Together);
    for (const auto& [name, parameters] : commands) {
        exchange.Add(LoadedLibrary().SendQueryPrepared(connection_.get(), name.c_str(), parameters.Count(),
                                                       parameters.Values(), parameters.Lengths(), parameters.Formats(),
                                                       kBinary));
    }
    return exchange.Finish();
}

void Database::Pend(PendingRows& rows) {
    if (pending_ == &rows) return;
    SendPending();
    pending_ = &rows;
    ++statements_;
}

void Database::SendPending() {
    if (PendingRows* const rows = std::exchange(pending_, nullptr)) rows->Send();
}

void Database::DropPending() noexcept {
    if (PendingRows* const rows = std::exchange(pending_, nullptr)) rows->Drop();
}

int Database::SchemaChanges() noexcept {
    const Library& library = LoadedLibrary();
    while (PGnotify* const told = library.Notifies(connection_.get())) {
        ++schemaChanges_;
        library.FreeMemory(told);
    }
    return schemaChanges_;
}

bool Database::InTransaction() const noexcept {
    const auto status = LoadedLibrary().TransactionStatus(connection_.get());
    return status == PQTRANS_INTRANS || status == PQTRANS_INERROR || status == PQTRANS_ACTIVE;
}

bool Database::IsConnected() const noexcept { return LoadedLibrary().Status(connection_.get()) == CONNECTION_OK; }

std::string Database::BehindWhatComesBefore(std::string_view text) {
    std::string all;
    for (const char* before : TakeStatementsBefore()) all.append(before).append("; ");
    return all.append(text);
}

std::vector<const char*> Database::TakeStatementsBefore() {
    // A pooler leaves a transaction where it is.
    if (!guard_.empty() && !InTransaction()) return {guard_.c_str()};
    if (!std::exchange(savepointDue_, false)) return {};
    if (std::exchange(hasSavepoint_, true)) return {"RELEASE kp_statement", "SAVEPOINT kp_statement"};
    return {"SAVEPOINT kp_statement"};
}

void Database::ReturnToSavepoint() noexcept {
    // What has failed before anything was sent leaves nothing to undo.
    if (std::exchange(savepointDue_, false)) return;
    try {
        Run("ROLLBACK TO kp_statement");
    } catch (const DatabaseError&) {
        // The connection is lost, and with it the transaction.
        hasSavepoint_ = false;
    }
}

void Database::DropSavepoint() {
    SendPending();
    if (std::exchange(hasSavepoint_, false) && InTransaction()) Run("RELEASE kp_statement");
}

void Database::Sent(int success, std::string_view shown) const {
    if (success == 0) RaiseLost(shown);
}

bool Database::IsToEnd() const noexcept {
    try {
        return interruptible_ && interrupted_ && interrupted_();
    } catch (...) {
        return true;
    }
}

void Database::CancelIfItIsToEnd() noexcept {
    if (isCancelled_ || !IsToEnd()) return;
    isCancelled_ = true;
    Cancel();
}

Result Database::Next(std::string_view shown) {
    constexpr int kBetweenQuestions = 100;  // milliseconds
    const Library& library = LoadedLibrary();
    library.Flush(connection_.get());
    while (library.IsBusy(connection_.get()) != 0) {
        const bool isReady = platform::WaitForSocket(library.Socket(connection_.get()), kBetweenQuestions);
        if (!isReady) CancelIfItIsToEnd();
        if (library.ConsumeInput(connection_.get()) == 0) RaiseLost(shown);
        if (std::chrono::steady_clock::now() >= answerBy_) {
            connection_.reset();
            RaiseLost(shown, Message("there was no answer"));
        }
    }
    return Result(library.GetResult(connection_.get()));
}

void Database::Cancel() const noexcept {
    const Library& library = LoadedLibrary();
    constexpr std::size_t kMessage = 256;
    std::array<char, kMessage> message{};
    PGcancel* const cancel = library.GetCancel(connection_.get());
    if (!cancel) return;
    library.Cancel(cancel, message.data(), static_cast<int>(message.size()));
    library.FreeCancel(cancel);
}

std::string Database::EncryptedPassword(const std::string& password, const std::string& user) const {
    const Library& library = LoadedLibrary();
    char* const encrypted = library.EncryptPassword(connection_.get(), password.c_str(), user.c_str(), nullptr);
    if (!encrypted) RaiseFailure({.message = FirstLine(library.ErrorMessage(connection_.get()))}, {});
    std::string text(encrypted);
    library.FreeMemory(encrypted);
    return text;
}

void Database::RaiseLost(std::string_view shown) const {
    RaiseLost(shown, FirstLine(LoadedLibrary().ErrorMessage(connection_.get())));
}

void Database::RaiseEnded(const Result& failed, std::string_view shown) {
    // A pooler may close the connection later.
    connection_.reset();
    RaiseLost(shown, Field(failed, PG_DIAG_MESSAGE_PRIMARY));
}

void Database::RaiseLost(std::string_view shown, const std::string& reason) const {
    const std::string text =
        isSaving_ ? Message(
                        "The connection to the server failed while a change was being saved ({1}): look whether it "
                        "is in the book before you enter it again",
                        reason)
        : inTransaction_
            ? Message("The connection to the server failed ({1}); nothing of the change was saved: enter it again",
                      reason)
            : Message("The connection to the server failed ({1}); try again when the server answers", reason);
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), text, std::string(shown));
}

void Database::RaiseError(const Result& failed, std::string_view shown) const {
    if (!IsConnected()) RaiseLost(shown);
    RaiseFailure({Field(failed, PG_DIAG_SQLSTATE), Field(failed, PG_DIAG_MESSAGE_PRIMARY),
                  Field(failed, PG_DIAG_TABLE_NAME), Field(failed, PG_DIAG_COLUMN_NAME),
                  Field(failed, PG_DIAG_CONSTRAINT_NAME), Field(failed, PG_DIAG_MESSAGE_DETAIL)},
                 shown);
}

}  // namespace kpTables::engines::postgres
