// The report command on the command line.
#pragma once

#include <string>

#include "kpbook/GlobalOptions.h"
#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Options.h"

namespace kpTables::kpbook::commands {

/// The options of how figures are shown.
struct FigureWords {
    bool cost = false;
    bool noCost = false;
    Showing showing;
};

/// Adds --raw and --wide.
void AddColumns(CLI::App& command, Showing& showing);
/// Adds --cost, --no-cost and --chart too.
void AddFigures(CLI::App& command, FigureWords& words);
/// Throws CLI::ParseError when the options do not go with each other or with the output format.
Showing ReadFigures(const FigureWords& words, OutputFormat format);

/// The words as typed; how some of them are read depends on the report.
struct ReportWords {
    std::string name;
    bool list = false;
    std::string from;
    std::string to;
    std::string date;
    std::string direction;
    std::string measure;
    FigureWords figures;
    std::string minQuantity;
    std::string maxQuantity;
    std::string minAmount;
    std::string maxAmount;
    ReportOptions options;
};

CLI::App* AddReport(CLI::App& app, ReportWords& words);
/// Throws CLI::ParseError when the options do not go together or do not suit the report.
ReportOptions ReadReport(const CLI::App& command, ReportWords words, const GlobalOptions& global);

}  // namespace kpTables::kpbook::commands
