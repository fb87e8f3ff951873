#include "engines/odbc/Failure.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "engines/odbc/Library.h"
#include "engines/odbc/WideText.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

struct StateMeaning {
    std::string_view state;  ///< or its beginning, its class
    DatabaseErrorNumber number;
};

// The states of ODBC 3, of ODBC 2 where drivers still give them, and those that servers pass through.
constexpr StateMeaning kStates[] = {
    {"07001", DatabaseErrorNumber::UnknownColumn},  // Jet takes an unknown name for a parameter
    {"21S", DatabaseErrorNumber::Syntax},          {"22001", DatabaseErrorNumber::Overflow},
    {"22003", DatabaseErrorNumber::Overflow},      {"22012", DatabaseErrorNumber::Failure},
    {"22", DatabaseErrorNumber::TypeMismatch},     {"23", DatabaseErrorNumber::ConstraintViolated},
    {"25006", DatabaseErrorNumber::NotPermitted},  {"40", DatabaseErrorNumber::Locked},
    {"42501", DatabaseErrorNumber::NotPermitted},  {"42703", DatabaseErrorNumber::UnknownColumn},
    {"42P01", DatabaseErrorNumber::UnknownTable},  {"42S02", DatabaseErrorNumber::UnknownTable},
    {"42S22", DatabaseErrorNumber::UnknownColumn}, {"42", DatabaseErrorNumber::Syntax},
    {"37000", DatabaseErrorNumber::Syntax},        {"53100", DatabaseErrorNumber::DiskFull},
    {"55P03", DatabaseErrorNumber::Locked},        {"57014", DatabaseErrorNumber::Cancelled},
    {"HY001", DatabaseErrorNumber::OutOfMemory},   {"HY008", DatabaseErrorNumber::Cancelled},
    {"HY013", DatabaseErrorNumber::OutOfMemory},   {"HYT00", DatabaseErrorNumber::Locked},
    {"S0002", DatabaseErrorNumber::UnknownTable},  {"S0022", DatabaseErrorNumber::UnknownColumn},
};

// SQL Server's own number for a lock that it has waited for too long; its state is that of any refusal.
constexpr std::int32_t kLockTimeout = 1222;

/// Without the names of the manager and the driver, which stand before it in brackets.
std::string_view WithoutOrigins(std::string_view message) {
    while (message.starts_with('[')) {
        const auto end = message.find(']');
        if (end == message.npos) break;
        message.remove_prefix(end + 1);
    }
    while (message.ends_with('\n') || message.ends_with(' ')) message.remove_suffix(1);
    return message;
}

}  // namespace

DriverError ErrorOf(std::int16_t type, void* handle) {
    constexpr SQLSMALLINT kLongestMessage = 1024;
    constexpr SQLSMALLINT kMostRecords = 5;
    DriverError error;
    for (SQLSMALLINT record = 1; record <= kMostRecords; ++record) {
        SQLWCHAR state[SQL_SQLSTATE_SIZE + 1] = {};
        SQLWCHAR message[kLongestMessage] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        if (!SQL_SUCCEEDED(LoadedLibrary().GetDiagnostics(type, handle, record, state, &native, message,
                                                          kLongestMessage, &length)))
            break;
        if (record == 1) {
            error.state = NarrowUntilZero(state);
            error.native = native;
        } else {
            error.message += "; ";
        }
        error.message += WithoutOrigins(NarrowUntilZero(message));
    }
    return error;
}

void RaiseFailure(const DriverError& error, std::string_view statement) {
    const auto* const found =
        std::ranges::find_if(kStates, [&](const StateMeaning& each) { return error.state.starts_with(each.state); });
    auto number = found == std::end(kStates) ? DatabaseErrorNumber::Failure : found->number;
    if (error.native == kLockTimeout) number = DatabaseErrorNumber::Locked;
    const std::string said = error.state.empty() ? Message("the driver does not say why")
                                                 : error.message + " (SQLSTATE " + error.state + ")";
    const auto textOf = [&]() -> std::string {
        if (error.EndsConnection()) {
            return Message(
                "The connection to the server failed ({1}); open the book again: what was not saved before is not "
                "in it",
                said);
        }
        switch (number) {
            case DatabaseErrorNumber::Locked:
                return Message("The book is in use by another program; try again later: {1}", said);
            case DatabaseErrorNumber::Cancelled:
                return Message("The statement was interrupted");
            case DatabaseErrorNumber::Overflow:
                return Message("Overflow: {1}", said);
            default:
                return said;
        }
    };
    throw DatabaseError(static_cast<std::int32_t>(number), textOf(), std::string(statement));
}

}  // namespace kpTables::engines::odbc
