// The settings of every benchmark.
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
    std::FILE* details = stdout;  ///< receives each benchmark's own table
    Results* results = nullptr;   ///< receives the rows of the whole table
};

}  // namespace kpTables::bench
