// The options that every command takes.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "kpTables/Date.h"
#include "kpTables/Host.h"
#include "kpbook/Incidents.h"

namespace kpTables::kpbook {

enum class OutputFormat { Table, Csv, Json, Markdown, Xlsx };

struct GlobalOptions {
    OutputFormat format = OutputFormat::Table;
    std::string outputPath;  ///< empty: standard output
    bool trace = false;
    bool isSQL = false;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
    std::shared_ptr<IncidentLog> incidents = std::make_shared<IncidentLog>();
};

}  // namespace kpTables::kpbook
