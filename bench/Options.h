// kpbench's command line.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "BookMaker.h"

namespace kpTables::bench {

struct Options {
    BookSize size;
    std::optional<std::int64_t> lines;
    int runs = 5;
    std::filesystem::path folder;    ///< a new folder for the books
    std::filesystem::path markdown;  ///< the page that receives the whole table; empty: none
    std::string only;                ///< one benchmark by name, or "table"
};

extern const char* const kUsage;

/// Throws std::exception when the command line is wrong.
Options ReadOptions(int argc, char** argv);

}  // namespace kpTables::bench
