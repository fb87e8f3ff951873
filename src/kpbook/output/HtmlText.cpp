#include "kpbook/output/HtmlText.h"

#include "kpbook/Utf8.h"

namespace kpTables::kpbook::output {

std::string HtmlText(std::string_view text) {
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kDelete = 0x7f;
    std::string escaped;
    for (const char character : ReplaceInvalidUtf8(text)) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '&') {
            escaped += "&amp;";
        } else if (character == '<') {
            escaped += "&lt;";
        } else if (character == '>') {
            escaped += "&gt;";
        } else if (character == '"') {
            escaped += "&quot;";
        } else if (character == '\'') {
            escaped += "&#39;";
        } else if (character == '\n' || character == '\t' || (byte >= kFirstPrintable && byte != kDelete)) {
            escaped += character;
        } else {
            escaped += "\xEF\xBF\xBD";
        }
    }
    return escaped;
}

}  // namespace kpTables::kpbook::output
