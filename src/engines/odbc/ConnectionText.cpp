#include "engines/odbc/ConnectionText.h"

#include <algorithm>
#include <cstdint>

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
    std::string_view written;  ///< with its value
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
    }
    const Attribute attribute{name, text.substr(0, at)};
    text.remove_prefix(std::min(at + 1, text.size()));
    return attribute;
}

}  // namespace

std::string ConnectionText(std::string_view address) {
    std::string connection;
    for (std::string_view rest = address; !rest.empty();) {
        const Attribute attribute = TakeAttribute(rest);
        if (attribute.name.empty()) continue;
        if (sql::SameName(attribute.name, "PWD") || sql::SameName(attribute.name, "Password")) {
            RefuseConnection(
                Message("The book cannot be opened: a password does not belong into a URL; leave it out, and it is "
                        "asked for"));
        }
        if (!connection.empty()) connection += ';';
        connection += attribute.written;
    }
    if (connection.empty()) {
        RefuseConnection(
            Message("The book cannot be opened: say which data source, as in odbc:DSN=shop or "
                    "odbc:Driver={ODBC Driver 18 for SQL Server};Server=shop-server;Database=books"));
    }
    return connection;
}

std::string WithPassword(std::string connection, std::string_view password) {
    connection += ";PWD={";
    for (const char c : password) connection.append(c == '}' ? 2 : 1, c);
    return connection + "}";
}

}  // namespace kpTables::engines::odbc
