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

void FormatOfText(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Part("");
    if (a.Count() == 1) return answer.Part(a.Text(0));
    answer.Text(Fitting(text::FormatText(a.Text(0), a.Text(1))));
}

}  // namespace kpTables::functions
