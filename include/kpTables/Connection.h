// An open database as the component sees it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Error.h"

#include "kpTables/Recordset.h"

namespace kpTables {

/// The kind of source text of Connection::Open, with ADO's numbers.
enum class SourceKind : int {
    Text = 1,   ///< adCmdText: a Select
    Table = 2,  ///< adCmdTable: a table's name
};

/// The dialect that decides where a statement's text means two things, such as the class [!a] of a pattern, the quotes
/// "...", the quotient of whole numbers and bounds of Between that stand in the wrong order; docs/dialects.md lists
/// them. Everything else is read alike, whichever dialect a text is in.
enum class SqlDialect { Jet, SqlServer };

/// A value for a name in a statement's text. The value is bound and never becomes part of the text: Null, a Boolean, a
/// number, a Date or a String; error 13 for any other.
struct NamedValue {
    std::string name;  ///< without the sign: "id" for @id and :id; without regard to case
    Variant value;
};
using NamedValues = std::vector<NamedValue>;

/// An open connection. The host opens it and hands it to CTables; every failure is a DatabaseError.
class Connection : public Object {
public:
    /// Runs one statement. A query answers with a complete, scrollable, read-only recordset that knows its count;
    /// any other statement with null.
    virtual RecordsetPtr Execute(std::string_view text) = 0;
    /// As above, with a value for every @name or :name in the text; one without a value is a syntax error, a value
    /// without its name is not used. Error 5 where a connection binds no values.
    virtual RecordsetPtr Execute(std::string_view text, const NamedValues& values) {
        if (values.empty()) return Execute(text);
        Raise(ErrorNumber::InvalidCall, "this connection binds no values");
    }
    /// Opens an editable recordset (dynamic cursor, pessimistic locking). Nothing is fetched before a row or a count is
    /// requested.
    virtual RecordsetPtr Open(std::string_view source, SourceKind kind) = 0;

    // For hosts; the component never calls these.
    /// The dialect of the host's own statements; Jet's at first. What CTables sends means the same in both.
    virtual SqlDialect Dialect() const { return SqlDialect::Jet; }
    /// Counts from the next statement on. Error 5 where a connection reads one dialect only.
    virtual void Dialect(SqlDialect dialect) {
        if (dialect != Dialect()) Raise(ErrorNumber::InvalidCall, "this connection reads one dialect only");
    }

    // Transactions nest as ADO's do: commit and rollback end the innermost
    // level, and a rollback also undoes what levels inside it have committed. What editable recordsets write meanwhile
    // belongs to it. kpTables/Transaction.h has a guard for blocks.
    /// Begins a transaction, or a level inside the open one; answers the level, 1 for the outermost. No other program
    /// can write from the first level's begin to its end; where the connection is for reading only, all its reads are
    /// of one moment.
    virtual int BeginTrans() = 0;
    /// Saves the transaction, at level 1, or merges a level with the one around it. A DatabaseError when none is open;
    /// and when an earlier failure has ended it: nothing of it was saved, and RollbackTrans is due at every level.
    /// Where a server was lost meanwhile, the error says that it may be saved: a query tells, and RollbackTrans is due.
    /// A commit that raises Locked may be tried again.
    virtual void CommitTrans() = 0;
    /// Undoes the innermost level. A DatabaseError when none is open.
    virtual void RollbackTrans() = 0;
};
using ConnectionPtr = std::shared_ptr<Connection>;

}  // namespace kpTables
