#include "text/TextOrder.h"

#include <algorithm>
#include <cstring>
#include <tuple>

#include "text/FoldedText.h"
#include "text/TextOrderTable.h"
#include "text/Utf8.h"

namespace kpTables::text {

namespace {

constexpr char32_t kFirstHangul = 0xAC00;
constexpr char32_t kLastHangul = 0xD7A3;

std::uint32_t EntryOf(char32_t c) noexcept {
    constexpr char32_t kInBlock = (1U << kBlockBits) - 1;
    constexpr char32_t kFirstOther = 0x10000;
    if (c < kFirstOther) return kBasicPlane[kBasicPlaneIndex[c >> kBlockBits] << kBlockBits | (c & kInBlock)];
    return kOtherPlanes[kOtherPlanesIndex[(c - kFirstOther) >> kBlockBits] << kBlockBits | (c & kInBlock)];
}

std::uint8_t ByteAt(std::string_view text, std::size_t at) noexcept { return static_cast<std::uint8_t>(text[at]); }

/// The character there, beyond ASCII. Most have three bytes.
DecodedCharacter DecodeAt(std::string_view text, std::size_t at) noexcept {
    const std::uint8_t lead = ByteAt(text, at);
    if ((lead & 0xF0) == 0xE0 && text.size() - at >= 3) {
        const std::uint8_t second = ByteAt(text, at + 1);
        const std::uint8_t third = ByteAt(text, at + 2);
        const char32_t c = (lead & 0x0FU) << 12 | (second & 0x3FU) << 6 | (third & 0x3FU);
        const bool isSurrogate = (c & 0xF800) == 0xD800;
        if ((second & 0xC0) == 0x80 && (third & 0xC0) == 0x80 && c > 0x7FF && !isSurrogate) return {c, 3};
    }
    return DecodeUtf8(text.substr(at));
}

const Contraction* FindContraction(char32_t first, char32_t second, char32_t third) noexcept {
    const auto end = kContractions + kContractionCount;
    const auto text = [](const Contraction& c) { return std::tie(c.text[0], c.text[1], c.text[2]); };
    const auto sought = std::tie(first, second, third);
    const auto found =
        std::lower_bound(kContractions, end, sought, [&](const Contraction& c, const auto& t) { return text(c) < t; });
    return found != end && text(*found) == sought ? found : nullptr;
}

/// The longest contraction of a character and what follows at a position, which moves past it; null for none.
const Contraction* TakeContraction(char32_t first, std::string_view text, std::size_t& at) noexcept {
    if (at == text.size()) return nullptr;
    std::size_t secondEnd = at;
    const char32_t second = NextCharacter(text, secondEnd);
    if (secondEnd < text.size()) {
        std::size_t thirdEnd = secondEnd;
        const char32_t third = NextCharacter(text, thirdEnd);
        if (const Contraction* found = FindContraction(first, second, third)) {
            at = thirdEnd;
            return found;
        }
    }
    const Contraction* found = FindContraction(first, second, 0);
    if (found) at = secondEnd;
    return found;
}

/// The weights of a character or a contraction: the first, and those that follow it.
struct Weights {
    std::uint32_t first;
    const std::uint32_t* rest = nullptr;
    const std::uint32_t* restEnd = nullptr;
};

Weights Expand(std::uint32_t expansion) noexcept {
    const std::uint32_t* first = kExpansions + (expansion >> kExpansionLengthBits);
    return {*first, first + 1, first + (expansion & ((1U << kExpansionLengthBits) - 1))};
}

/// A syllable counts as its two or three letters.
Weights ExpandHangul(char32_t c) noexcept {
    constexpr char32_t kFirstLetter = 0x1100;
    constexpr std::size_t kTrails = 28;  // none among them
    constexpr std::size_t kEndings = 21 * kTrails;
    const std::size_t number = c - kFirstHangul;
    const std::uint32_t* rest = kHangulEndings + 2 * (number % kEndings);
    return {EntryOf(kFirstLetter + static_cast<char32_t>(number / kEndings)), rest,
            rest + (number % kTrails == 0 ? 1 : 2)};
}

/// The weights of a character, given its entry, and of what it contracts with at a place, which moves past it.
Weights TakeWeights(char32_t c, std::uint32_t entry, std::string_view text, std::size_t& at) noexcept {
    if ((entry & kStarts) != 0) {
        if (const Contraction* found = TakeContraction(c, text, at)) return Expand(found->expansion);
    }
    entry &= ~(kStarts | kJoins);
    if (entry < kExpansion) return {entry};
    entry &= kPrimaryMask;
    if (entry != 0) return Expand(entry);
    return c >= kFirstHangul && c <= kLastHangul ? ExpandHangul(c) : Weights{kFirstUnlisted + c};
}

/// The weights of a text, one after the other.
class WeightReader {
public:
    WeightReader(std::string_view text, std::size_t at) noexcept : text_(text), at_(at) {}

    /// 0 at the end.
    std::uint32_t NextPrimary() noexcept {
        for (;;) {
            const std::uint32_t weight = Next();
            const std::uint32_t primary = weight & kPrimaryMask;
            hasAccents_ |= weight > kPrimaryMask;
            if (primary != 0 || weight == 0) return primary;
        }
    }

    /// 0 at the end.
    std::uint32_t NextSecondary() noexcept {
        const std::uint32_t weight = Next();
        if (weight == 0) return 0;
        const std::uint32_t secondary = weight >> kSecondaryShift;
        return secondary == 0 ? kCommonSecondary : secondary;
    }

