#include "engines/common/Failure.h"

#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/Position.h"

namespace kpTables::engines {

namespace {

DatabaseErrorNumber NumberOf(sql::ErrorKind kind) noexcept {
    switch (kind) {
        case sql::ErrorKind::UnknownTable:
            return DatabaseErrorNumber::UnknownTable;
        case sql::ErrorKind::UnknownColumn:
            return DatabaseErrorNumber::UnknownColumn;
        case sql::ErrorKind::TypeMismatch:
            return DatabaseErrorNumber::TypeMismatch;
        case sql::ErrorKind::Overflow:
            return DatabaseErrorNumber::Overflow;
        case sql::ErrorKind::Syntax:
        case sql::ErrorKind::Unsupported:
            break;
    }
    return DatabaseErrorNumber::Syntax;
}

[[noreturn]] void RaiseFailure(const std::string& message, std::string_view statement) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), message, std::string(statement));
}

}  // namespace

void RaiseRefusal(const sql::SqlError& refusal, std::string_view statement) {
    std::string message = refusal.what();
    if (!refusal.Located()) {
        const sql::Position at = sql::Locate(statement, refusal.Offset());
        message += " (" + sql::PlaceText(at) + ")";
    }
    throw DatabaseError(static_cast<std::int32_t>(NumberOf(refusal.Kind())), message, std::string(statement),
                        refusal.Offset());
}

void RaiseColumnsChanged(std::string_view statement) {
    RaiseFailure(Message("another program has changed the table's columns; open the recordset again"), statement);
}

void RaiseRowGone(std::string_view statement) {
    RaiseFailure(Message("The row cannot be found for updating: it was deleted after it had been read"), statement);
}

void RaiseRowChanged(std::string_view statement) {
    RaiseFailure(Message("The row was not changed, since it has been changed after it had been read, for instance by "
                         "another program; read it again"),
                 statement);
}

}  // namespace kpTables::engines
