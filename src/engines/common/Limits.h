// What a statement may cost.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "kpTables/Book.h"
#include "recordset/RowStore.h"

namespace kpTables::engines {

/// See BookOptions.
struct Limits {
    std::int64_t rows = 0;
    std::int64_t bytes = 0;
    std::function<bool()> interrupted = {};

    /// Bounds a result's rows by the bytes given, or by the default, which the system is asked for only by a large
    /// result: asking takes longer than most statements.
    void ApplyTo(recordset::RowStore& rows) const;
};

/// Of BookOptions or NewBookOptions.
template <class Options>
Limits LimitsOf(const Options& options) {
    return {options.maxRows, options.maxBytes, options.interrupted};
}

}  // namespace kpTables::engines
