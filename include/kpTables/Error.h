// The error that every failing call raises, with Visual Basic's numbers and texts.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace kpTables {

/// Base of all errors of this library: the content of Visual Basic's Err object.
class Error : public std::runtime_error {
public:
    Error(std::int32_t number, const std::string& description, std::string source = "kpTables");

    std::int32_t Number() const noexcept { return number_; }
    std::string Description() const { return what(); }
    const std::string& Source() const noexcept { return source_; }

private:
    std::int32_t number_;
    std::string source_;
};

/// A database error for a statement. Number is ADO's HRESULT as a signed 32-bit number.
class DatabaseError : public Error {
public:
    DatabaseError(std::int32_t number, const std::string& description, std::string statement = {},
                  std::optional<std::size_t> position = std::nullopt);

    /// The text that was sent, as the caller wrote it.
    const std::string& Statement() const noexcept { return statement_; }
    /// Byte offset of the error in Statement(), if the engine gives it.
    std::optional<std::size_t> Position() const noexcept { return position_; }

private:
    std::string statement_;
    std::optional<std::size_t> position_;
};

/// Visual Basic's run-time error numbers that this library raises.
enum class ErrorNumber : std::int32_t {
    InvalidCall = 5,            ///< Invalid procedure call or argument
    Overflow = 6,               ///< Overflow
    SubscriptOutOfRange = 9,    ///< Subscript out of range
    DivisionByZero = 11,        ///< Division by zero
    TypeMismatch = 13,          ///< Type mismatch
    ObjectNotSet = 91,          ///< Object variable or With block variable not set
    InvalidUseOfNull = 94,      ///< Invalid use of Null
    UnknownMember = 438,        ///< Object doesn't support this property or method
    ArgumentNotOptional = 449,  ///< Argument not optional
    WrongArgumentCount = 450,   ///< Wrong number of arguments or invalid property assignment
    NoCurrentRecord = 3021,     ///< Either BOF or EOF is True, or the current record has been deleted
    ItemNotFound = 3265,        ///< Item cannot be found in the collection of the requested name or ordinal
    InvalidArgument = 3001,     ///< Arguments are of the wrong type, out of range or in conflict
    ObjectClosed = 3704,        ///< Operation is not allowed when the object is closed
    NotUpdatable = 3251,        ///< Current Recordset does not support updating
};

/// ADO's numbers for database errors.
enum class DatabaseErrorNumber : std::int32_t {
    Failure = -2147467259,             ///< 0x80004005: anything else, such as a file that is no book
    Syntax = -2147217900,              ///< 0x80040E14: the statement cannot be read
    UnknownColumn = -2147217904,       ///< 0x80040E10: a name that is no column (Jet takes it for a parameter)
    UnknownTable = -2147217865,        ///< 0x80040E37: an unknown table
    TypeMismatch = -2147217913,        ///< 0x80040E07: a value that does not fit its column or comparison
    Overflow = -2147217833,            ///< 0x80040E57: a number too large for its type
    ConstraintViolated = -2147217873,  ///< 0x80040E2F: a duplicate key or a forbidden Null
    NotPermitted = -2147217911,        ///< 0x80040E09: the book is read-only
    Locked = -2147217887,              ///< 0x80040E21: another program holds the book
    Cancelled = -2147217842,           ///< 0x80040E4E: the host has ended the statement
    ResultTooLarge = -2147217864,      ///< 0x80040E38: a result with too many rows or for which there is no memory
    OutOfMemory = -2147024882,         ///< 0x8007000E
    DiskFull = -2147024784,            ///< 0x80070070: the change was not saved
    DiskFailure = -2147023779,         ///< 0x8007045D: the book's file could not be read or written
    Damaged = -2147023504,             ///< 0x80070570: the book's file is damaged
};

/// The text that Visual Basic shows for a run-time error number.
const char* ErrorText(ErrorNumber number) noexcept;

/// Raises the numbered run-time error; detail, when given, follows its standard text after a colon.
[[noreturn]] void Raise(ErrorNumber number, const std::string& detail = {});

}  // namespace kpTables