    /// Whether a secondary weight other than the common one was read.
    bool HasAccents() const noexcept { return hasAccents_; }

private:
    /// The next weight that is not ignored; 0 at the end.
    std::uint32_t Next() noexcept {
        if (rest_ != restEnd_) return *rest_++;
        while (at_ < text_.size()) {
            if (const std::uint32_t weight = Take(); weight != 0) return weight;
        }
        return 0;
    }

    std::uint32_t Take() noexcept {
        const std::uint8_t lead = ByteAt(text_, at_);
        char32_t c = lead;
        std::uint32_t entry = kBasicPlane[lead];
        if (lead <= kLastAscii) {
            ++at_;
            if (!MarkFollows()) return entry & kPrimaryMask;
        } else {
            const DecodedCharacter decoded = DecodeAt(text_, at_);
            at_ += decoded.bytes;
            c = decoded.character;
            entry = EntryOf(c);
        }
        if (entry < kExpansion) return entry;
        std::size_t at = at_;
        const Weights weights = TakeWeights(c, entry, text_, at);
        at_ = at;
        rest_ = weights.rest;
        restEnd_ = weights.restEnd;
        return weights.first;
    }

    /// Whether what follows can go on in a contraction that an ASCII letter starts: it is below U+0400.
    bool MarkFollows() const noexcept {
        return at_ < text_.size() && ByteAt(text_, at_) > kLastAscii && ByteAt(text_, at_) < 0xD0;
    }

    std::string_view text_;
    std::size_t at_;
    const std::uint32_t* rest_ = nullptr;
    const std::uint32_t* restEnd_ = nullptr;
    bool hasAccents_ = false;
};

/// Whether the weights of what precedes a position may depend on the character or byte there.
bool Joins(std::string_view text, std::size_t at) noexcept {
    if (at == text.size() || ByteAt(text, at) <= kLastAscii) return false;
    if ((ByteAt(text, at) & 0xC0) == 0x80) return true;
    return (EntryOf(DecodeAt(text, at).character) & kJoins) != 0;
}

std::uint32_t AsciiPrimary(char c) noexcept { return kBasicPlane[static_cast<std::uint8_t>(c)] & kPrimaryMask; }

bool AreSameAscii(char left, char right) noexcept {
    return ((left | right) & 0x80) == 0 && AsciiPrimary(left) == AsciiPrimary(right);
}

/// Length of a common prefix of equal weights, whatever follows.
std::size_t CommonBeginning(std::string_view left, std::string_view right) noexcept {
    const std::size_t size = std::min(left.size(), right.size());
    std::size_t at = 0;
    for (std::uint64_t l, r; at + sizeof l <= size; at += sizeof l) {
        std::memcpy(&l, left.data() + at, sizeof l);
        std::memcpy(&r, right.data() + at, sizeof r);
        if (l != r) break;
    }
    while (at < size && left[at] == right[at]) ++at;
    while (at < size && AreSameAscii(left[at], right[at])) ++at;
    while (at > 0 && (Joins(left, at) || Joins(right, at))) --at;
    return at;
}

template <auto kNext>
int CompareWeights(WeightReader& left, WeightReader& right) noexcept {
    for (;;) {
        const std::uint32_t l = (left.*kNext)();
        const std::uint32_t r = (right.*kNext)();
        if (l != r) return l < r ? -1 : 1;
        if (l == 0) return 0;
    }
}

/// FNV-1a, a weight at a time.
constexpr std::uint64_t kEmptyHash = 0xCBF29CE484222325u;
std::uint64_t AddToHash(std::uint64_t hash, std::uint32_t weight) noexcept { return (hash ^ weight) * 0x100000001B3u; }

}  // namespace

int CompareTexts(std::string_view left, std::string_view right) noexcept {
    left = WithoutTrailingBlanks(left);
    right = WithoutTrailingBlanks(right);
    if (left == right) return 0;
    const std::size_t same = CommonBeginning(left, right);
    WeightReader l(left, same);
    WeightReader r(right, same);
    if (const int order = CompareWeights<&WeightReader::NextPrimary>(l, r); order != 0) return order;
    if (!l.HasAccents() && !r.HasAccents()) return 0;
    l = WeightReader(left, same);
    r = WeightReader(right, same);
    return CompareWeights<&WeightReader::NextSecondary>(l, r);
}

void AppendWeights(std::string_view text, std::size_t most, std::vector<std::uint64_t>& numbers) {
    constexpr int kInNumber = 64 / kSecondaryShift;
    WeightReader reader(WithoutTrailingBlanks(text), 0);
    for (std::size_t count = 0; count < most; ++count) {
        std::uint64_t number = 0;
        for (int i = 0; i < kInNumber; ++i) number = number << kSecondaryShift | reader.NextPrimary();
        if (number == 0) return;
        numbers.push_back(number);
    }
}

std::uint64_t HashOfText(std::string_view text) noexcept {
    text = WithoutTrailingBlanks(text);
    std::size_t ascii = AsciiPrefix(text);
    if (ascii > 0 && ascii < text.size()) --ascii;  // a mark may follow
    std::uint64_t hash = kEmptyHash;
    for (const char c : text.substr(0, ascii)) {
        if (const std::uint32_t weight = AsciiPrimary(c); weight != 0) hash = AddToHash(hash, weight);
    }
    WeightReader reader(text, ascii);
    while (const std::uint32_t weight = reader.NextPrimary()) hash = AddToHash(hash, weight);
    if (!reader.HasAccents()) return hash;
    hash = AddToHash(hash, 0);  // as no weight is 0, no text without accents has this hash
    reader = WeightReader(text, 0);
    while (const std::uint32_t weight = reader.NextSecondary()) hash = AddToHash(hash, weight);
    return hash;
}

}  // namespace kpTables::text
