#include "kpbook/Ending.h"

#include <new>
#include <string>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Memory.h"
#include "kpbook/Terminal.h"
#include "platform/Signals.h"

namespace kpTables::kpbook {

namespace {

/// What shells add to a signal's number.
constexpr int kKilledBySignal = 128;

int Failed(const IncidentLog& incidents, const std::string& reason, const std::string& statement = {}) {
    TellLine(FailureMark() + (" " + incidents.Shown(reason)));
    if (!statement.empty()) TellLine("  " + incidents.Shown(statement));
    return kFailed;
}

bool TellIncidents(IncidentLog& incidents, const Error* ending = nullptr) {
    if (TakeMemoryShortage()) incidents.Add({{"", MemoryError()}});
    return incidents.Tell(ending);
}

int Ended(const Error& error, const std::string& statement, IncidentLog& incidents) {
    TellIncidents(incidents, &error);
    return Failed(incidents, error.Description(), statement);
}

int RunTelling(const std::function<int()>& command, IncidentLog& incidents) {
    try {
        const int code = command();
        const bool hadIncidents = TellIncidents(incidents);
        return code == kSucceeded && hadIncidents ? kFailed : code;
    } catch (const ClosedPipe&) {
        return TellIncidents(incidents) ? kFailed : kSucceeded;
    } catch (const DatabaseError& error) {
        return Ended(error, error.Statement(), incidents);
    } catch (const Error& error) {
        return Ended(error, "", incidents);
    } catch (const std::bad_alloc&) {
        return Ended(MemoryError(), "", incidents);
    } catch (const Interrupted&) {
        TellIncidents(incidents);
        return kFailed;
    } catch (const UsageError& error) {
        Failed(incidents, error.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        TellIncidents(incidents);
        return Failed(incidents, error.what());
    }
}

}  // namespace

int RunToEnd(const std::function<int()>& command, IncidentLog& incidents) {
    const int code = RunTelling(command, incidents);
    if (platform::ArrivedSignal() == 0) return code;
    TellLine("kpbook: " + Message("interrupted"));
    return kKilledBySignal + platform::ArrivedSignal();
}

}  // namespace kpTables::kpbook
