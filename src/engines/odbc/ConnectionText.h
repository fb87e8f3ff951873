// The connection string in a book's URL: odbc:DSN=shop;UID=kp, odbc:Driver={...};Server=...
#pragma once

#include <string>
#include <string_view>

namespace kpTables::engines::odbc {

/// The connection string for the driver manager. address: the URL behind "odbc:". A password in it, which other users
/// of the machine could read, is refused with a DatabaseError whose message leaves the URL out.
std::string ConnectionText(std::string_view address);

/// The connection string with a password, whatever characters it has.
std::string WithPassword(std::string connection, std::string_view password);

}  // namespace kpTables::engines::odbc
