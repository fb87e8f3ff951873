// Three texts (their first bytes, four bits each, are their lengths) must be in a total order: antisymmetric and
// transitive, with one hash for equal texts and no others; and ICU must order them in the same way, but for the
// deviations that the tests of the order name.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "IcuOrder.h"
#include "Input.h"
#include "text/FoldedText.h"
#include "text/TextOrder.h"
#include "text/Utf8.h"

namespace {

using kpTables::fuzz::Input;
using kpTables::fuzz::Require;
namespace text = kpTables::text;

int Sign(int value) { return (value > 0) - (value < 0); }

bool IsMark(char32_t c) {
    constexpr struct {
        char32_t first, last;
    } kBlocks[] = {{0x300, 0x36F},   {0x483, 0x487},   {0x591, 0x5C7},   {0x610, 0x61A},    {0x64B, 0x65F},
                   {0x670, 0x670},   {0x6D6, 0x6ED},   {0x711, 0x7FF},   {0x816, 0x1CFF},   {0x1DC0, 0x1DFF},
                   {0x20D0, 0x20FF}, {0x2CEF, 0x2DFF}, {0x302A, 0x302F}, {0x3099, 0x309A},  {0xA66F, 0xAAFF},
                   {0xABE3, 0xABED}, {0xFB1E, 0xFB1E}, {0xFE20, 0xFE2F}, {0x101FD, 0x1FFFF}};
    for (const auto& block : kBlocks)
        if (c >= block.first && c <= block.last) return true;
    return false;
}

/// No invalid byte, no name that ICU reads as a whole, no mark of an index, no mark behind another one.
bool IsOrderedAsIcu(std::string_view value) {
    if (!text::IsValidUtf8(value)) return false;
    bool afterMark = false;
    for (std::size_t at = 0; at < value.size();) {
        const char32_t c = text::NextCharacter(value, at);
        for (const char32_t deviating : {U'重', U'沈', char32_t{0xF972}, U'藏', char32_t{0xFDD0}, char32_t{0xFDD1}})
            if (c == deviating) return false;
        const bool isMark = IsMark(c);
        if (isMark && afterMark) return false;
        afterMark = isMark;
    }
    return true;
}

void CheckPair(std::string_view left, std::string_view right) {
    static const text::IcuOrder icu;
    const int order = Sign(text::CompareTexts(left, right));
    Require(order == -Sign(text::CompareTexts(right, left)), "antisymmetric", left);
    Require((order == 0) == (text::HashOfText(left) == text::HashOfText(right)), "one hash for equal texts", left);
    if (IsOrderedAsIcu(left) && IsOrderedAsIcu(right)) {
        Require(order == icu.Compare(left, right), "ordered as ICU orders", left);
    }
    const auto folded = text::CompareFolded(left, right);
    Require(
        folded == 0 ? text::CompareFolded(right, left) == 0 : (folded < 0) == (text::CompareFolded(right, left) > 0),
        "folded: antisymmetric", left);
    Require((folded == 0) == (text::HashFolded(left) == text::HashFolded(right)), "folded: one hash", left);
}

void CheckTriple(std::string_view a, std::string_view b, std::string_view c) {
    const int ab = Sign(text::CompareTexts(a, b));
    const int bc = Sign(text::CompareTexts(b, c));
    const int ac = Sign(text::CompareTexts(a, c));
    if (ab == bc) Require(ac == ab, "transitive", a);
    if (ab == 0) Require(ac == bc, "equal texts compare alike", a);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr unsigned kLength = 16;
    Input input(data, size);
    const std::uint8_t lengths = input.Byte();
    const std::string_view a = input.Text(lengths % kLength);
    const std::string_view b = input.Text(lengths / kLength);
    const std::string_view c = input.Rest();
    Require(text::CompareTexts(a, a) == 0, "reflexive", a);
    CheckPair(a, b);
    CheckPair(b, c);
    CheckPair(a, c);
    CheckTriple(a, b, c);
    CheckTriple(b, c, a);
    CheckTriple(c, a, b);
    return 0;
}
