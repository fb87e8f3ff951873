#include "engines/postgres/Failure.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::postgres {

namespace {

struct Meaning {
    std::string_view state;  ///< or its beginning, its class
    DatabaseErrorNumber number;
    const char* text;  ///< to be translated; nullptr: the server's own words
};

constexpr const char* kSharing = Translatable(
    "A pooler before the server passes a program's statements to several connections of the server's; set pool_mode = session "
    "and server_reset_query = DISCARD ALL in it, or connect to the server itself");

constexpr Meaning kMeanings[] = {
    {"2200H", DatabaseErrorNumber::Overflow, Translatable("Overflow: the counter has no values left")},
    {"22003", DatabaseErrorNumber::Overflow, nullptr},
    {"22008", DatabaseErrorNumber::TypeMismatch, nullptr},
    {"22012", DatabaseErrorNumber::Failure, Translatable("Division by zero")},
    {"22", DatabaseErrorNumber::TypeMismatch, nullptr},
    {"23", DatabaseErrorNumber::ConstraintViolated, nullptr},
    {"KP006", DatabaseErrorNumber::Overflow, nullptr},
    {"25006", DatabaseErrorNumber::NotPermitted,
     Translatable("The book is open for reading only and cannot be changed")},
    {"26000", DatabaseErrorNumber::Failure, kSharing},  // what was prepared is not there
    {"34000", DatabaseErrorNumber::Failure, kSharing},  // nor what a connection begins with
    {"40", DatabaseErrorNumber::Locked, Translatable("The book is in use by another program; try again later")},
    {"42P05", DatabaseErrorNumber::Failure, kSharing},  // what somebody else has prepared is
    {"42501", DatabaseErrorNumber::NotPermitted, nullptr},
    {"42703", DatabaseErrorNumber::UnknownColumn, nullptr},
    {"42P01", DatabaseErrorNumber::UnknownTable, nullptr},
    {"53100", DatabaseErrorNumber::DiskFull, Translatable("The server's disk is full: the change was not saved")},
    {"53200", DatabaseErrorNumber::OutOfMemory, Translatable("There is not enough memory on the server")},
    {"55P03", DatabaseErrorNumber::Locked, Translatable("The book is in use by another program; try again later")},
    {"57014", DatabaseErrorNumber::Cancelled, Translatable("The statement was interrupted")},
    {"58030", DatabaseErrorNumber::DiskFailure, nullptr},
    {"XX001", DatabaseErrorNumber::Damaged, nullptr},
    {"XX002", DatabaseErrorNumber::Damaged, nullptr},
};

/// The values that a unique key has twice: "Key (a, b)=(1, 2) already exists." names the columns.
std::string KeyOf(const ServerError& error) {
    const auto begin = error.detail.find('(');
    const auto end = error.detail.find(")=");
    if (begin == std::string::npos || end == std::string::npos) return error.constraint;
    return error.table + "." + error.detail.substr(begin + 1, end - begin - 1);
}

std::string OfConstraint(const ServerError& error) {
    if (error.state == "23502") return Message("The field '{1}' must not be Null", error.table + "." + error.column);
    if (error.state == "23505") {
        return Message("The change would make a duplicate key: there is a row already with this value of {1}",
                       KeyOf(error));
    }
    return Message("The value is not allowed: {1}", error.message);
}

}  // namespace

void RaiseSharing() {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), Translated(kSharing));
}

void RaiseFailure(const ServerError& error, std::string_view statement) {
    const auto* const found =
        std::ranges::find_if(kMeanings, [&](const Meaning& meaning) { return error.state.starts_with(meaning.state); });
    const bool known = found != std::end(kMeanings);
    std::string text = known && found->text ? Translated(found->text) : error.message;
    if (error.state.starts_with("23")) text = OfConstraint(error);
    if (error.state == "22003") text = Message("Overflow: {1}", text);
    if (error.state == "42883") text = Message("The server does not have this function: {1}", error.message);
    throw DatabaseError(static_cast<std::int32_t>(known ? found->number : DatabaseErrorNumber::Failure), text,
                        std::string(statement));
}

}  // namespace kpTables::engines::postgres
