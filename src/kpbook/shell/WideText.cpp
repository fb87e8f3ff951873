#include "kpbook/shell/WideText.h"

#include <bit>
#include <cstdint>

namespace kpTables::kpbook::shell {

static_assert(sizeof(wchar_t) == 4, "a wide character is a code point");

std::size_t SequenceLength(char lead) noexcept {
    const auto byte = static_cast<unsigned char>(lead);
    return byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
}

std::wstring WideText(std::string_view text) {
    std::wstring wide;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = SequenceLength(text[at]);
        auto code = static_cast<std::uint32_t>(static_cast<unsigned char>(text[at]));
        if (length > 1) code &= 0xFFu >> (length + 1);
        for (std::size_t i = 1; i < length && at + i < text.size(); ++i) {
            code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3Fu);
        }
        wide += static_cast<wchar_t>(code);
        at += length;
    }
    return wide;
}

std::string NarrowText(std::wstring_view text) {
    std::string narrow;
    const auto append = [&narrow](std::uint32_t byte) { narrow += static_cast<char>(byte); };
    for (const wchar_t character : text) {
        const auto code = std::bit_cast<std::uint32_t>(character);
        if (code < 0x80) {
            append(code);
            continue;
        }
        const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        append((more == 1 ? 0xC0u : more == 2 ? 0xE0u : 0xF0u) | code >> (6 * more));
        for (int i = more - 1; i >= 0; --i) append(0x80u | (code >> (6 * i) & 0x3Fu));
    }
    return narrow;
}

}  // namespace kpTables::kpbook::shell
