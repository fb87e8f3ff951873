// One line of a batch, read.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Host.h"
#include "kpTables/Variant.h"

namespace kpTables::kpbook::batch {

/// A method's call, or a statement of the host's own.
struct BatchRequest {
    std::optional<std::string> method;
    std::optional<std::string> execute;
    std::vector<Variant> arguments;
    std::optional<bool> isSQL;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
};

/// Reads a line. Error 5 says what is wrong with it and where; "method" and "execute" are in the request even then, if
/// they could be read.
void ReadRequest(std::string_view line, BatchRequest& request);

}  // namespace kpTables::kpbook::batch
