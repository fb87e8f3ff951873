// How the drivers' errors become this library's.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kpTables::engines::odbc {

/// What a driver says about a failed call.
struct DriverError {
    std::string state = {};   ///< SQLSTATE of its first record; "" when the driver says nothing
    std::int32_t native = 0;  ///< the server's own number
    std::string message = {};

    /// Whether the connection, or the server's transaction, is gone with it.
    bool EndsConnection() const noexcept { return state.starts_with("08"); }
    /// Whether the user was refused, perhaps for want of a password.
    bool RefusesUser() const noexcept { return state.starts_with("28"); }
    bool EndsTransaction() const noexcept { return state.starts_with("40") || EndsConnection(); }
};

/// What the driver said about the last call on a handle. type: SQL_HANDLE_ENV, ...
DriverError ErrorOf(std::int16_t type, void* handle);

/// Raises the DatabaseError that it stands for. statement is the text that the caller sent.
[[noreturn]] void RaiseFailure(const DriverError& error, std::string_view statement);

}  // namespace kpTables::engines::odbc
