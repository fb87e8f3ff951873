// What every benchmark is told.
#pragma once

#include <cstdio>
#include <filesystem>

#include "BookMaker.h"
#include "Results.h"

namespace kpTables::bench {

struct Setting {
    std::filesystem::path folder;  ///< for the books
    BookSize size;
    int runs = 1;
    std::FILE* details = stdout;  ///< gets each benchmark's own table
    Results* results = nullptr;   ///< gets the rows of the table of all
};

}  // namespace kpTables::bench
