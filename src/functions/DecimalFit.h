// The limits of DECIMAL(p,s), for amounts in ten-thousandths.
#pragma once

#include <cstdint>
#include <string>

namespace kpTables::functions {

/// The amount with that many decimals, from 0 to 4, half away from zero.
std::int64_t DecimalAmount(std::int64_t amount, int scale);
/// Why the amount does not fit DECIMAL(precision,scale); "" when it does.
std::string DecimalComplaint(std::int64_t amount, int precision, int scale);

}  // namespace kpTables::functions
