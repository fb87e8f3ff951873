#include "engines/postgres/ServerUrl.h"

#include <charconv>
#include <cstdint>
#include <string_view>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::postgres {

namespace {

[[noreturn]] void RefuseUrl(const std::string& url, const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("The book '{1}' cannot be opened: {2}", url, complaint));
}

std::string Decoded(std::string_view encoded) {
    constexpr int kHexadecimal = 16;
    constexpr std::size_t kDigits = 2;
    std::string decoded;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        unsigned char byte = 0;
        const auto* const digits = encoded.data() + i + 1;
        const bool isCode = encoded[i] == '%' && i + kDigits < encoded.size() &&
                            std::from_chars(digits, digits + kDigits, byte, kHexadecimal).ptr == digits + kDigits;
        decoded += isCode ? static_cast<char>(byte) : encoded[i];
        if (isCode) i += kDigits;
    }
    return decoded;
}

std::string Encoded(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                             c == '_' || c == '.';
        const auto byte = static_cast<unsigned char>(c);
        if (isPlain) {
            encoded += c;
        } else {
            encoded.append({'%', kDigits[byte / kDigits.size()], kDigits[byte % kDigits.size()]});
        }
    }
    return encoded;
}

bool HasPassword(std::string_view address) {
    const auto begin = address.find("//");
    if (begin == address.npos) return false;
    const auto host = address.substr(begin + 2, address.find('/', begin + 2) - begin - 2);
    const auto user = host.substr(0, host.find('@') == host.npos ? 0 : host.find('@'));
    return user.find(':') != user.npos || address.find("password=") != address.npos;
}

}  // namespace

ServerUrl ParseDatabaseUrl(const std::string& address) {
    if (HasPassword(address)) {
        // The message leaves the URL out.
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                            Message("The book cannot be opened: a password does not belong into a URL; put it into the "
                                    "file ~/.pgpass or into the environment variable PGPASSWORD"));
    }
    const auto question = address.find('?');
    ServerUrl parts{"postgresql:" + address.substr(0, question), ""};
    char separator = '?';
    for (auto at = question; at != std::string::npos;) {
        const auto end = address.find('&', at + 1);
        const std::string option = address.substr(at + 1, end == std::string::npos ? end : end - at - 1);
        constexpr std::string_view kBook = "book=";
        if (option.starts_with(kBook)) {
            parts.book = Decoded(option.substr(kBook.size()));
        } else if (!option.empty()) {
            parts.connection.append(1, separator).append(option);
            separator = '&';
        }
        at = end;
    }
    return parts;
}

std::string WithOption(const std::string& connection, const std::string& name, const std::string& value) {
    return connection + (connection.find('?') == std::string::npos ? '?' : '&') + name + '=' + Encoded(value);
}

std::string UrlOfBook(const ServerUrl& parts, const std::string& book) {
    return WithOption(parts.connection, "book", book);
}

ServerUrl ParseServerUrl(const std::string& address, const std::string& url) {
    ServerUrl parts = ParseDatabaseUrl(address);
    if (parts.book.empty()) RefuseUrl(url, Message("say which one, as in postgresql://user@host/database?book=2026"));
    constexpr std::size_t kLongestName = 63;
    if (parts.book.size() > kLongestName || parts.book.starts_with("pg_") || parts.book == "kp" ||
        parts.book == "public" || parts.book == "information_schema") {
        RefuseUrl(
            url,
            Message("a book's name has at most 63 bytes, does not begin with pg_ and is none of the server's own"));
    }
    return parts;
}

}  // namespace kpTables::engines::postgres
