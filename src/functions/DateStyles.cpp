// Dates as texts in the styles of the server's CONVERT, and back.
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "functions/ServerDate.h"
#include "kpTables/text/Message.h"
#include "text/Ascii.h"
#include "text/Calendar.h"
#include "text/DateFormat.h"

namespace kpTables::functions {

namespace {

/// The order of a date's numbers in a text.
enum class Order { YearFirst, MonthFirst, DayFirst };

struct Style {
    int number;
    std::string_view pattern;  ///< as text::DateByPattern takes it; "~" stands for a blank that fills a place
    Order order;
};

constexpr Style kStyles[] = {
    {0, "mmm ~d yyyy ~h:nnAM/PM", Order::MonthFirst},
    {1, "mm/dd/yy", Order::MonthFirst},
    {2, "yy.mm.dd", Order::YearFirst},
    {3, "dd/mm/yy", Order::DayFirst},
    {4, "dd.mm.yy", Order::DayFirst},
    {5, "dd-mm-yy", Order::DayFirst},
    {6, "dd mmm yy", Order::DayFirst},
    {7, "mmm dd, yy", Order::MonthFirst},
    {8, "hh:nn:ss", Order::MonthFirst},
    {9, "mmm ~d yyyy ~h:nn:ss:000AM/PM", Order::MonthFirst},
    {10, "mm-dd-yy", Order::MonthFirst},
    {11, "yy/mm/dd", Order::YearFirst},
    {12, "yymmdd", Order::YearFirst},
    {13, "dd mmm yyyy hh:nn:ss:000", Order::DayFirst},
    {14, "hh:nn:ss:000", Order::MonthFirst},
    {20, "yyyy-mm-dd hh:nn:ss", Order::YearFirst},
    {21, "yyyy-mm-dd hh:nn:ss.000", Order::YearFirst},
    {22, "mm/dd/yy ~h:nn:ss AM/PM", Order::MonthFirst},
    {23, "yyyy-mm-dd", Order::YearFirst},
    {24, "hh:nn:ss", Order::MonthFirst},
    {25, "yyyy-mm-dd hh:nn:ss.000", Order::YearFirst},
    {26, "yyyy-mm-ddThh:nn:ss", Order::YearFirst},
};

constexpr int kWithCentury = 100;  ///< a style with four digits in its year is that of two digits plus this

/// The style, perhaps with its century, or error 5.
const Style& StyleOf(int number) {
    const int plain = number >= kWithCentury ? number - kWithCentury : number;
    const auto* const found = std::ranges::find(kStyles, plain, &Style::number);
    // From 22 on, a style stands alone.
    constexpr int kAlone = 22;
    constexpr int kIso = 126;
    const bool known = found != std::end(kStyles) && number >= 0 &&
                       (plain < kAlone || number == kIso || (number < kWithCentury && number != kIso - kWithCentury));
    if (!known) Raise(FaultNumber::InvalidCall, Message("{1} is no style of a date", number));
    return *found;
}

/// The pattern with the century, and every "~" as a blank where the number behind it has one digit.
std::string PatternOf(const Style& style, int number, const text::DateParts& parts) {
    constexpr int kNoon = 12;
    const int hour = parts.hour % kNoon == 0 ? kNoon : parts.hour % kNoon;
    std::string pattern;
    for (std::size_t at = 0; at < style.pattern.size(); ++at) {
        const char sign = style.pattern[at];
        if (sign == '~') {
            const int value = style.pattern[at + 1] == 'd' ? parts.day : hour;
            if (value < 10) pattern += ' ';
        } else {
            pattern += sign;
        }
    }
    const auto year = pattern.find("yy");
    if (number >= kWithCentury && year != pattern.npos && !pattern.substr(year).starts_with("yyyy"))
        pattern.insert(year, "yy");
    return pattern;
}

/// "13/7/2004 12:00" with its numbers in another order: "2004-7-13 12:00". Nothing when it does not begin with three.
std::optional<std::string> YearFirst(std::string_view text, Order order) {
    std::array<std::string, 3> numbers;
    std::size_t at = std::min(text.find_first_not_of(' '), text.size());
    for (std::string& number : numbers) {
        const std::size_t begin = at;
        while (at < text.size() && text::IsDigit(text[at])) ++at;
        number = text.substr(begin, at - begin);
        const bool last = &number == &numbers.back();
        if (number.empty() ||
            (!last && (at == text.size() || std::string_view("/-.").find(text[at]) == std::string_view::npos)))
            return std::nullopt;
        if (!last) ++at;
    }
    if (order == Order::DayFirst) std::swap(numbers[0], numbers[1]);
    if (order != Order::YearFirst && numbers[0].size() <= 2)
        std::rotate(numbers.begin(), numbers.end() - 1, numbers.end());
    // Two digits are a year from 1950 to 2049.
    if (numbers[0].size() == 2) numbers[0].insert(0, numbers[0] < "50" ? "20" : "19");
    return numbers[0] + "-" + numbers[1] + "-" + numbers[2] + std::string(text.substr(at));
}

/// The second argument, where there is one, asks for the short name.
std::string NameOfDate(const Arguments& a, double date, const char* whole, const char* shortened) {
    return text::DateByPattern(date, a.Count() > 1 && a.Whole(1) != 0 ? shortened : whole);
}

}  // namespace

void TextOfStyledDate(const Arguments& a, Answer& answer) {
    const int number = a.Whole(1);
    const Style& style = StyleOf(number);
    const double date = a.Date(0);
    answer.Text(text::DateByPattern(date, PatternOf(style, number, text::PartsOf(date))));
}

void StyledDate(const Arguments& a, Answer& answer) {
    const Style& style = StyleOf(a.Whole(1));
    const std::string_view text = a.Text(0);
    const auto ordered = YearFirst(text, style.order);
    const auto date = ReadServerDate(ordered ? std::string_view(*ordered) : text);
    if (!date) RaiseMismatch(text, Message("is no date in this style"));
    answer.Date(*date);
}

void DateName(const Arguments& a, Answer& answer) {
    const std::string_view part = a.Text(0);
    const bool month = part == "m";
    if (!month && part != "w") {
        Answer number;
        DatePart(a, number);
        return answer.Text(std::to_string(number.Get().Whole()));
    }
    answer.Text(text::DateByPattern(a.Date(1), month ? "mmmm" : "dddd"));
}

void MonthName(const Arguments& a, Answer& answer) {
    const std::int32_t month = a.Whole(0);
    if (month < 1 || month > 12) Raise(FaultNumber::InvalidCall);
    answer.Text(NameOfDate(a, *text::SerialOfDay(2000, month, 1), "mmmm", "mmm"));
}

void WeekdayName(const Arguments& a, Answer& answer) {
    const std::int32_t day = a.Whole(0);
    const std::int32_t first = a.Count() > 2 ? std::max(a.Whole(2), 1) : 1;
    if (day < 1 || day > 7 || first > 7) Raise(FaultNumber::InvalidCall);
    // January 2nd, 2000, is a Sunday.
    answer.Text(NameOfDate(a, *text::SerialOfDay(2000, 1, 2) + (day + first - 2) % 7, "dddd", "ddd"));
}

void EndOfMonth(const Arguments& a, Answer& answer) {
    const text::DateParts parts = text::PartsOf(a.Date(0));
    const auto next = text::SerialOfDay(parts.year, parts.month + 1 + (a.Count() > 1 ? a.Whole(1) : 0), 1);
    if (!next) Raise(FaultNumber::InvalidCall);
    answer.Date(*next - 1);
}

}  // namespace kpTables::functions
