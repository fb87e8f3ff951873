// A line of a batch.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Host.h"
#include "kpTables/Variant.h"

namespace kpTables::kpbook::batch {

/// A step of a transaction of the host's.
enum class TransactionStep { Begin, Commit, Rollback };

/// The call of a method, a statement that the host composed, or a step of a transaction.
struct BatchRequest {
    std::optional<std::string> method;
    std::optional<std::string> execute;
    bool several = false;  ///< execute may have several statements
    NamedValues values;    ///< for the names in the statement
    std::optional<TransactionStep> step;
    std::vector<Variant> arguments;
    std::optional<bool> isSQL;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
};

/// "begin", "commit" or "rollback": its key in a line.
std::string_view KeyOf(TransactionStep step) noexcept;

/// Reads a line. Error 5 says what is wrong and where; the request then still has "method" and "execute" if they could
/// be read.
void ReadRequest(std::string_view line, BatchRequest& request);

}  // namespace kpTables::kpbook::batch
