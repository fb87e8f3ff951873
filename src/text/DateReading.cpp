// Dates as Visual Basic reads them.
#include <algorithm>
#include <array>

#include "text/Ascii.h"
#include "text/Calendar.h"
#include "text/DateText.h"

namespace kpTables::text {

namespace {

/// A date's number or, of a month, its name.
struct Field {
    int value = 0;
    int digits = 0;  ///< 0 of a month's name
    bool IsName() const { return digits == 0; }
    bool IsShort() const { return digits == 1 || digits == 2; }
    bool IsLong() const { return digits == 3 || digits == 4; }
};

/// Scans a text once.
class DateReader {
public:
    DateReader(std::string_view text, DateOrder order) : rest_(text), order_(order) {}

    std::optional<double> Read() {
        while (!rest_.empty() && rest_.back() == ' ') rest_.remove_suffix(1);
        SkipBlanks();
        const std::string_view start = rest_;
        if (ReadDay()) {
            const bool blank = SkipBlanks();
            if (rest_.empty()) return SerialOf(parts_);
            // Only 日 may be followed by the time directly.
            if (!blank && !chinese_) return std::nullopt;
        } else {
            rest_ = start;
            parts_ = {1899, 12, 30, 0, 0, 0};
        }
        if (!ReadTime() || !rest_.empty()) return std::nullopt;
        return SerialOf(parts_);
    }

private:
    bool SkipBlanks() {
        const auto size = rest_.size();
        while (!rest_.empty() && rest_[0] == ' ') rest_.remove_prefix(1);
        return rest_.size() != size;
    }
    bool Take(std::string_view piece) {
        if (!rest_.starts_with(piece)) return false;
        rest_.remove_prefix(piece.size());
        return true;
    }
    /// Five digits are too many for any field.
    Field ReadNumber() {
        Field n;
        for (; !rest_.empty() && IsDigit(rest_[0]) && n.digits < 5; ++n.digits, rest_.remove_prefix(1)) {
            n.value = n.value * 10 + (rest_[0] - '0');
        }
        return n;
    }
    /// A month's English name, whole or its first three letters; value 0 when there is none.
    Field ReadName() {
        std::size_t letters = 0;
        while (letters < rest_.size() && IsLetter(rest_[letters])) ++letters;
        const std::string_view word = rest_.substr(0, letters);
        constexpr std::size_t kShort = 3;
        for (std::size_t i = 0; i < kMonthNames.size(); ++i) {
            if (!EqualsIgnoringCase(word, kMonthNames[i]) &&
                !EqualsIgnoringCase(word, kMonthNames[i].substr(0, kShort)))
                continue;
            rest_.remove_prefix(letters);
            return {static_cast<int>(i) + 1, 0};
        }
        return {};
    }
    static bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

    bool ReadDay() {
        if (!rest_.empty() && IsLetter(rest_[0])) return ReadNamedMonth();
        const std::string_view start = rest_;
        if (ReadNumberedDay()) return true;
        rest_ = start;
        return ReadNamedMonth();
    }

    bool ReadNumberedDay() {
        const Field first = ReadNumber();
        if (first.digits == 0 || rest_.empty()) return false;
        std::string_view separator;
        for (std::string_view s : {"-", "/", ".", "年"}) {
            if (Take(s)) separator = s;
            if (!separator.empty()) break;
        }
        if (separator.empty()) return false;
        chinese_ = separator == "年";
        const Field second = ReadNumber();
        if (second.digits == 0) return false;
        const bool monthSign = chinese_ && Take("月");
        if (chinese_ && !monthSign) return false;
        if (chinese_ ? !AtDigit() : !Take(separator)) return ReadMonth(first, second, separator);
        const Field third = ReadNumber();
        if (chinese_ && !Take("日")) return false;
        if (chinese_ || first.IsLong()) return SetDay(first, second, third);
        const bool yearLast = third.digits == 4 && first.IsShort();
        if (!yearLast && order_ == DateOrder::YearFirst) return SetDay(first, second, third);
        // The month comes first, unless only the other can be one.
        const bool swaps = first.value > kMonthsPerYear && second.value <= kMonthsPerYear;
        return swaps ? SetDay(third, second, first) : SetDay(third, first, second);
    }

