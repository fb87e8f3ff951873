#include "text/FoldedText.h"

#include <algorithm>

#include "text/Ascii.h"

namespace kpTables::text {

namespace {

unsigned char Folded(char c) noexcept { return static_cast<unsigned char>(Lower(c)); }

}  // namespace

std::string_view WithoutTrailingBlanks(std::string_view text) noexcept {
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::strong_ordering CompareFolded(std::string_view left, std::string_view right) noexcept {
    left = WithoutTrailingBlanks(left);
    right = WithoutTrailingBlanks(right);
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto a = Folded(left[i]), b = Folded(right[i]);
        if (a != b) return a <=> b;
    }
    return left.size() <=> right.size();
}

void AppendFolded(std::string_view text, std::size_t most, std::vector<std::uint64_t>& numbers) {
    constexpr std::size_t kInNumber = sizeof(std::uint64_t);
    text = WithoutTrailingBlanks(text);
    for (std::size_t at = 0; at < text.size() && most > 0; at += kInNumber, --most) {
        std::uint64_t number = 0;
        for (std::size_t i = at; i < at + kInNumber; ++i)
            number = number << 8U | (i < text.size() ? Folded(text[i]) : 0U);
        numbers.push_back(number);
    }
}

std::uint64_t HashFolded(std::string_view text) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325u;  // FNV-1a
    for (char c : WithoutTrailingBlanks(text)) hash = (hash ^ Folded(c)) * 0x100000001B3u;
    return hash;
}

}  // namespace kpTables::text
