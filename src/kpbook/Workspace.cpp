#include "kpbook/Workspace.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "engines/BookUrl.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpTables/bookkeeping/Masters.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Memory.h"
#include "kpbook/Names.h"
#include "kpbook/Suggestion.h"
#include "kpbook/Terminal.h"
#include "platform/Signals.h"
#include "text/LocalTime.h"

namespace kpTables::kpbook {

namespace {

void TraceSend(const IncidentLog& log, const bookkeeping::SentStatement& statement) {
    const char* op = statement.op == bookkeeping::StatementOp::Execute ? "execute"
                     : statement.kind == SourceKind::Table             ? "open table"
                                                                       : "open";
    std::fprintf(stderr, "%s: %s\n", op, log.Shown(statement.text).c_str());
}

void TraceEnd(const IncidentLog& log, const bookkeeping::StatementEnd& end) {
    const std::chrono::duration<double, std::milli> elapsed = end.elapsed;
    std::string outcome;
    if (end.error) {
        outcome = "failed: " + log.Shown(end.error->Description());
    } else if (end.rows) {
        outcome = std::to_string(*end.rows) + (*end.rows == 1 ? " row" : " rows");
    } else {
        outcome = "rows on demand";
    }
    std::fprintf(stderr, "  %.3f ms, %s\n", elapsed.count(), outcome.c_str());
}

/// Opening a book read-only leaves the files of its log behind, so that is the second choice.
BookPtr OpenToRead(const std::string& url, BookOptions options) {
    options.forReports = true;
    try {
        return OpenBook(url, options);
    } catch (const DatabaseError&) {
        if (engines::ParseBookUrl(url).scheme == "postgresql") throw;
        options.readOnly = true;
        return OpenBook(url, options);
    }
}

BookPtr OpenFor(Access access, const std::string& url, const GlobalOptions& global) {
    BookOptions options = OptionsOf(global);
    options.readOnly = access == Access::Copy && engines::ParseBookUrl(url).scheme != "file";
    return access == Access::Change || options.readOnly ? OpenBook(url, options) : OpenToRead(url, options);
}

/// A book of which somebody has dropped a part still serves the methods that do without it.
void WarnOfMissingParts(const Book& book, const std::vector<std::string>& missing) {
    if (!missing.empty() && engines::ParseBookUrl(book.Url()).scheme == "odbc") {
        TellLine("kpbook: " + (missing.size() == 1
                                   ? Message("the book lacks {1}", missing.front())
                                   : Message("the book lacks {1} and more: {2} tables and columns in all",
                                             missing.front(), missing.size())));
        return;
    }
    for (const std::string& part : missing) {
        TellLine("kpbook: " + Message("the book lacks {1}; kpbook upgrade adds it", part));
    }
}

/// The log's time: the date that counts as today, at the time of the clock.
Date Now(std::optional<Date> today) {
    const std::tm local = text::LocalTime();
    const Date clock = Date::FromParts({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                                        local.tm_min, std::min(local.tm_sec, 59)})
                           .value_or(Date());
    return today ? Date::FromSerial(std::floor(today->Serial()) + clock.TimeOfDay()) : clock;
}

/// The statement of an incident stands beside its error.
Error Plain(const DatabaseError& error) { return Error(error.Number(), error.Description(), error.Source()); }

}  // namespace

Workspace::Workspace(const std::string& url, std::shared_ptr<Host> host, const GlobalOptions& global, Access access)
    : Workspace(OpenFor(access, url, global), std::move(host), global) {
    const auto missing = book->MissingParts();
    WarnOfMissingParts(*book, missing);
    // Tables that are yet to be made demand nobody.
    const bool hasOptions = std::ranges::find(missing, Message("the table {1}", "系统选项")) == missing.end();
    LogIn(global, access, hasOptions);
}

Workspace::Workspace(BookPtr opened, std::shared_ptr<Host> host, const GlobalOptions& global)
    : book(std::move(opened)), tables(std::move(host)), today_(global.today), log_(global.incidents) {
    connection = std::make_shared<bookkeeping::WatchedConnection>(
        book, [engine = book.get()] { return engine->RecordsAffected(); });
    connection->onSend = [log = log_, clock = global.clock, trace = global.trace](const auto& statement) {
        if (trace) TraceSend(*log, statement);
        clock->Start();
    };
    connection->onEnd = [log = log_, clock = global.clock, trace = global.trace](const auto&, const auto& end) {
        if (trace) TraceEnd(*log, end);
        if (end.error && clock->IsOver()) TellLine("kpbook: " + Message("the statement ran longer than --timeout"));
        clock->Stop();
    };
    // A method that trapped the shortage may have answered something else than what is in the book.
    connection->onCommit = [] {
        if (IsMemoryShort()) throw MemoryError();
    };
    tables.Cnn(connection);
    tables.isSQL(global.isSQL);
    connection->Dialect(DialectOf(global.isSQL));
}

Workspace::~Workspace() {
    try {
        LogIncidents();
    } catch (const std::exception&) {
        // There is no memory to keep the incidents: the shortage itself is told at the end.
        return;
    }
}

void Workspace::LogIn(const GlobalOptions& global, Access access, bool hasOptions) {
    if (!global.operatorName.empty()) {
        acting.emplace(connection, global.operatorName, [&] { return LoginPassword(global.operatorName); });
        if (!global.right.empty()) Require(global.right);
    } else if (access == Access::Change && hasOptions && bookkeeping::OperatorRequired(book)) {
        throw CommandError(Message("the book demands an operator for every change: --operator NAME"));
    }
}

void Workspace::Require(const std::string& right) const {
    if (acting) acting->Require(right);
}

void Workspace::Log(const std::string& what) const {
    if (acting) acting->Log(Now(today_), log_->Shown(what));
}

void Workspace::LogChange(const std::string& statement) const {
    const auto changed = book->RecordsAffected();
    Log("执行 " + statement);
    TellLine(CountedMessage(changed, "{1} row changed", "{1} rows changed"));
}

void Workspace::LogCall(const std::string& method) const {
    const auto begins = [&](std::string_view word) { return SameName(method.substr(0, word.size()), word); };
    if (!begins("rs") && !begins("Get")) Log("调用 " + method);
}

std::optional<std::int32_t> Workspace::WarehouseOr(std::optional<std::int32_t> asked) const {
    if (asked || !acting || acting->Warehouse() < 1) return asked;
    return acting->Warehouse();
}

std::optional<std::int32_t> Workspace::WarehouseOf(const std::string& word) const {
    if (word == "全部" || word == "全部仓库") return std::nullopt;
    if (word.empty()) return WarehouseOr(std::nullopt);
    return bookkeeping::MasterId(connection, bookkeeping::MasterKind::Warehouse, word);
}

Incidents Workspace::TakeIncidents() {
    Incidents incidents;
    for (const auto& failure : connection->Failures()) incidents.push_back({failure.text, Plain(failure.error)});
    connection->ForgetFailures();
    try {
        book->FlushRows();
    } catch (const DatabaseError& error) {
        incidents.push_back({error.Statement(), Plain(error)});
    }
    if (TakeMemoryShortage()) incidents.push_back({"", MemoryError()});
    return incidents;
}

bool Workspace::LogIncidents() {
    const auto incidents = TakeIncidents();
    log_->Add(incidents);
    return !incidents.empty();
}

BookOptions OptionsOf(const GlobalOptions& global) {
    BookOptions options;
    options.maxRows = global.maxRows;
    options.maxBytes = global.maxBytes;
    options.interrupted = [clock = global.clock] { return platform::ArrivedSignal() != 0 || clock->IsOver(); };
    // Asked for once, however many books are opened.
    options.password = [file = global.passwordFile, password = global.password, incidents = global.incidents] {
        if (!*password) *password = ServerPassword(file);
        return **password;
    };
    return options;
}

std::string NameOf(Workspace& workspace, const std::string& statement, const std::string& what) {
    const auto rows = workspace.connection->Execute(statement);
    if (rows->Eof()) throw CommandError(Message("the book has no {1}", what));
    return Text(rows->GetValue(0));
}

Variant CallMember(CTables& tables, const std::string& name, std::vector<Variant>& arguments) {
    using Kind = _CTables::MemberKind;
    const auto* getter = _CTables::Find(name, Kind::PropertyGet);
    if (!getter && !_CTables::Find(name)) Raise(ErrorNumber::UnknownMember, name + MethodMeant(name));
    if (!getter) return _CTables::Call(tables, name, arguments);
    if (getter->result == _CTables::ValueType::Connection) {
        Raise(ErrorNumber::UnknownMember, Message("{1}: the connection is kpbook's own", name));
    }
    return _CTables::Invoke(tables, arguments.empty() ? *getter : *_CTables::Find(name, Kind::PropertyLet), arguments);
}

}  // namespace kpTables::kpbook
