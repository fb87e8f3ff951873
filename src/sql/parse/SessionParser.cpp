// Statements of the connection: its transaction, and the options that a server's client sets.
#include <array>
#include <string_view>

#include "kpTables/text/Message.h"
#include "sql/parse/Keywords.h"
#include "sql/parse/ParserRules.h"

namespace kpTables::sql::parse {

namespace {

enum class OptionOf { Both, Jet, Server };

/// A value that an option has in every book, so that setting it changes nothing.
struct Option {
    std::string_view name;
    std::string_view value;
    OptionOf dialect = OptionOf::Both;
};

constexpr std::array<Option, 9> kOptions = {{
    {"NOCOUNT", "ON"},
    {"NOCOUNT", "OFF"},
    {"ANSI_NULLS", "ON"},
    {"ANSI_PADDING", "ON"},
    {"CONCAT_NULL_YIELDS_NULL", "ON", OptionOf::Server},
    {"QUOTED_IDENTIFIER", "ON", OptionOf::Server},
    {"QUOTED_IDENTIFIER", "OFF", OptionOf::Jet},
    {"DATEFORMAT", "ymd"},
    {"IMPLICIT_TRANSACTIONS", "OFF"},
}};

StatementPtr ParseOption(TokenCursor& cursor) {
    auto statement = std::make_unique<SessionStatement>();
    const Token& name = cursor.Peek();
    const Token& value = cursor.Peek(1);
    const bool jet = cursor.TextDialect() == Dialect::Jet;
    for (const Option& option : kOptions) {
        if (option.dialect != OptionOf::Both && (option.dialect == OptionOf::Jet) != jet) continue;
        if (!cursor.At(option.name) || !cursor.At(option.value, 1)) continue;
        statement->words = std::string(option.name) + ' ' + std::string(option.value);
        cursor.Take();
        cursor.Take();
        return statement;
    }
    cursor.FailUnsupported(name, Message("SET {1} {2}: a book has no such setting; it", name.text, value.text));
}

}  // namespace

StatementPtr ParseSession(TokenCursor& cursor) {
    if (cursor.Accept("SET")) return ParseOption(cursor);
    auto statement = std::make_unique<SessionStatement>();
    const bool begins = cursor.At("BEGIN");
    statement->action = begins                ? SessionStatement::Action::Begin
                        : cursor.At("COMMIT") ? SessionStatement::Action::Commit
                                              : SessionStatement::Action::Rollback;
    cursor.Take();
    const bool named = cursor.Accept("TRAN") || cursor.Accept("TRANSACTION");
    if (!named && !cursor.Accept("WORK") && begins) cursor.Fail("TRANSACTION");
    // Nested transactions need no names, so BEGIN and COMMIT may have one. ROLLBACK may not: it undoes the innermost.
    if (named && statement->action != SessionStatement::Action::Rollback && cursor.AtName()) cursor.Take();
    return statement;
}

}  // namespace kpTables::sql::parse
