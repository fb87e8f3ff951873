// The bill command on the command line.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kpbook/commands/BillCommand.h"
#include "kpbook/commands/CommandSyntax.h"

namespace kpTables::kpbook::commands {

/// The words as typed.
struct BillWords {
    std::string kind;
    std::string auditDate;
    std::vector<std::string> changes;           ///< COLUMN=VALUE
    std::map<std::string, std::string> header;  ///< by column; options that were not given stay ""
    BillOptions options;
};

void AddBill(CLI::App& app, BillWords& words);
/// Throws CLI::ParseError when the options do not go together.
BillOptions ReadBillWords(const CLI::App& command, BillWords words);

}  // namespace kpTables::kpbook::commands
