#include "engines/postgres/Database.h"

#include <poll.h>

#include <array>
#include <charconv>
#include <utility>

#include "engines/postgres/Failure.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

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

constexpr int kTexts = 0;
constexpr int kBinary = 1;

}  // namespace

std::string_view Result::Value(int row, int column) const {
    const Library& library = LoadedLibrary();
    return {library.Value(Get(), row, column), static_cast<std::size_t>(library.Length(Get(), row, column))};
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

Result Database::Run(std::string_view text, std::string_view shown) {
    BeReady(shown.empty() ? text : shown);
    Sent(LoadedLibrary().SendQuery(connection_.get(), std::string(text).c_str()), shown);
    return Finished(shown.empty() ? text : shown);
}

Result Database::Ask(std::string_view text, const Parameters& parameters) {
    BeReady(text);
    Sent(LoadedLibrary().SendQueryParams(connection_.get(), std::string(text).c_str(), parameters.Count(), nullptr,
                                         parameters.Values(), parameters.Lengths(), parameters.Formats(), kTexts),
         text);
    return Finished(text);
}

std::string Database::Prepare(std::string_view text, std::string_view shown) {
    BeReady(shown);
    for (const std::string& name : std::exchange(forgotten_, {})) {
        const auto known = statements_.extract(name);
        if (!known.empty() && known.mapped().connection == connections_) Run("DEALLOCATE " + name);
    }
    std::string name = "kp" + std::to_string(++prepared_);
    const auto known = statements_.insert_or_assign(name, Prepared{std::string(text)}).first;
    try {
        PrepareHere(name, shown);
    } catch (...) {
        statements_.erase(known);
        throw;
    }
    return name;
}

void Database::PrepareHere(const std::string& name, std::string_view shown) {
    Prepared& statement = statements_.at(name);
    if (statement.connection == connections_) return;
    Sent(LoadedLibrary().SendPrepare(connection_.get(), name.c_str(), statement.text.c_str(), 0, nullptr), shown);
    Finished(shown);
    statement.connection = connections_;
}

Result Database::RunPrepared(const std::string& name, const Parameters& parameters, std::string_view shown) {
    BeReady(shown);
    PrepareHere(name, shown);
    Sent(LoadedLibrary().SendQueryPrepared(connection_.get(), name.c_str(), parameters.Count(), parameters.Values(),
                                           parameters.Lengths(), parameters.Formats(), kBinary),
         shown);
    return Finished(shown);
}

Result Database::ReadPrepared(const std::string& name, const Parameters& parameters, std::string_view shown,
                              const RowSink& sink) {
    const Library& library = LoadedLibrary();
    BeReady(shown);
    PrepareHere(name, shown);
    Sent(library.SendQueryPrepared(connection_.get(), name.c_str(), parameters.Count(), parameters.Values(),
                                   parameters.Lengths(), parameters.Formats(), kBinary),
         shown);
    library.SetSingleRowMode(connection_.get());
    return Finished(shown, sink);
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

void Database::SetSavepoint() {
    Run(hasSavepoint_ ? "RELEASE kp_statement; SAVEPOINT kp_statement" : "SAVEPOINT kp_statement");
    hasSavepoint_ = true;
}

void Database::ReturnToSavepoint() noexcept {
    try {
        Run("ROLLBACK TO kp_statement");
    } catch (const DatabaseError&) {
        // The connection is lost, and with it the transaction.
        hasSavepoint_ = false;
    }
}

void Database::DropSavepoint() {
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

Result Database::Next(std::string_view shown) {
    constexpr int kBetweenQuestions = 100;  // milliseconds
    const Library& library = LoadedLibrary();
    bool cancelled = false;
    library.Flush(connection_.get());
    while (library.IsBusy(connection_.get()) != 0) {
        std::array<pollfd, 1> socket{{{library.Socket(connection_.get()), POLLIN, 0}}};
        const int ready = poll(socket.data(), socket.size(), kBetweenQuestions);
        if (ready == 0 && !cancelled && IsToEnd()) {
            Cancel();
            cancelled = true;
        }
        if (library.ConsumeInput(connection_.get()) == 0) RaiseLost(shown);
    }
    return Result(library.GetResult(connection_.get()));
}

Result Database::Finished(std::string_view shown, const RowSink& sink) {
    const Library& library = LoadedLibrary();
    Result last;
    Result failed;
    for (Result result = Next(shown); result; result = Next(shown)) {
        switch (library.ResultStatus(result.Get())) {
            case PGRES_SINGLE_TUPLE:
                try {
                    if (!failed) sink(result);
                } catch (...) {
                    Cancel();
                    Drain();
                    throw;
                }
                continue;
            case PGRES_COMMAND_OK:
            case PGRES_TUPLES_OK:
            case PGRES_EMPTY_QUERY:
                last = std::move(result);
                break;
            default:
                if (!failed) failed = std::move(result);
        }
    }
    if (IsConnected()) inTransaction_ = InTransaction();
    if (failed) RaiseError(failed, shown);
    if (!last) RaiseLost(shown);
    return last;
}

void Database::Drain() noexcept {
    const Library& library = LoadedLibrary();
    while (const Result result{library.GetResult(connection_.get())}) {
    }
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

void Database::RaiseLost(std::string_view shown) const {
    const std::string reason = FirstLine(LoadedLibrary().ErrorMessage(connection_.get()));
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
