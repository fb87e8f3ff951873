// The connection string in a book's URL: odbc:DSN=shop;UID=kp, odbc:Driver={...};Server=...
#pragma once

#include <string>
#include <string_view>

namespace kpTables::engines::odbc {

/// The connection string for the driver manager. address: the URL behind "odbc:". A password in it, which other users
/// of the machine could read, is refused with a DatabaseError whose message leaves the URL out; PasswordFile=PATH,
/// which no driver sees, names the file whose first line is the password, and which nobody else may read.
std::string ConnectionText(std::string_view address);

}  // namespace kpTables::engines::odbc
