// How a Database comes by its connection, and by a new one.
#include <chrono>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "engines/common/Transaction.h"
#include "engines/postgres/Database.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "platform/Socket.h"

namespace kpTables::engines::postgres {

namespace {

void IgnoreNotice(void*, const char*) noexcept {}

/// The next writer need not wait until this change is on the disk, and on a standby that the server waits for: the lock
/// is given back at the commit, and the small record behind it is waited for. The log is written in order, so whoever
/// builds on this change is saved only with it.
constexpr const char* kCommit =
    "SET LOCAL synchronous_commit = off; COMMIT; SELECT pg_logical_emit_message(true, 'kp', '')";

/// The library's words of several lines, a line for each server that was tried, as one.
std::string OneLine(const char* message) {
    std::string text;
    for (const char* at = message ? message : ""; *at != 0; ++at) {
        if (*at != '\n') {
            text += *at == '\t' ? ' ' : *at;
        } else if (at[1] != 0 && at[1] != '\t') {
            text += "; ";
        }
    }
    return text;
}

/// A name that no other program gives.
std::string RandomName() {
    std::random_device random;
    std::string name;
    for (int i = 0; i < 4; ++i) name += std::to_string(random());
    return name;
}

/// A machine that is gone does not answer at all: the system's own limits are minutes and hours. What the URL says
/// comes last and counts.
std::string WithTimeLimits(const std::string& address) {
    const auto question = address.find('?');
    return address.substr(0, question) +
           "?connect_timeout=5&keepalives_idle=20&keepalives_interval=5&keepalives_count=4&tcp_user_timeout=40000" +
           (question == std::string::npos ? "" : "&" + address.substr(question + 1));
}

}  // namespace

void Database::Connect() {
    const Library& library = LoadedLibrary();
    connection_.reset(library.Connect(WithTimeLimits(address_).c_str()));
    if (!IsConnected()) RaiseUnreached();
    library.SetNoticeProcessor(connection_.get(), IgnoreNotice, nullptr);
    // What was known of the connection before went with it; a notice of a change of the schema may have, too.
    hasSavepoint_ = false;
    savepointDue_ = false;
    guard_.clear();
    inTransaction_ = false;
    ++connections_;
    ++schemaChanges_;
}

void Database::SetUp(std::string_view text) {
    SendPending();
    BeReady(text);
    setUp_.append(setUp_.empty() ? "" : "; ").append(text);
    Settle();
}

void Database::Settle() {
    guard_.clear();
    const Result server = RunHere(setUp_ + "; SELECT pg_backend_pid()", setUp_);
    if (server.Integer(0, 0) == LoadedLibrary().BackendProcess(connection_.get())) return;
    // The connection is a pooler's, who may have passed each statement to another of the server's.
    const std::string name = "kp_" + RandomName();
    RunHere(setUp_ + "; DECLARE " + name + " CURSOR WITH HOLD FOR SELECT 1", setUp_);
    // Takes no snapshot, so that the level of a transaction can be set behind it.
    guard_ = "MOVE 0 IN " + name;
}

std::unique_ptr<Database> Database::Another(std::chrono::steady_clock::time_point answerBy) const {
    auto another = std::make_unique<Database>(address_, interrupted_);
    another->answerBy_ = answerBy;
    return another;
}

void Database::Reconnect() {
    constexpr auto kPatience = std::chrono::seconds(10);
    constexpr auto kBetweenAttempts = std::chrono::milliseconds(100);
    ++attempts_;
    const auto end = std::chrono::steady_clock::now() + kPatience;
    for (;;) {
        try {
            Connect();
            Settle();
            hasGivenUp_ = false;
            return;
        } catch (const DatabaseError&) {
            // A server that starts or stops may take a connection and drop it; one that refuses the settings will do so
            // again. Without them no statement may run.
            hasGivenUp_ = hasGivenUp_ || IsConnected() || IsToEnd() || std::chrono::steady_clock::now() >= end;
            connection_.reset();
            if (hasGivenUp_) throw;
        }
        std::this_thread::sleep_for(kBetweenAttempts);
    }
}

bool Database::HasHungUp() const noexcept {
    const Library& library = LoadedLibrary();
    if (!IsConnected()) return true;
    // What the server has said of its own accord, or its end, is there to be read.
    if (!platform::WaitForSocket(library.Socket(connection_.get()), 0)) return false;
    // The first call may find the server's last words, the second one that it has closed the connection.
    return library.ConsumeInput(connection_.get()) == 0 || library.ConsumeInput(connection_.get()) == 0 ||
           !IsConnected();
}

void Database::BeReady(std::string_view shown) {
    if (InTransaction()) return;
    if (IsConnected() && !HasHungUp()) return;
    if (inTransaction_) RaiseLost(shown);
    Reconnect();
}

void Database::RaiseUnreached() const {
    constexpr auto kNumber = static_cast<std::int32_t>(DatabaseErrorNumber::Failure);
    const std::string why = OneLine(LoadedLibrary().ErrorMessage(connection_.get()));
    if (LoadedLibrary().NeedsPassword(connection_.get()) != 0)
        throw PasswordNeeded(kNumber, Message("The server wants a password: {1}", why));
    // Of a certificate the client library speaks in English, whatever the user's language is.
    if (why.find("certificate") != std::string::npos || why.find("SSL") != std::string::npos) {
        throw DatabaseError(kNumber,
                            Message("The server could not prove who it is, or cannot encrypt, and was told nothing "
                                    "(sslmode and sslrootcert in the URL say what is demanded): {1}",
                                    why));
    }
    if (why.find("FATAL:") != std::string::npos)
        throw DatabaseError(kNumber, Message("The server refuses the connection: {1}", why));
    throw DatabaseError(kNumber, Message("The server cannot be reached: {1}", why));
}

void Database::Commit() {
    constexpr std::string_view kShown = "COMMIT";
    SendPending();
    ForgetSavepoint();
    // What was not sent was not saved.
    if (!IsConnected() || HasHungUp()) RaiseLost(kShown);
    // The server would answer as if all were well, and roll back.
    if (LoadedLibrary().TransactionStatus(connection_.get()) == PQTRANS_INERROR) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                            Message("The transaction was ended by an earlier failure and nothing of it was saved; roll "
                                    "it back first"));
    }
    const auto saving = [this](bool is) {
        isSaving_ = is;
        interruptible_ = !is;
    };
    saving(true);
    try {
        Run(kCommit, kShown);
    } catch (const DatabaseError& error) {
        saving(false);
        if (IsConnected()) throw;
        AcceptLoss();
        throw engines::UncertainSave(error.Number(), error.Description(), error.Statement());
    }
    saving(false);
}

}  // namespace kpTables::engines::postgres
