// What went wrong in a command although it went on, and what its messages must not show.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Error.h"

namespace kpTables::kpbook {

/// A failure that no caller was told of: a method trapped it.
struct Incident {
    std::string statement;  ///< empty for a failure that belongs to no statement
    Error error;
};
using Incidents = std::vector<Incident>;

/// Removes the last incident with this error, which its caller is told of.
void RemoveTold(Incidents& incidents, const Error& error);

/// Shared by everything that one run of the program does.
class IncidentLog {
public:
    void Add(const Incidents& incidents) { untold_.insert(untold_.end(), incidents.begin(), incidents.end()); }
    /// Writes what has not been told yet to standard error, but for the error that ends the command. True when there
    /// was anything else.
    bool Tell(const Error* ending = nullptr);

    /// From now on a text that contains the secret between quotes is shown with *** for it.
    void Hide(const std::string& secret);
    /// A text as messages show it.
    std::string Shown(std::string_view text) const;

private:
    std::vector<std::string> secrets_;  ///< with their quotes
    Incidents untold_;
};

}  // namespace kpTables::kpbook