    /// The first day of a month: "2004-3", "3/2004", "2004年3月".
    bool ReadMonth(Field first, Field second, std::string_view separator) {
        if (separator == ".") return false;
        if (first.digits == 4) return SetDay(first, second, {1, 1});
        return second.digits == 4 && !chinese_ && SetDay(second, first, {1, 1});
    }

    /// "Mar 7, 2004", "7 Mar 2004", "10-Mar-04", "2004-Mar-7", "Mar 2004".
    bool ReadNamedMonth() {
        std::array<Field, 3> fields;
        std::size_t count = 0;
        for (bool separated = true; separated && count < fields.size(); ++count) {
            fields[count] = AtDigit() ? ReadNumber() : ReadName();
            if (fields[count].IsName() && fields[count].value == 0) return false;
            const std::string_view before = rest_;
            separated = Take("-") || Take("/") || Take(",");
            separated |= SkipBlanks();
            // A time may follow.
            const bool goesOn = AtDigit() ? !AtTime() : !rest_.empty() && IsLetter(rest_[0]);
            if (separated && (count == fields.size() - 1 || !goesOn)) {
                rest_ = before;
                separated = false;
            }
        }
        const auto& [a, b, c] = fields;
        if (count == 2 && a.IsName() && b.IsLong()) return SetDay(b, a, {1, 1});
        if (count != 3) return false;
        if (a.IsName() && !b.IsName() && !c.IsName()) return SetDay(c, a, b);
        if (!b.IsName() || a.IsName() || c.IsName()) return false;
        return a.IsLong() ? SetDay(a, b, c) : SetDay(c, b, a);
    }

    bool AtDigit() const { return !rest_.empty() && IsDigit(rest_[0]); }
    /// Whether a number with a colon behind it comes next.
    bool AtTime() const {
        const auto end = std::find_if_not(rest_.begin(), rest_.end(), IsDigit);
        return end != rest_.end() && *end == ':';
    }

    bool SetDay(Field year, Field month, Field day) {
        if (year.digits < 1 || year.digits > 4 || !(month.IsShort() || month.IsName()) || !day.IsShort()) return false;
        parts_.year = year.digits <= 2 ? FullYear(year.value) : year.value;
        parts_.month = month.value;
        parts_.day = day.value;
        return true;
    }

    bool ReadTime() {
        const bool before = ReadHalf();
        if (before) SkipBlanks();
        const Field hour = ReadNumber();
        if (!hour.IsShort() || !Take(":")) return false;
        const Field minute = ReadNumber();
        if (!minute.IsShort()) return false;
        Field second;
        if (Take(":")) {
            second = ReadNumber();
            if (!second.IsShort()) return false;
        }
        parts_.hour = hour.value;
        parts_.minute = minute.value;
        parts_.second = second.value;
        SkipBlanks();
        if (!rest_.empty() && (before || !ReadHalf())) return false;
        return SetHalf();
    }

    /// The half of the day's sign, before the time or behind it.
    bool ReadHalf() {
        struct Sign {
            std::string_view text;
            char half;
        };
        for (const auto& [text, half] : {Sign{"上午", 'a'}, Sign{"下午", 'p'}, Sign{"am", 'a'}, Sign{"pm", 'p'}}) {
            if (!EqualsIgnoringCase(rest_.substr(0, text.size()), text)) continue;
            rest_.remove_prefix(text.size());
            half_ = half;
            return true;
        }
        return false;
    }

    bool SetHalf() {
        constexpr int kNoon = 12;
        if (half_ == 0) return true;
        if (parts_.hour > kNoon) return false;
        if (half_ == 'a' && parts_.hour == kNoon) parts_.hour = 0;
        if (half_ == 'p' && parts_.hour < kNoon) parts_.hour += kNoon;
        return true;
    }

    std::string_view rest_;
    DateOrder order_;
    DateParts parts_{};
    bool chinese_ = false;
    char half_ = 0;
};

}  // namespace

std::optional<double> ParseDate(std::string_view text, DateOrder order) noexcept {
    return DateReader(text, order).Read();
}

}  // namespace kpTables::text
