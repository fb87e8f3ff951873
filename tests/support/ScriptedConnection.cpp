#include "support/ScriptedConnection.h"

#include <utility>

#include "kpTables/Error.h"

namespace kpTables::test {

ScriptedConnection& ScriptedConnection::Answer(RecordsetPtr rows) {
    answers_.push_back(std::move(rows));
    return *this;
}

ScriptedConnection& ScriptedConnection::FailAt(int statement, const std::string& description) {
    failures_[static_cast<std::size_t>(statement)] = description;
    return *this;
}

RecordsetPtr ScriptedConnection::Execute(std::string_view text) { return Take(Executed(std::string(text))); }

RecordsetPtr ScriptedConnection::Open(std::string_view source, SourceKind kind) {
    return Take(Opened(std::string(source), kind));
}

int ScriptedConnection::BeginTrans() {
    journal_->push_back("BeginTrans");
    return ++level_;
}

void ScriptedConnection::CommitTrans() {
    journal_->push_back("CommitTrans");
    --level_;
}

void ScriptedConnection::RollbackTrans() {
    journal_->push_back("RollbackTrans");
    --level_;
}

RecordsetPtr ScriptedConnection::Take(Sent sent) {
    journal_->push_back(sent.op + (sent.kind == SourceKind::Table ? " table " : " ") + sent.text);
    sent_.push_back(std::move(sent));
    if (const auto failure = failures_.find(sent_.size()); failure != failures_.end())
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), failure->second,
                            sent_.back().text);
    if (answers_.empty()) return MakeRows({}, {});
    auto rows = std::move(answers_.front());
    answers_.pop_front();
    return rows;
}

}  // namespace kpTables::test
