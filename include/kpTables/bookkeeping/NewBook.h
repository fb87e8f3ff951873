// A new book, made ready for a firm's first month.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Date.h"

namespace kpTables::bookkeeping {

/// Years that a book can have: the component takes a date of setting up before 2000 for a missing one.
inline constexpr std::int16_t kFirstYear = 2000;
inline constexpr std::int16_t kLastYear = 9999;

/// The firm whose book begins.
struct Beginning {
    std::string company;                       ///< 单位名称
    std::int16_t year = 0;                     ///< kFirstYear to kLastYear
    std::int16_t month = 0;                    ///< the first month, 1 to 12
    std::vector<std::string> warehouses = {};  ///< their names; each becomes a row of 仓库设置, in this order
};

/// Gives a book with empty tables its name, its dates and the usual payment methods. today: the date of setting up;
/// empty: the system's. Raises the error of a step that failed.
void PrepareBook(const ConnectionPtr& book, std::optional<Date> today = {});

/// As PrepareBook, and enters the firm: its name, the first day of the first month as 建帐日期 and 当前日期, its
/// warehouses. All or nothing. Error 5 for a year or month out of range, an empty name, and a warehouse's name that is
/// given twice or means all warehouses.
void BeginBook(const ConnectionPtr& book, const Beginning& beginning);

}  // namespace kpTables::bookkeeping
