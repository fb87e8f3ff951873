// The texts of run-time errors.
#pragma once

#include <cstdint>

namespace kpTables::text {

/// What Visual Basic shows for a run-time error number.
const char* ErrorText(std::int32_t number) noexcept;

}  // namespace kpTables::text
