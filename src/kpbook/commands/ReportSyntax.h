// The report command on the command line.
#pragma once

#include <string>

#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

/// The words as typed; how some of them are read depends on the report.
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
/// Throws CLI::ParseError when the options do not go together or do not suit the report.
ReportOptions ReadReport(const CLI::App& command, ReportWords words);

}  // namespace kpTables::kpbook::commands
