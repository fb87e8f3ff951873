// What an operator may do at the command line.
#pragma once

#include <string_view>

namespace kpTables::kpbook::commands {

/// The right that a command needs of the operator it acts as; "" when it needs none, or asks for rights by itself,
/// depending on what it is to do. A command that is not listed needs the right to the settings.
const char* RightFor(std::string_view command);

/// Whether a command can act as an operator: not one that opens no book, or a book of an earlier version.
bool TakesOperator(std::string_view command);

}  // namespace kpTables::kpbook::commands
