#include "kpbook/Utf8.h"

#include <utf8proc.h>

namespace kpTables::kpbook {

void AppendControl(std::string& out, unsigned char control, std::string_view prefix) {
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
            out += prefix;
            out += kDigits[control >> 4];
            out += kDigits[control & 15];
    }
}

std::size_t DisplayWidth(std::string_view text) noexcept {
    std::size_t width = 0;
    while (!text.empty()) {
        const auto ascii = text::AsciiPrefix(text);
        width += ascii;
        text.remove_prefix(ascii);
        if (text.empty()) break;
        const auto [character, bytes] = text::DecodeUtf8(text);
        width += static_cast<std::size_t>(utf8proc_charwidth(static_cast<utf8proc_int32_t>(character)));
        text.remove_prefix(bytes);
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
