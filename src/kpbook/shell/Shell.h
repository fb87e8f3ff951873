// Statements and calls, one after the other, on one open book.
#pragma once

#include "kpbook/GlobalOptions.h"
#include "kpbook/commands/CommandSyntax.h"

namespace kpTables::kpbook::shell {

struct ShellOptions {
    std::string book;
};

void AddShell(CLI::App& app, ShellOptions& options);

/// At a terminal it asks for lines until .quit or Ctrl-D; otherwise it reads standard input to its end. The exit code
/// is 1 when a transaction was still open, and, without a terminal, when anything failed.
int Shell(const ShellOptions& options, const GlobalOptions& global);

}  // namespace kpTables::kpbook::shell
