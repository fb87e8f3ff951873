#include "kpTables/bookkeeping/CapitalFigures.h"

#include <cstdint>

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kDigits[] = {"零", "壹", "贰", "叁", "肆", "伍", "陆", "柒", "捌", "玖"};

std::string DigitOf(std::uint64_t digit) { return kDigits[digit]; }

/// A number below ten thousand; "" for 0. Zeros between other digits are read as one 零.
std::string SectionText(std::uint64_t number) {
    constexpr struct {
        std::uint64_t value;
        const char* name;
    } kPlaces[] = {{1000, "仟"}, {100, "佰"}, {10, "拾"}, {1, ""}};
    std::string text;
    bool skipped = false;
    for (const auto& place : kPlaces) {
        const std::uint64_t digit = number / place.value % 10;
        if (digit == 0) {
            skipped = !text.empty();
            continue;
        }
        if (skipped) text += kDigits[0];
        skipped = false;
        text += DigitOf(digit) + place.name;
    }
    return text;
}

std::string WholeText(std::uint64_t number);

/// number in units of a power of ten, and the rest, which begins with 零 when its first place is empty.
std::string SplitText(std::uint64_t number, std::uint64_t unit, const char* name) {
    const std::uint64_t rest = number % unit;
    const std::string gap = rest > 0 && rest < unit / 10 ? kDigits[0] : "";
    return WholeText(number / unit) + name + gap + WholeText(rest);
}

/// "" for 0.
std::string WholeText(std::uint64_t number) {
    constexpr std::uint64_t kWan = 10'000;
    constexpr std::uint64_t kYi = kWan * kWan;
    if (number >= kYi) return SplitText(number, kYi, "亿");
    if (number >= kWan) return SplitText(number, kWan, "万");
    return SectionText(number);
}

}  // namespace

std::string CapitalFigures(Currency amount) {
    constexpr std::uint64_t kFen = Currency::kScale / 100;
    const bool negative = amount.Scaled() < 0;
    const auto scaled = static_cast<std::uint64_t>(amount.Scaled());
    const std::uint64_t fen = ((negative ? 0 - scaled : scaled) + kFen / 2) / kFen;
    if (fen == 0) return "零元整";
    std::string text = negative ? "负" : "";
    if (fen >= 100) text += WholeText(fen / 100) + "元";
    const std::uint64_t tenths = fen / 10 % 10;
    const std::uint64_t hundredths = fen % 10;
    if (tenths > 0) text += DigitOf(tenths) + "角";
    if (hundredths == 0) return text + "整";
    if (tenths == 0 && fen >= 100) text += kDigits[0];
    return text + DigitOf(hundredths) + "分";
}

}  // namespace kpTables::bookkeeping
