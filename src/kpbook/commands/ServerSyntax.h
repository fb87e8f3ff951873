// The commands for books on a server, books, grant, revoke and schema, on the command line.
#pragma once

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

void AddBooks(CLI::App& app, BooksOptions& options);
void AddSchema(CLI::App& app, SchemaOptions& options);
void AddGrant(CLI::App& app, GrantOptions& options);
void AddRevoke(CLI::App& app, GrantOptions& options);

}  // namespace kpTables::kpbook::commands
