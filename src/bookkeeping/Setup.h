// The component on a book that is being set up, where its trapped errors must not pass unseen.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Connection.h"
#include "kpTables/Date.h"
#include "kpTables/bookkeeping/WatchedConnection.h"

namespace kpTables::bookkeeping {

class Setup {
public:
    /// today: what the methods take for it; empty: the system's date.
    explicit Setup(const ConnectionPtr& book, std::optional<Date> today = {});

    /// Through which everything is to be sent.
    CTables& Tables() noexcept { return tables_; }
    Connection& Book() noexcept { return *book_; }
    /// Stores an item of the book's information, as a setting and in AccInfo.
    void Store(const std::string& item, const Variant& value);
    /// Sets the first day of a month as the date on which the book was set up, and as its current date.
    void StoreDates(std::int32_t year, std::int32_t month);
    /// Raises what a method has trapped since the last call, or answered with False.
    void Check(bool answer = true);

private:
    class QuietHost;

    std::shared_ptr<WatchedConnection> book_;
    std::shared_ptr<QuietHost> host_;
    CTables tables_;
};

/// Throws error 5 with this text alone.
[[noreturn]] void RefuseSetup(const std::string& text);

}  // namespace kpTables::bookkeeping
