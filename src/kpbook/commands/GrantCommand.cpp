#include "kpTables/Error.h"
#include "kpTables/bookkeeping/OperatorUser.h"
#include "kpTables/bookkeeping/Operators.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

Workspace Opened(const GrantOptions& options, const GlobalOptions& global) {
    return Workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
}

std::int32_t IdOf(const Workspace& workspace, const std::string& name) {
    try {
        return bookkeeping::OperatorId(workspace.connection, name);
    } catch (const DatabaseError&) {
        throw;
    } catch (const Error& error) {
        throw CommandError(Message("{1}; kpbook operators BOOK lists them, and adds one", error.Description()));
    }
}

/// Asks for a password when the server does not know the user yet.
void GrantWithPassword(Workspace& workspace, BookUser& user, const std::string& line) {
    const auto grant = [&] {
        workspace.Change([&] {
            workspace.book->Grant(user);
            return line;
        });
    };
    if (workspace.book->HasUser(user.name)) return grant();
    user.password = AskPassword(Message("no password was given; a new user of the server needs one"));
    grant();
}

}  // namespace

int Grant(const GrantOptions& options, const GlobalOptions& global) {
    Workspace workspace = Opened(options, global);
    const auto id = IdOf(workspace, options.name);
    BookUser user = bookkeeping::UserOf(workspace.book, id);
    const std::string name = user.name;
    if (!options.user.empty()) user.name = options.user;
    GrantWithPassword(workspace, user, "授权 " + name + " " + user.name);
    TellLine(Message("{1}: may do on the server what the operator {2} may", user.name, name));
    return kSucceeded;
}

int Revoke(const GrantOptions& options, const GlobalOptions& global) {
    Workspace workspace = Opened(options, global);
    bool gone = false;
    workspace.Change([&] {
        gone = workspace.book->Revoke(options.name);
        return "取消授权 " + options.name;
    });
    TellLine(gone ? Message("{1}: has no rights in the book any more, and is removed from the server", options.name)
                  : Message("{1}: has no rights in the book any more", options.name));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
