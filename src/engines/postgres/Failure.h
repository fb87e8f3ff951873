// How the server's errors become this library's.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::engines::postgres {

/// What the server says about a failed statement.
struct ServerError {
    std::string state = {};  ///< SQLSTATE
    std::string message = {};
    std::string table = {};
    std::string column = {};
    std::string constraint = {};
    std::string detail = {};
};

/// Raises the DatabaseError that it stands for. statement is the text that the caller sent.
[[noreturn]] void RaiseFailure(const ServerError& error, std::string_view statement);

/// Raises the DatabaseError of a pooler that gives programs no connection of their own.
[[noreturn]] void RaiseSharing();

}  // namespace kpTables::engines::postgres
