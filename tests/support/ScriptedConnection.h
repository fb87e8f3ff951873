// A connection without a database that records every statement and answers from a script.
#pragma once

#include <deque>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "support/Journal.h"
#include "support/ScriptedRecordset.h"

namespace kpTables::test {

/// A statement that was sent.
struct Sent {
    std::string op;  ///< "execute" or "open"
    std::string text;
    SourceKind kind = SourceKind::Text;

    friend bool operator==(const Sent&, const Sent&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Sent& sent) {
        return out << sent.op << (sent.kind == SourceKind::Table ? " table " : " ") << "<" << sent.text << ">";
    }
};

inline Sent Executed(std::string text) { return {"execute", std::move(text)}; }
inline Sent Opened(std::string text, SourceKind kind = SourceKind::Text) { return {"open", std::move(text), kind}; }

/// Each statement takes the next answer; when there is none left, an empty recordset without columns. Journal entries:
/// "execute <text>", "open <text>", "open table <text>".
class ScriptedConnection : public Connection {
public:
    ScriptedConnection() : journal_(std::make_shared<Journal>()) {}

    /// Answers a statement with these rows, or with none at all (null).
    ScriptedConnection& Answer(RecordsetPtr rows);
    /// The n-th statement (from 1) is refused with a DatabaseError; it takes no answer.
    ScriptedConnection& FailAt(int statement, const std::string& description = "refused");

    const std::vector<Sent>& Statements() const { return sent_; }
    const JournalPtr& Log() const { return journal_; }

    using Connection::Execute;
    RecordsetPtr Execute(std::string_view text) override;
    RecordsetPtr Open(std::string_view source, SourceKind kind) override;
    // The component begins no transactions; the journal shows it when it does.
    int BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;

private:
    RecordsetPtr Take(Sent sent);

    int level_ = 0;
    JournalPtr journal_;
    std::vector<Sent> sent_;
    std::deque<RecordsetPtr> answers_;
    std::map<std::size_t, std::string> failures_;
};

}  // namespace kpTables::test
