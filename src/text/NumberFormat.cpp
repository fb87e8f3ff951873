#include "text/NumberFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <utility>
#include <vector>

#include "text/Decimal.h"
#include "text/FormatPattern.h"
#include "text/NumberText.h"

namespace kpTables::text {

namespace {

bool IsDigitPlace(char c) noexcept { return c == '0' || c == '#'; }

enum class Sign { Literal, Place, Point, DecimalPlace, Exponent };

struct Element {
    Sign sign;
    std::string_view text;
};

/// The elements of one part of a pattern.
struct Layout {
    std::vector<Element> elements;
    int places = 0;         ///< digit places before the point
    int leastDigits = 0;    ///< zeros among them, from the first one on
    int leastDecimals = 0;  ///< places behind the point up to the last zero
    int mostDecimals = 0;
    int exponentDigits = 0;
    int powerOfTen = 0;  ///< that the number is scaled up by
    bool thousands = false;
};

class LayoutReader {
public:
    explicit LayoutReader(std::string_view part) : part_(part) {}

    Layout Read() {
        while (at_ < part_.size()) {
            if (const auto literal = TakeLiteral(part_, at_))
                Add(Sign::Literal, *literal);
            else if (!ReadExponent())
                ReadSign(part_.substr(at_++, 1));
        }
        ScaleByCommas();
        return std::move(layout_);
    }

private:
    void Add(Sign sign, std::string_view text) { layout_.elements.push_back({sign, text}); }

    // Commas with no place after them divide by a thousand each.
    void ScaleByCommas() {
        constexpr int kThousand = 3;
        layout_.powerOfTen -= kThousand * commas_;
        commas_ = 0;
    }

    bool ReadExponent() {
        const std::string_view rest = part_.substr(at_);
        const bool here = rest.size() > 2 && (rest[0] == 'E' || rest[0] == 'e') && (rest[1] == '+' || rest[1] == '-') &&
                          IsDigitPlace(rest[2]) && layout_.exponentDigits == 0;
        if (!here) return false;
        Add(Sign::Exponent, rest.substr(0, 2));
        for (at_ += 2; at_ < part_.size() && IsDigitPlace(part_[at_]); ++at_) ++layout_.exponentDigits;
        return true;
    }

    void ReadSign(std::string_view sign) {
        const char c = sign[0];
        if (IsDigitPlace(c) && point_) {
            ++layout_.mostDecimals;
            if (c == '0') layout_.leastDecimals = layout_.mostDecimals;
            Add(Sign::DecimalPlace, sign);
        } else if (IsDigitPlace(c)) {
            ++layout_.places;
            if (c == '0' || layout_.leastDigits > 0) ++layout_.leastDigits;
            layout_.thousands = layout_.thousands || commas_ > 0;
            commas_ = 0;
            Add(Sign::Place, sign);
        } else if (c == '.' && !point_) {
            point_ = true;
            ScaleByCommas();
            Add(Sign::Point, sign);
        } else if (c == ',' && layout_.places > 0 && !point_) {
            ++commas_;
        } else {
            if (c == '%') layout_.powerOfTen += 2;
            Add(Sign::Literal, sign);
        }
    }

