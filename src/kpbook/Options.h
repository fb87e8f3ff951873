// What the command line asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Date.h"
#include "kpTables/Host.h"

namespace kpTables::kpbook {

enum class OutputFormat { Table, Csv, Json, Markdown, Xlsx };

/// Options that every command takes.
struct GlobalOptions {
    OutputFormat format = OutputFormat::Table;
    std::string outputPath;  ///< empty: standard output
    bool trace = false;
    bool isSQL = false;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
};

struct NewOptions {
    std::string book;
    bool bare = false;  ///< the tables only
};

struct InfoOptions {
    std::string book;
};

struct StockOptions {
    std::string book;
    std::int16_t month = 0;
    std::optional<std::int32_t> warehouse;  ///< all of them together when not given
    std::optional<std::int32_t> product;    ///< every one with figures when not given
    bool costUsed = false;
};

struct ImportOptions {
    std::string book;
    std::string table;
    std::string path;  ///< "-" is standard input
};

struct CallOptions {
    std::string book;
    std::string method;
    std::vector<std::string> arguments;
};

struct BatchOptions {
    std::string book;
    std::string path;  ///< "-" is standard input
};

struct SqlOptions {
    std::string book;
    std::string text;
};

struct CloseOptions {
    std::string book;
    std::int16_t month = 0;
    std::optional<std::int32_t> warehouse;  ///< all of them when not given
    bool costUsed = false;
    std::optional<Date> date;
};

struct MethodsOptions {
    std::string name;  ///< empty: the whole list
};

}  // namespace kpTables::kpbook
