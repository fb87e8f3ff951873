// The line that answers a request of a batch.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kpTables/Error.h"
#include "kpTables/Variant.h"
#include "kpTables/bookkeeping/WatchedConnection.h"
#include "kpbook/Host.h"
#include "kpbook/Incidents.h"
#include "kpbook/batch/BatchRequest.h"

namespace kpTables::kpbook::batch {

struct RaisedEvent {
    std::string name;
    std::vector<Variant> arguments;
};

/// The outcome of a request.
struct BatchOutcome {
    std::string result;     ///< as JSON; empty after an error
    std::string arguments;  ///< after the call, as JSON; empty where there was no call
    std::vector<bookkeeping::SentStatement> sent;
    std::vector<ShownMessage> messages;
    std::vector<RaisedEvent> events;
    Incidents failed;  ///< what the method trapped, and so without the error
    std::optional<Error> error;
};

/// One JSON object and a line feed.
std::string AnswerLine(const BatchRequest& request, const BatchOutcome& outcome);
/// [value,...] in the form of arguments.
std::string ListText(const std::vector<Variant>& values);

}  // namespace kpTables::kpbook::batch
