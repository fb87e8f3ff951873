// The options that every command takes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "kpTables/Date.h"
#include "kpTables/Host.h"
#include "kpbook/Incidents.h"
#include "kpbook/Interruption.h"

namespace kpTables::kpbook {

enum class OutputFormat { Table, Csv, Json, Markdown, Xlsx, Html };

struct GlobalOptions {
    OutputFormat format = OutputFormat::Table;
    std::string outputPath;  ///< empty: standard output
    std::string title;       ///< what the results are: the name of a workbook's sheet
    bool trace = false;
    bool isSQL = false;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
    std::string operatorName;  ///< who the command acts as; empty: nobody
    /// The right that the command needs when it acts as an operator; "" when it asks for rights by itself, or needs
    /// none. Set by the command line.
    std::string right;
    std::string passwordFile;  ///< of the password that a server wants; empty: it is asked for
    /// The password, once a server has wanted it.
    std::shared_ptr<std::optional<std::string>> password = std::make_shared<std::optional<std::string>>();
    std::int64_t maxRows = 0;   ///< of a result; 0: any number
    std::int64_t maxBytes = 0;  ///< of memory for a recordset's rows; 0: half of what is free
    std::shared_ptr<StatementClock> clock = std::make_shared<StatementClock>();
    std::shared_ptr<IncidentLog> incidents = std::make_shared<IncidentLog>();
};

}  // namespace kpTables::kpbook
