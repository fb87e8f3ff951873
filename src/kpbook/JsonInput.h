// Lines of JSON read: requests and argument values.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Host.h"
#include "kpTables/Variant.h"

namespace kpTables::kpbook {

/// One line of a batch: a method's call, or a statement of the host's own.
struct BatchRequest {
    std::optional<std::string> method;
    std::optional<std::string> execute;
    std::vector<Variant> arguments;
    std::optional<bool> isSQL;
    std::optional<Date> today;
    std::optional<MessageAnswer> answer;
};

/// Reads a line. Error 5 says what is wrong with it and where; what was read of "method" and "execute" before is left
/// in the request.
void ReadRequest(std::string_view line, BatchRequest& request);

/// Reads one value in an argument's form. Error 5 when it is no JSON or no such form.
Variant ReadJsonValue(std::string_view text);

}  // namespace kpTables::kpbook
