// What a statement may cost.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "kpTables/Book.h"

namespace kpTables::engines {

/// See BookOptions.
struct Limits {
    std::int64_t rows = 0;
    std::int64_t bytes = 0;
    std::function<bool()> interrupted = {};

    /// Bytes that a recordset's rows may take: those given, or the default.
    std::size_t MostBytes() const;
};

/// Of BookOptions or NewBookOptions.
template <class Options>
Limits LimitsOf(const Options& options) {
    return {options.maxRows, options.maxBytes, options.interrupted};
}

}  // namespace kpTables::engines
