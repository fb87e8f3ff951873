#include "engines/odbc/ConnectionText.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"

namespace kpTables::engines::odbc {

namespace {

[[noreturn]] void RefuseConnection(const std::string& message) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), message);
}

struct Attribute {
    std::string_view name;
    std::string_view value;    ///< as written, perhaps in braces
    std::string_view written;  ///< the whole
};

std::string_view WithoutBlanks(std::string_view text) noexcept {
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
    return text;
}

/// Takes the first attribute off the text. A value in braces may contain semicolons, and a closing brace doubled.
Attribute TakeAttribute(std::string_view& text) {
    const auto equals = std::min(text.find('='), text.find(';'));
    std::size_t at = equals == text.npos ? text.size() : equals;
    const std::string_view name = WithoutBlanks(text.substr(0, at));
    std::string_view value;
    if (at < text.size() && text[at] == '=') {
        const std::size_t begin = at + 1;
        std::size_t end = text.find_first_not_of(' ', begin);
        if (end != text.npos && text[end] == '{') {
            for (++end; end < text.size() && (text[end] != '}' || text.substr(end, 2) == "}}"); ++end) {
                if (text[end] == '}') ++end;
            }
        } else {
            end = begin;
        }
        at = std::min(text.find(';', end), text.size());
        value = WithoutBlanks(text.substr(begin, at - begin));
    }
    const Attribute attribute{name, value, text.substr(0, at)};
    text.remove_prefix(std::min(at + 1, text.size()));
    return attribute;
}

std::string Unbraced(std::string_view value) {
    if (!value.starts_with('{') || !value.ends_with('}') || value.size() < 2) return std::string(value);
    std::string plain;
    const std::string_view inside = value.substr(1, value.size() - 2);
    for (std::size_t i = 0; i < inside.size(); ++i) {
        plain += inside[i];
        if (inside.substr(i, 2) == "}}") ++i;
    }
    return plain;
}

std::string Braced(std::string_view value) {
    std::string braced = "{";
    for (const char c : value) braced.append(c == '}' ? 2 : 1, c);
    return braced + "}";
}

/// The first line of a file that is nobody else's to read.
std::string PasswordIn(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error || !fs::is_regular_file(status))
        RefuseConnection(Message("The password's file '{1}' cannot be read", path));
    if ((status.permissions() & (fs::perms::group_all | fs::perms::others_all)) != fs::perms::none)
        RefuseConnection(Message("The password's file '{1}' can be read by others; chmod 600 keeps it to you", path));
    std::ifstream file(path);
    std::string password;
    if (!std::getline(file, password)) RefuseConnection(Message("The password's file '{1}' is empty", path));
    if (password.ends_with('\r')) password.pop_back();
    return password;
}

}  // namespace

std::string ConnectionText(std::string_view address) {
    std::string connection;
    for (std::string_view rest = address; !rest.empty();) {
        const Attribute attribute = TakeAttribute(rest);
        if (attribute.name.empty()) continue;
        if (sql::SameName(attribute.name, "PWD") || sql::SameName(attribute.name, "Password")) {
            RefuseConnection(
                Message("The book cannot be opened: a password does not belong into a URL; write it into a file that "
                        "only you can read and put PasswordFile=FILE into the URL"));
        }
        if (!connection.empty()) connection += ';';
        if (sql::SameName(attribute.name, "PasswordFile")) {
            connection += "PWD=" + Braced(PasswordIn(Unbraced(attribute.value)));
        } else {
            connection += attribute.written;
        }
    }
    if (connection.empty()) {
        RefuseConnection(
            Message("The book cannot be opened: say which data source, as in odbc:DSN=shop or "
                    "odbc:Driver={ODBC Driver 18 for SQL Server};Server=shop-server;Database=books"));
    }
    return connection;
}

}  // namespace kpTables::engines::odbc
