// What a list of books shows of each.
#pragma once

#include <cstdint>
#include <string>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

struct BookSummary {
    std::string company;          ///< 单位名称; "" when none is set
    std::int32_t year = 0;        ///< see BookYear
    std::int32_t firstMonth = 0;  ///< of the balance rows; 0 when there are none
    std::int32_t lastMonth = 0;
};

/// Reads it, without changing anything; a failed look is an error.
BookSummary SummaryOf(const ConnectionPtr& book);

}  // namespace kpTables::bookkeeping
