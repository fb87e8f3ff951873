#include "engines/BookUrl.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "platform/Paths.h"

namespace kpTables::engines {

namespace {

bool IsLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsSchemeCharacter(char c) noexcept {
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

[[noreturn]] void Refuse(std::string_view url, const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("The book '{1}' cannot be opened: {2}", url, complaint));
}

std::string_view SchemeOf(std::string_view url) noexcept {
    constexpr std::size_t kShortest = 2;
    const auto end = std::find_if_not(url.begin(), url.end(), IsSchemeCharacter);
    const auto size = static_cast<std::size_t>(end - url.begin());
    const bool scheme = size >= kShortest && size < url.size() && *end == ':' && IsLetter(url[0]);
    return scheme ? url.substr(0, size) : std::string_view();
}

std::string PercentDecoded(std::string_view encoded, std::string_view url) {
    constexpr int kHexadecimal = 16;
    constexpr std::size_t kDigits = 2;
    std::string decoded;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '%') {
            decoded += encoded[i];
            continue;
        }
        const std::string_view digits = encoded.substr(i + 1, kDigits);
        unsigned char byte = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, kHexadecimal);
        if (digits.size() != kDigits || error != std::errc() || end != digits.data() + kDigits) {
            Refuse(url, Message("a % in a file's URL begins two hexadecimal digits"));
        }
        decoded += static_cast<char>(byte);
        i += kDigits;
    }
    return decoded;
}

std::string FilePath(std::string_view address, std::string_view url) {
    if (address.find_first_of("?#") != address.npos) Refuse(url, Message("a file's URL has no query and no fragment"));
    constexpr std::string_view kAuthority = "//";
    if (address.starts_with(kAuthority)) {
        address.remove_prefix(kAuthority.size());
        const auto host = address.substr(0, std::min(address.find('/'), address.size()));
        if (!host.empty() && host != "localhost") Refuse(url, Message("the file is on another computer"));
        address.remove_prefix(host.size());
    }
    std::string path = PercentDecoded(address, url);
    if constexpr (platform::kHasDrives) {
        constexpr std::size_t kColon = 2;
        if (path.size() > kColon && path[0] == '/' && IsLetter(path[1]) && path[kColon] == ':') return path.substr(1);
    }
    return path;
}

}  // namespace

BookUrl ParseBookUrl(const std::string& url) {
    const std::string_view written = SchemeOf(url);
    if (written.empty()) return {"file", url};
    std::string scheme(written);
    std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const std::string_view address = std::string_view(url).substr(written.size() + 1);
    std::string decoded = scheme == "file" ? FilePath(address, url) : std::string(address);
    return {std::move(scheme), std::move(decoded)};
}

}  // namespace kpTables::engines
