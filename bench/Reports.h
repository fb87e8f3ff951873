// The reports that are measured, each with the statement that a specialist would write for it.
#pragma once

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
    std::string columns;  ///< their kinds, as in Answers.h
    bool ordered;
    double goal;  ///< the largest acceptable ratio; 0: none
    std::string rival;
};

/// All of them, for a book of eleven months.
std::vector<ReportCase> Reports();

}  // namespace kpTables::bench
