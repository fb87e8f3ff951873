#include "engines/sqlite/Failure.h"

#include <sqlite3.h>

#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::sqlite {

namespace {

// SQLite's own extended codes of SQLITE_ERROR are small numbers in this place; ours keep clear of them.
constexpr int kFunctionFailure = 0x4000;
constexpr int kPrimaryBits = 8;
constexpr int kPrimaryMask = 0xFF;

struct Meaning {
    DatabaseErrorNumber number;
    std::string text;
};

std::string After(std::string_view message, std::string_view mark) {
    const auto at = message.find(mark);
    return std::string(at == message.npos ? message : message.substr(at + mark.size()));
}

Meaning OfFunction(int errorNumber, std::string_view message) {
    switch (static_cast<ErrorNumber>(errorNumber)) {
        case ErrorNumber::TypeMismatch:
        case ErrorNumber::InvalidUseOfNull:
            return {DatabaseErrorNumber::TypeMismatch, std::string(message)};
        case ErrorNumber::Overflow:
            return {DatabaseErrorNumber::Overflow, std::string(message)};
        default:
            return {DatabaseErrorNumber::Failure, std::string(message)};
    }
}

Meaning OfConstraint(int code, std::string_view message) {
    const std::string where = After(message, "failed: ");
    switch (code) {
        case SQLITE_CONSTRAINT_NOTNULL:
            return {DatabaseErrorNumber::ConstraintViolated, Message("The field '{1}' must not be Null", where)};
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
            return {
                DatabaseErrorNumber::ConstraintViolated,
                Message("The change would make a duplicate key: there is a row already with this value of {1}", where)};
        default:
            return {DatabaseErrorNumber::ConstraintViolated, Message("The value is not allowed: {1}", where)};
    }
}

Meaning OfError(int code, std::string_view message) {
    if (const int function = code >> kPrimaryBits; function >= kFunctionFailure) {
        return OfFunction(function - kFunctionFailure, message);
    }
    if (message == "integer overflow") return {DatabaseErrorNumber::Overflow, ErrorText(ErrorNumber::Overflow)};
    if (message.starts_with("no such table: ")) {
        return {DatabaseErrorNumber::UnknownTable, Message("There is no table '{1}'", After(message, ": "))};
    }
    if (message.starts_with("no such column: ")) {
        return {DatabaseErrorNumber::UnknownColumn, Message("There is no column '{1}'", After(message, ": "))};
    }
    return {DatabaseErrorNumber::Failure, std::string(message)};
}

Meaning OfDisk(int code, std::string_view message) {
    switch (code) {
        case SQLITE_IOERR_NOMEM:
            return {DatabaseErrorNumber::OutOfMemory, Message("There is not enough memory")};
        case SQLITE_IOERR_SHMSIZE:
            return {DatabaseErrorNumber::DiskFull,
                    Message("The disk is full: there is no room for the files beside the book")};
        case SQLITE_IOERR_CORRUPTFS:
            return {DatabaseErrorNumber::Damaged,
                    Message("The disk says that the book's file is damaged; go on with a backup of it")};
        default:
            return {DatabaseErrorNumber::DiskFailure,
                    Message("The disk failed: the book's file could not be read or written ({1})", message)};
    }
}

Meaning MeaningOf(int code, std::string_view message) {
    switch (code & kPrimaryMask) {
        case SQLITE_ERROR:
            return OfError(code, message);
        case SQLITE_CONSTRAINT:
            return OfConstraint(code, message);
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return {DatabaseErrorNumber::Locked, Message("The book is in use by another program; try again later")};
        case SQLITE_READONLY:
            return {DatabaseErrorNumber::NotPermitted,
                    Message("The book is open for reading only and cannot be changed")};
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return {DatabaseErrorNumber::NotPermitted, Message("There is no permission to use the book's file")};
        case SQLITE_MISMATCH:
            return {DatabaseErrorNumber::TypeMismatch, ErrorText(ErrorNumber::TypeMismatch)};
        case SQLITE_TOOBIG:
            return {DatabaseErrorNumber::Overflow, Message("The text is too long")};
        case SQLITE_FULL:
            return {DatabaseErrorNumber::DiskFull, Message("The disk is full: the change was not saved")};
        case SQLITE_IOERR:
            return OfDisk(code, message);
        case SQLITE_CANTOPEN:
            return {DatabaseErrorNumber::Failure, Message("The book's file cannot be opened")};
        case SQLITE_CORRUPT:
            return {DatabaseErrorNumber::Damaged,
                    Message("The book's file is damaged ({1}); go on with a backup of it", message)};
        case SQLITE_NOTADB:
            return {DatabaseErrorNumber::Failure, Message("The file is not a book")};
        case SQLITE_NOMEM:
            return {DatabaseErrorNumber::OutOfMemory, Message("There is not enough memory")};
        case SQLITE_INTERRUPT:
            return {DatabaseErrorNumber::Cancelled, Message("The statement was interrupted")};
        default:
            return {DatabaseErrorNumber::Failure, std::string(message)};
    }
}

}  // namespace

void RaiseFailure(sqlite3* database, int code, std::string_view statement) {
    // The connection's last error says more than the bare code, but only if it belongs to this call.
    const bool own = database && (sqlite3_errcode(database) & kPrimaryMask) == (code & kPrimaryMask);
    const int extended = own ? sqlite3_extended_errcode(database) : code;
    const Meaning meaning = MeaningOf(extended, own ? sqlite3_errmsg(database) : sqlite3_errstr(code));
    throw DatabaseError(static_cast<std::int32_t>(meaning.number), meaning.text, std::string(statement));
}

bool Succeeded(int code) noexcept { return code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE; }

int FunctionFailureCode(int errorNumber) noexcept {
    return SQLITE_ERROR | (kFunctionFailure + errorNumber) << kPrimaryBits;
}

}  // namespace kpTables::engines::sqlite
