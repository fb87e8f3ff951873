// What a statement may cost.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

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
    /// To be called before each row of a result: error ResultTooLarge when it has as many as it may have. shown: the
    /// text for messages.
    void CountRow(const recordset::RowStore& result, std::string_view shown) const {
        if (rows > 0 && result.Rows() == static_cast<std::size_t>(rows)) RaiseTooManyRows(shown);
    }
    /// Error Cancelled when the host wants the statement to end. shown: the text for messages.
    void AskHost(std::string_view shown) const;
    /// The store that read makes and fills; a result that is too large for it, or for the machine, is error
    /// ResultTooLarge.
    static std::unique_ptr<recordset::RowStore> Within(
        std::string_view shown, const std::function<void(std::unique_ptr<recordset::RowStore>& rows)>& read);
    /// The error of a result for which the machine has no memory.
    [[noreturn]] static void RaiseOutOfMemory(std::string_view shown);

private:
    [[noreturn]] void RaiseTooManyRows(std::string_view shown) const;
};

/// Of BookOptions or NewBookOptions.
template <class Options>
Limits LimitsOf(const Options& options) {
    return {options.maxRows, options.maxBytes, options.interrupted};
}

}  // namespace kpTables::engines
