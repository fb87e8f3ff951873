#include "kpbook/Workspace.h"

#include <cstdio>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Memory.h"
#include "kpbook/Suggestion.h"

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
    try {
        return OpenBook(url, options);
    } catch (const DatabaseError&) {
        options.readOnly = true;
        return OpenBook(url, options);
    }
}

/// A book of which somebody has dropped a part still serves the methods that do without it.
void WarnOfMissingParts(Book& book) {
    for (const std::string& part : book.MissingParts()) {
        std::fprintf(stderr, "kpbook: the book lacks %s; kpbook upgrade adds it\n", part.c_str());
    }
}

/// The statement of an incident stands beside its error.
Error Plain(const DatabaseError& error) { return Error(error.Number(), error.Description(), error.Source()); }

}  // namespace

Workspace::Workspace(const std::string& url, std::shared_ptr<Host> host, const GlobalOptions& global, Access access)
    : Workspace(access == Access::Read ? OpenToRead(url, OptionsOf(global)) : OpenBook(url, OptionsOf(global)),
                std::move(host), global) {
    WarnOfMissingParts(*book);
}

Workspace::Workspace(BookPtr opened, std::shared_ptr<Host> host, const GlobalOptions& global)
    : book(std::move(opened)), tables(std::move(host)), log_(global.incidents) {
    connection = std::make_shared<bookkeeping::WatchedConnection>(
        book, [engine = book.get()] { return engine->RecordsAffected(); });
    connection->onSend = [log = log_, clock = global.clock, trace = global.trace](const auto& statement) {
        if (trace) TraceSend(*log, statement);
        clock->Start();
    };
    connection->onEnd = [log = log_, clock = global.clock, trace = global.trace](const auto&, const auto& end) {
        if (trace) TraceEnd(*log, end);
        if (end.error && clock->IsOver()) std::fprintf(stderr, "kpbook: the statement ran longer than --timeout\n");
        clock->Stop();
    };
    tables.Cnn(connection);
    tables.isSQL(global.isSQL);
}

Workspace::~Workspace() {
    try {
        LogIncidents();
    } catch (const std::exception&) {
        // There is no memory to keep the incidents: the shortage itself is told at the end.
        return;
    }
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
    options.interrupted = [clock = global.clock] { return ArrivedSignal() != 0 || clock->IsOver(); };
    return options;
}

std::string NameOf(Workspace& workspace, const std::string& statement, const std::string& what) {
    const auto rows = workspace.connection->Execute(statement);
    if (rows->Eof()) throw CommandError("the book has no " + what);
    return Text(rows->GetValue(0));
}

Variant CallMember(CTables& tables, const std::string& name, std::vector<Variant>& arguments) {
    using Kind = _CTables::MemberKind;
    const auto* getter = _CTables::Find(name, Kind::PropertyGet);
    if (!getter && !_CTables::Find(name)) Raise(ErrorNumber::UnknownMember, name + MethodMeant(name));
    if (!getter) return _CTables::Call(tables, name, arguments);
    if (getter->result == _CTables::ValueType::Connection) {
        Raise(ErrorNumber::UnknownMember, name + ": the connection is kpbook's own");
    }
    return _CTables::Invoke(tables, arguments.empty() ? *getter : *_CTables::Find(name, Kind::PropertyLet), arguments);
}

}  // namespace kpTables::kpbook
