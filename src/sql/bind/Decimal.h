// Decimal text as a count of ten-thousandths, which is how Currency is stored.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kpTables::sql::bind {

/// The count of ten-thousandths of plain decimal text ("-12.5" is "-125000"); nothing for any other text and for more
/// than four decimals.
std::optional<std::string> TenThousandths(std::string_view decimal);

}  // namespace kpTables::sql::bind
