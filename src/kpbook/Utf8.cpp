#include "kpbook/Utf8.h"

#include <utf8proc.h>

#include <cstdint>
#include <cstring>

namespace kpTables::kpbook {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Length of the ASCII characters that the text begins with.
std::size_t AsciiPrefix(std::string_view text) noexcept {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        if (word & kHighBits) break;
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
    return at;
}

/// The character that the text begins with and its length in bytes; a length below 1 when it is none.
std::ptrdiff_t NextCharacter(std::string_view text, utf8proc_int32_t& character) noexcept {
    return utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                            static_cast<utf8proc_ssize_t>(text.size()), &character);
}

void AppendControl(std::string& out, unsigned char control) {
    constexpr char kDigits[] = "0123456789abcdef";
    switch (control) {
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += "\\x";
            out += kDigits[control >> 4];
            out += kDigits[control & 15];
    }
}

}  // namespace

bool IsValidUtf8(std::string_view text) noexcept {
    for (;;) {
        text.remove_prefix(AsciiPrefix(text));
        if (text.empty()) return true;
        utf8proc_int32_t character = 0;
        const auto length = NextCharacter(text, character);
        if (length < 1) return false;
        text.remove_prefix(static_cast<std::size_t>(length));
    }
}

std::string ReplaceInvalidUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        utf8proc_int32_t character = 0;
        auto length = static_cast<std::ptrdiff_t>(AsciiPrefix(text));
        if (length == 0) length = NextCharacter(text, character);
        const bool valid = length > 0;
        const auto taken = valid ? static_cast<std::size_t>(length) : 1;
        out += valid ? text.substr(0, taken) : kReplacement;
        text.remove_prefix(taken);
    }
    return out;
}

std::size_t DisplayWidth(std::string_view text) noexcept {
    std::size_t width = 0;
    while (!text.empty()) {
        const auto ascii = AsciiPrefix(text);
        width += ascii;
        text.remove_prefix(ascii);
        if (text.empty()) break;
        utf8proc_int32_t character = 0;
        const auto length = NextCharacter(text, character);
        width += length < 1 ? 1 : static_cast<std::size_t>(utf8proc_charwidth(character));
        text.remove_prefix(length < 1 ? 1 : static_cast<std::size_t>(length));
    }
    return width;
}

std::string Printable(std::string_view text) {
    std::string out;
    const std::string valid = ReplaceInvalidUtf8(text);
    out.reserve(valid.size());
    for (std::size_t at = 0; at < valid.size(); ++at) {
        const auto byte = static_cast<unsigned char>(valid[at]);
        if (byte < 0x20 || byte == 0x7F) {
            AppendControl(out, byte);
        } else if (byte == 0xC2 && static_cast<unsigned char>(valid[at + 1]) < 0xA0) {
            // U+0080 to U+009F: control characters of two bytes, which some terminals obey.
            AppendControl(out, static_cast<unsigned char>(valid[++at]));
        } else {
            out += valid[at];
        }
    }
    return out;
}

}  // namespace kpTables::kpbook
