// Conversions from one column type to another, and text forms.
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "functions/Bodies.h"
#include "functions/Fault.h"
#include "functions/ServerDate.h"
#include "kpTables/text/Message.h"
#include "text/Amount.h"
#include "text/Ascii.h"
#include "text/DateText.h"
#include "text/Decimal.h"
#include "text/Format.h"
#include "text/NumberText.h"

namespace kpTables::functions {

namespace {

template <class T>
std::int64_t WholeWithin(const Arguments& a) {
    const double number = std::nearbyint(a.Number(0));
    if (!(number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max())) {
        Raise(FaultNumber::Overflow);
    }
    return static_cast<std::int64_t>(number);
}

/// Raises an overflow for an empty result.
template <class T>
T Fitting(std::optional<T> result) {
    if (!result) Raise(FaultNumber::Overflow);
    return *std::move(result);
}

std::optional<std::int64_t> AmountOfText(std::string_view text) {
    const auto number = text::Decimal::Read(text);
    if (!number) RaiseMismatch(text, Message("is no number"));
    return number->ToAmount();
}

}  // namespace

void ToLong(const Arguments& a, Answer& answer) { answer.Whole(WholeWithin<std::int32_t>(a)); }
void ToShort(const Arguments& a, Answer& answer) { answer.Whole(WholeWithin<std::int16_t>(a)); }

void ToByte(const Arguments& a, Answer& answer) { answer.Whole(WholeWithin<std::uint8_t>(a)); }

void ToBoolean(const Arguments& a, Answer& answer) {
    const bool isTrue = a.IsText(0) && text::EqualsIgnoringCase(a.Text(0), "true");
    const bool isFalse = a.IsText(0) && text::EqualsIgnoringCase(a.Text(0), "false");
    answer.Boolean(isTrue || (!isFalse && a.Number(0) != 0));
}

void ToCurrency(const Arguments& a, Answer& answer) {
    if (a.IsText(0)) return answer.Whole(Fitting(AmountOfText(a.Text(0))));
    answer.Whole(Fitting(a.IsWhole(0) ? text::AmountOfWhole(a.Amount(0)) : text::AmountOf(a.Number(0))));
}

void ToDate(const Arguments& a, Answer& answer) { answer.Date(a.Date(0)); }

void ToServerDate(const Arguments& a, Answer& answer) {
    const auto date = a.IsText(0) ? ReadServerDate(a.Text(0)) : std::nullopt;
    answer.Date(date ? *date : a.Date(0, kServerDayZero));
}

void ToDouble(const Arguments& a, Answer& answer) { answer.Number(a.Number(0)); }
void ToSingle(const Arguments& a, Answer& answer) { answer.Number(static_cast<float>(a.Number(0))); }

void TextOfBoolean(const Arguments& a, Answer& answer) { answer.Text(text::BooleanText(a.Number(0) != 0)); }
void TextOfCurrency(const Arguments& a, Answer& answer) { answer.Text(text::AmountText(a.Amount(0))); }
void TextOfDate(const Arguments& a, Answer& answer) { answer.Text(text::DateText(a.Date(0))); }
void TextOfDouble(const Arguments& a, Answer& answer) { answer.Part(a.Text(0)); }

void Str(const Arguments& a, Answer& answer) {
    std::string text = text::NumberText(a.Number(0));
    // Str writes no zero before the point, and keeps a place for the sign.
    if (text.starts_with("0.")) text.erase(0, 1);
    if (text.starts_with("-0.")) text.erase(1, 1);
    answer.Text(text.starts_with('-') ? text : ' ' + text);
}

void Val(const Arguments& a, Answer& answer) { answer.Number(text::LeadingNumber(a.Text(0))); }

void IsDate(const Arguments& a, Answer& answer) { answer.Test(a.IsText(0) && text::ParseDate(a.Text(0))); }

void IsServerDate(const Arguments& a, Answer& answer) { answer.Test(a.IsText(0) && ReadServerDate(a.Text(0))); }

void IsNumeric(const Arguments& a, Answer& answer) {
    answer.Test(!a.AnyNull() && (!a.IsText(0) || text::ParseNumber(a.Text(0))));
}

void FormatOfDate(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Part("");
    answer.Text(a.Count() > 1 ? Fitting(text::FormatDate(a.Date(0), a.Text(1))) : text::DateText(a.Date(0)));
}

void FormatOfNumber(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Part("");
    answer.Text(a.Count() > 1 ? Fitting(text::FormatNumber(a.Number(0), a.Text(1))) : text::NumberText(a.Number(0)));
}

namespace {

/// FormatNumber and the like; before and behind: what stands around the number.
void FormatAs(const Arguments& a, Answer& answer, const std::string& before, const std::string& behind) {
    constexpr int kYes = -1;
    constexpr int kDefault = -2;
    constexpr int kMostDigits = 99;
    const auto asked = [&](int index, bool otherwise) {
        const std::int32_t choice = a.Whole(index);
        return choice == kDefault ? otherwise : choice == kYes;
    };
    std::int32_t digits = a.Whole(1);
    if (digits < -1 || digits > kMostDigits) Raise(FaultNumber::InvalidCall);
    if (digits < 0) digits = 2;
    std::string places = asked(4, true) ? "#,##" : "#";
    places += asked(2, true) ? "0" : "#";
    if (digits > 0) places.append(".").append(static_cast<std::size_t>(digits), '0');
    places += behind;
    const std::string negative = asked(3, false) ? "(" + before + places + ")" : before + "-" + places;
    answer.Text(Fitting(text::FormatNumber(a.Number(0), before + places + ";" + negative)));
}

}  // namespace

void FormatAsNumber(const Arguments& a, Answer& answer) { FormatAs(a, answer, "", ""); }
void FormatAsCurrency(const Arguments& a, Answer& answer) { FormatAs(a, answer, "\uFFE5", ""); }
void FormatAsPercent(const Arguments& a, Answer& answer) { FormatAs(a, answer, "", "%"); }

void FormatOfText(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Part("");
    if (a.Count() == 1) return answer.Part(a.Text(0));
    answer.Text(Fitting(text::FormatText(a.Text(0), a.Text(1))));
}

}  // namespace kpTables::functions
