// What the front end raises when it cannot read, resolve or print a statement.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace kpTables::sql {

enum class ErrorKind { Syntax, UnknownTable, UnknownColumn, TypeMismatch, Overflow, Unsupported };

/// The message names the token; offset is the byte position in the statement's text.
class SqlError : public std::runtime_error {
public:
    /// located: the message says line and column already.
    SqlError(ErrorKind kind, const std::string& message, std::size_t offset, bool located = false)
        : std::runtime_error(message), kind_(kind), offset_(offset), located_(located) {}
    ErrorKind Kind() const noexcept { return kind_; }
    std::size_t Offset() const noexcept { return offset_; }
    bool Located() const noexcept { return located_; }

private:
    ErrorKind kind_;
    std::size_t offset_;
    bool located_;
};

}  // namespace kpTables::sql
