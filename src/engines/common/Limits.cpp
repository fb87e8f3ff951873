#include "engines/common/Limits.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "platform/Process.h"

namespace kpTables::engines {

namespace {

/// A result of this size is never refused by default.
constexpr std::size_t kLeastBytes = std::size_t{64} << 20;

/// Half of what the system says it could give to programs; any size where it does not say.
std::size_t HalfOfFreeMemory() {
    const auto available = platform::AvailableMemory();
    return available ? std::max(*available / 2, kLeastBytes) : std::numeric_limits<std::size_t>::max();
}

[[noreturn]] void RaiseTooLarge(const std::string& complaint, std::string_view shown) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::ResultTooLarge), complaint, std::string(shown));
}

}  // namespace

void Limits::ApplyTo(recordset::RowStore& rows) const {
    if (bytes > 0) return rows.Limit(static_cast<std::size_t>(bytes));
    rows.Limit(kLeastBytes, [] {
        static const std::size_t kDefault = HalfOfFreeMemory();
        return kDefault;
    });
}

void Limits::AskHost(std::string_view shown) const {
    if (interrupted && interrupted())
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Cancelled),
                            Message("The statement was interrupted"), std::string(shown));
}

std::unique_ptr<recordset::RowStore> Limits::Within(
    std::string_view shown, const std::function<void(std::unique_ptr<recordset::RowStore>& rows)>& read) {
    constexpr unsigned kMegabyteBits = 20;
    std::unique_ptr<recordset::RowStore> rows;
    try {
        read(rows);
    } catch (const recordset::StoreFull& full) {
        rows.reset();
        RaiseTooLarge(Message("The result needs more than {1} MB of memory", full.limit >> kMegabyteBits), shown);
    } catch (const std::bad_alloc&) {
        rows.reset();
        RaiseOutOfMemory(shown);
    }
    // The rows of a recordset that is edited are in the table already when they are added here.
    rows->Limit(std::numeric_limits<std::size_t>::max());
    return rows;
}

void Limits::RaiseOutOfMemory(std::string_view shown) {
    RaiseTooLarge(Message("There is not enough memory for the result"), shown);
}

void Limits::RaiseTooManyRows(std::string_view shown) const {
    RaiseTooLarge(Message("The result has more than {1} rows", rows), shown);
}

}  // namespace kpTables::engines
