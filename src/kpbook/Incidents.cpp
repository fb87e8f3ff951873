#include "kpbook/Incidents.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "kpTables/text/Message.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"

namespace kpTables::kpbook {

void RemoveTold(Incidents& incidents, const Error& error) {
    const auto isSame = [&](const Incident& each) {
        return each.error.Number() == error.Number() && each.error.Description() == error.Description();
    };
    const auto last = std::find_if(incidents.rbegin(), incidents.rend(), isSame);
    if (last != incidents.rend()) incidents.erase(std::next(last).base());
}

void IncidentLog::Hide(const std::string& secret) {
    if (!secret.empty()) secrets_.push_back("'" + secret + "'");
}

std::string IncidentLog::Shown(std::string_view text) const {
    constexpr std::string_view kHidden = "'***'";
    std::string shown(text);
    for (const auto& secret : secrets_) {
        for (auto at = shown.find(secret); at != shown.npos; at = shown.find(secret, at + kHidden.size())) {
            shown.replace(at, secret.size(), kHidden);
        }
    }
    return ReplaceInvalidUtf8(shown);
}

bool IncidentLog::Tell(const Error* ending) {
    if (ending) RemoveTold(untold_, *ending);
    const Incidents incidents = std::exchange(untold_, {});
    for (const auto& [statement, error] : incidents) {
        const std::string shown = Shown(error.Description());
        const std::string what = statement.empty() ? shown : Message("a statement failed: {1}", shown);
        TellLine(FailureMark() + (" " + what));
        if (!statement.empty()) TellLine("  " + Shown(statement));
    }
    return !incidents.empty();
}

}  // namespace kpTables::kpbook
