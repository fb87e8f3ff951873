// Conversions from one column type to another, and text forms.
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "Function.h"
#include "ServerDate.h"
#include "kpTables/Convert.h"
#include "kpTables/Currency.h"
#include "kpTables/Error.h"
#include "text/Decimal.h"
#include "text/Format.h"

namespace kpTables::sqlite {

namespace {

template <class T>
void ToWhole(const Arguments& a, Answer& answer) {
    const double number = std::nearbyint(a.Number(0));
    if (!(number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max())) {
        Raise(ErrorNumber::Overflow);
    }
    answer.Whole(static_cast<std::int64_t>(number));
}

void ToBoolean(const Arguments& a, Answer& answer) {
    answer.Boolean(a.IsText(0) ? CBool(Variant(a.Text(0))) : a.Number(0) != 0);
}

void ToCurrency(const Arguments& a, Answer& answer) {
    if (a.IsText(0)) return answer.Whole(CCur(Variant(a.Text(0))).Scaled());
    const Currency value = a.IsWhole(0) ? Currency::FromLong(a.Stored(0)) : Currency::FromDouble(a.Number(0));
    answer.Whole(value.Scaled());
}

void ToDate(const Arguments& a, Answer& answer) { answer.Date(a.Date(0)); }

void ToServerDate(const Arguments& a, Answer& answer) {
    const auto date = a.IsText(0) ? ReadServerDate(a.Text(0)) : std::nullopt;
    answer.Date(date ? *date : a.Date(0, kServerDayZero));
}

void ToDouble(const Arguments& a, Answer& answer) { answer.Number(a.Number(0)); }
void ToSingle(const Arguments& a, Answer& answer) { answer.Number(static_cast<float>(a.Number(0))); }

void TextOfBoolean(const Arguments& a, Answer& answer) { answer.Text(Text(a.Number(0) != 0)); }

void TextOfCurrency(const Arguments& a, Answer& answer) { answer.Text(Currency::FromScaled(a.Stored(0)).ToText()); }

void TextOfDate(const Arguments& a, Answer& answer) { answer.Text(a.Date(0).ToText()); }

void TextOfDouble(const Arguments& a, Answer& answer) {
    answer.Text(a.IsText(0) || a.IsWhole(0) ? std::string(a.Text(0)) : Text(a.Number(0)));
}

void Str(const Arguments& a, Answer& answer) {
    std::string text = Text(a.Number(0));
    // Str writes no zero before the point, and keeps a place for the sign.
    if (text.starts_with("0.")) text.erase(0, 1);
    if (text.starts_with("-0.")) text.erase(1, 1);
    answer.Text(text.starts_with('-') ? text : ' ' + text);
}

void Val(const Arguments& a, Answer& answer) { answer.Number(text::LeadingNumber(a.Text(0))); }

void IsDateText(const Arguments& a, Answer& answer) { answer.Whole(a.IsText(0) && IsDate(Variant(a.Text(0))) ? 1 : 0); }

void IsNumericText(const Arguments& a, Answer& answer) {
    answer.Whole(!a.AnyNull() && (!a.IsText(0) || ParseNumber(a.Text(0))) ? 1 : 0);
}

std::string Fitting(std::optional<std::string> formatted) {
    if (!formatted) Raise(ErrorNumber::Overflow);
    return *std::move(formatted);
}

void FormatOfDate(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Text("");
    answer.Text(a.Count() > 1 ? Fitting(text::FormatDate(a.Date(0).Serial(), a.Text(1))) : a.Date(0).ToText());
}

void FormatOfNumber(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Text("");
    answer.Text(a.Count() > 1 ? Fitting(text::FormatNumber(a.Number(0), a.Text(1))) : Text(a.Number(0)));
}

void FormatOfText(const Arguments& a, Answer& answer) {
    if (a.AnyNull()) return answer.Text("");
    answer.Text(a.Count() > 1 ? Fitting(text::FormatText(a.Text(0), a.Text(1))) : std::string(a.Text(0)));
}

constexpr bool kNullToo = true;

constexpr ScalarFunction kFunctions[] = {
    {"kp_format_date", FormatOfDate, kNullToo},
    {"kp_format_number", FormatOfNumber, kNullToo},
    {"kp_format_text", FormatOfText, kNullToo},
    {"kp_isdate", IsDateText, kNullToo},
    {"kp_isnumeric", IsNumericText, kNullToo},
    {"kp_server_date", ToServerDate},
    {"kp_str", Str},
    {"kp_text_boolean", TextOfBoolean},
    {"kp_text_currency", TextOfCurrency},
    {"kp_text_date", TextOfDate},
    {"kp_text_double", TextOfDouble},
    {"kp_to_boolean", ToBoolean},
    {"kp_to_currency", ToCurrency},
    {"kp_to_date", ToDate},
    {"kp_to_double", ToDouble},
    {"kp_to_long", ToWhole<std::int32_t>},
    {"kp_to_short", ToWhole<std::int16_t>},
    {"kp_to_single", ToSingle},
    {"kp_val", Val},
};

}  // namespace

std::span<const ScalarFunction> ConversionFunctions() noexcept { return kFunctions; }

}  // namespace kpTables::sqlite
