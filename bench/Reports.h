// The reports that are measured, each with the statement that a specialist would write for it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "kpTables/CTables.h"

namespace kpTables::bench {

struct ReportCase {
    std::string name;
    bool isSQL;
    std::function<RecordsetPtr(CTables&)> ask;
    std::string byHand;
    /// What each column is: k a key or a text, d a date, q a number, m money, which a book counts in ten-thousandths.
    std::string columns;
    bool ordered;
};

/// All of them, for a book of eleven months and so many lines a direction.
std::vector<ReportCase> Reports(std::int64_t lines);

}  // namespace kpTables::bench
