// The component on a book that is being set up.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bookkeeping/CheckedTables.h"

namespace kpTables::bookkeeping {

class Setup {
public:
    explicit Setup(const ConnectionPtr& book, std::optional<Date> today = {}) : checked_(book, today) {}

    /// Through which everything is to be sent.
    CTables& Tables() noexcept { return checked_.Tables(); }
    Connection& Book() noexcept { return checked_.Book(); }
    /// Stores an item of the book's information, as a setting and in AccInfo.
    void Store(const std::string& item, const Variant& value);
    /// Sets the first day of a month as the date on which the book was set up, and as its current date.
    void StoreDates(std::int32_t year, std::int32_t month);
    /// Raises what a method has trapped so far, or answered with False.
    void Check(bool answer = true);

private:
    CheckedTables checked_;
};

}  // namespace kpTables::bookkeeping
