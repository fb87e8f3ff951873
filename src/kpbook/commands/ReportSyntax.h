// The report command as it is typed.
#pragma once

#include <string>

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

/// What was typed; some of it needs reading that depends on the report.
struct ReportWords {
    std::string name;
    bool list = false;
    std::string from;
    std::string to;
    std::string date;
    std::string direction;
    std::string measure;
    std::string minQuantity;
    std::string maxQuantity;
    std::string minAmount;
    std::string maxAmount;
    ReportOptions options;
};

CLI::App* AddReport(CLI::App& app, ReportWords& words);
/// Throws CLI::ParseError on what one option alone cannot tell.
ReportOptions ReadReport(const CLI::App& command, ReportWords words);

}  // namespace kpTables::kpbook::commands
