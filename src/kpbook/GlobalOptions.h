// The options that every command takes.
#pragma once

#include <optional>
#include <string>

#include "kpTables/Date.h"
#include "kpTables/Host.h"

namespace kpTables::kpbook {

enum class OutputFormat { Table, Csv, Json, Markdown, Xlsx };

struct GlobalOptions {
    OutputFormat format = OutputFormat::Table;
    std::string outputPath;  ///< empty: standard output
    bool trace = false;
    bool isSQL = false;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
};

}  // namespace kpTables::kpbook