    std::string_view part_;
    std::size_t at_ = 0;
    Layout layout_;
    int commas_ = 0;
    bool point_ = false;
};

/// The digits of a number that is not negative, rounded as Format rounds: a half goes up.
std::string FixedDigits(double number, int decimals) {
    // A double has no digits further right.
    constexpr int kMostDecimals = 50;
    const int kept = std::min(decimals, kMostDecimals);
    const double factor = std::pow(10.0, kept);
    double rounded = number;
    if (std::isfinite(number * factor)) {
        // Fifteen digits decide whether it is a half, so that 2.675 counts as one although its double lies below.
        const auto shown = ParseNumber(NumberText(number * factor));
        rounded = std::floor(shown.value_or(number * factor) + 0.5) / factor;
    }
    char buffer[400];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, rounded, std::chars_format::fixed, kept).ptr;
    std::string digits(buffer, end);
    return digits.append(static_cast<std::size_t>(decimals - kept), '0');
}

/// A number's digits before and behind the point, and its power of ten where the pattern asks for one.
struct Digits {
    std::string whole;
    std::string decimals;
    int exponent = 0;
};

Digits DigitsOf(double magnitude, const Layout& layout) {
    Digits digits;
    std::string text = FixedDigits(magnitude, layout.mostDecimals);
    const auto point = std::min(text.find('.'), text.size());
    if (point < text.size()) digits.decimals = text.substr(point + 1);
    digits.whole = text.substr(0, point);
    if (digits.whole == "0") digits.whole.clear();
    return digits;
}

Digits ScientificDigits(double magnitude, const Layout& layout) {
    if (magnitude == 0) return DigitsOf(0, layout);
    int exponent = static_cast<int>(std::floor(std::log10(magnitude))) + 1 - layout.places;
    // In two steps, as the power alone may be too large for a double.
    magnitude *= std::pow(10.0, -exponent / 2);
    magnitude *= std::pow(10.0, -exponent + exponent / 2);
    Digits digits = DigitsOf(magnitude, layout);
    if (digits.whole.size() > static_cast<std::size_t>(layout.places)) {
        digits = DigitsOf(magnitude / 10, layout);
        ++exponent;
    }
    digits.exponent = exponent;
    return digits;
}

/// Writes the digits into a layout's places.
class NumberWriter {
public:
    NumberWriter(const Layout& layout, Digits digits) : layout_(layout), digits_(std::move(digits)) {
        std::string& whole = digits_.whole;
        const auto least = static_cast<std::size_t>(layout.leastDigits);
        if (whole.size() < least) whole.insert(0, least - whole.size(), '0');
        const auto leastDecimals = static_cast<std::size_t>(layout.leastDecimals);
        while (digits_.decimals.size() > leastDecimals && digits_.decimals.back() == '0') digits_.decimals.pop_back();
    }

    std::string Write() {
        std::size_t left = static_cast<std::size_t>(layout_.places);
        for (const Element& element : layout_.elements) {
            switch (element.sign) {
                case Sign::Literal:
                    out_ += element.text;
                    break;
                case Sign::Place:
                    WriteWholeDownTo(--left);
                    break;
                case Sign::Point:
                    WriteWholeDownTo(0);
                    out_ += element.text;
                    break;
                case Sign::DecimalPlace:
                    if (decimal_ < digits_.decimals.size()) out_ += digits_.decimals[decimal_++];
                    break;
                case Sign::Exponent:
                    WriteExponent(element.text);
                    break;
            }
        }
        return out_;
    }

private:
    /// Stops where no more than that many digits remain, which the following places take.
    void WriteWholeDownTo(std::size_t left) {
        constexpr std::size_t kGroup = 3;
        while (digits_.whole.size() - whole_ > left) {
            out_ += digits_.whole[whole_++];
            const std::size_t behind = digits_.whole.size() - whole_;
            if (layout_.thousands && behind > 0 && behind % kGroup == 0) out_ += ',';
        }
    }

    void WriteExponent(std::string_view mark) {
        out_ += mark[0];
        if (digits_.exponent < 0)
            out_ += '-';
        else if (mark[1] == '+')
            out_ += '+';
        const std::string digits = WholeText(std::abs(digits_.exponent));
        const auto least = static_cast<std::size_t>(layout_.exponentDigits);
        if (digits.size() < least) out_.append(least - digits.size(), '0');
        out_ += digits;
    }

    const Layout& layout_;
    Digits digits_;
    std::string out_;
    std::size_t whole_ = 0;
    std::size_t decimal_ = 0;
};

std::optional<std::string> FormatPart(double magnitude, std::string_view part) {
    const Layout layout = LayoutReader(part).Read();
    magnitude *= std::pow(10.0, layout.powerOfTen);
    if (!std::isfinite(magnitude)) return std::nullopt;
    Digits digits = layout.exponentDigits > 0 ? ScientificDigits(magnitude, layout) : DigitsOf(magnitude, layout);
    return NumberWriter(layout, std::move(digits)).Write();
}

}  // namespace

std::optional<std::string> NumberByPattern(double number, std::string_view pattern) {
    if (pattern.empty()) return NumberText(number);
    const auto parts = PartsOf(pattern);
    // The first part formats the numbers of an empty one.
    const auto given = [&parts](std::size_t part) { return parts.size() > part && !parts[part].empty(); };
    if (number < 0 && given(1)) return FormatPart(-number, parts[1]);
    if (number == 0 && given(2)) return FormatPart(0, parts[2]);
    auto text = FormatPart(std::abs(number), parts[0]);
    const bool shownNegative = number < 0 && text && text->find_first_of("123456789") != std::string::npos;
    if (shownNegative) text->insert(0, 1, '-');
    return text;
}

}  // namespace kpTables::text
