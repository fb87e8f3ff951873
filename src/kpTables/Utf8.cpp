#include "kpTables/Utf8.h"

namespace kpTables {
namespace {

constexpr DecodedCharacter kMalformed{U'\uFFFD', 1};

}  // namespace

DecodedCharacter DecodeUtf8(std::string_view text) noexcept {
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t bytes = lead >= 0xF0 && lead < 0xF5 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return kMalformed;

    char32_t character = lead & (0xFFU >> (bytes + 1));
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return kMalformed;
        character = character << 6 | (byte(i) & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kSmallest[bytes - 2] || character > 0x10FFFF || surrogate) return kMalformed;
    return {character, bytes};
}

std::size_t Utf16Length(std::string_view text) noexcept {
    std::size_t units = 0;
    while (!text.empty()) {
        const auto [character, bytes] = DecodeUtf8(text);
        units += character > 0xFFFF ? 2 : 1;
        text.remove_prefix(bytes);
    }
    return units;
}

}  // namespace kpTables
