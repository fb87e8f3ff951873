// Texts with several statements.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Error.h"

namespace kpTables {

/// One statement of a script.
struct ScriptStatement {
    std::string text;        ///< without the semicolon; comments are blanks
    std::size_t line = 1;    ///< of its first character in the script, both from 1
    std::size_t column = 1;  ///< in characters
    bool ended = false;      ///< by a semicolon; only the last statement may lack it
    std::size_t end = 0;     ///< the byte of the script behind the statement and its semicolon
};

/// The statements of a script, which semicolons end; those in quotes, [names], #dates# and comments (-- to the end of
/// the line, /* to */) do not. Statements that are empty are left out.
std::vector<ScriptStatement> SplitScript(std::string_view script);

/// Runs a host's text of one or several statements in order; the answer is the first recordset, null when there is
/// none. Connection::Execute takes one statement, so that no value that is pasted into a text can begin another: this
/// is for texts that a host has written itself. Between the statements may stand DECLARE, SET and SELECT @name = ... of
/// variables, which live in this text, IF ... ELSE, BEGIN ... END, and BEGIN TRANSACTION, COMMIT and ROLLBACK, which
/// are the connection's. Without one of these three, a text that changes the book is one transaction: all or nothing.
/// values: as for Execute. A DatabaseError has its place in the whole text.
RecordsetPtr ExecuteScript(Connection& connection, std::string_view text, const NamedValues& values = {});

/// The error of a script's statement with the line (and the column, where it is known) in the script.
DatabaseError InScript(const ScriptStatement& statement, const DatabaseError& error);

}  // namespace kpTables
