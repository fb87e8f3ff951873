#include "kpbook/Ending.h"

#include <cstdio>
#include <new>
#include <string>

#include "kpbook/Exit.h"
#include "kpbook/Memory.h"
#include "kpbook/Utf8.h"

namespace kpTables::kpbook {

namespace {

int Failed(const std::string& reason, const std::string& statement = {}) {
    std::fprintf(stderr, "kpbook: %s\n", ReplaceInvalidUtf8(reason).c_str());
    if (!statement.empty()) std::fprintf(stderr, "  %s\n", ReplaceInvalidUtf8(statement).c_str());
    return kFailed;
}

bool TellIncidents(IncidentLog& incidents, const Error* ending = nullptr) {
    if (TakeMemoryShortage()) incidents.Add({{"", MemoryError()}});
    return incidents.Tell(ending);
}

int Ended(const Error& error, const std::string& statement, IncidentLog& incidents) {
    TellIncidents(incidents, &error);
    return Failed(error.Description(), statement);
}

}  // namespace

int RunToEnd(const std::function<int()>& command, IncidentLog& incidents) {
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
    } catch (const UsageError& error) {
        Failed(error.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        TellIncidents(incidents);
        return Failed(error.what());
    }
}

}  // namespace kpTables::kpbook
