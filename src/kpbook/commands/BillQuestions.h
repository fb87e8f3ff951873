// A bill asked for at the terminal, question by question.
#pragma once

#include <vector>

#include "kpTables/bookkeeping/BillSheet.h"
#include "kpbook/Workspace.h"

namespace kpTables::kpbook::commands {

/// Asks on standard error and reads standard input. A part of a product's number, short code or name lists the
/// products that it begins, and is completed where there is one. Empty when the user does not agree in the end.
std::vector<bookkeeping::SheetRow> AskForBill(Workspace& workspace, const bookkeeping::SheetOptions& sheet);

}  // namespace kpTables::kpbook::commands
