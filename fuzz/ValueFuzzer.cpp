// Numbers, amounts and dates: what is written reads back the same, and no text or number, however large, overflows.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "Input.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "text/Amount.h"
#include "text/Calendar.h"
#include "text/DateText.h"
#include "text/Decimal.h"
#include "text/NumberText.h"

namespace {

using namespace kpTables;
using kpTables::fuzz::Input;
using kpTables::fuzz::Require;

void CheckNumber(double number) {
    const std::string written = text::NumberText(number);
    Require(written.size() <= text::kLongestNumberText, "no longer than promised", written);
    if (!std::isfinite(number)) return;
    const auto read = text::ParseNumber(written);
    if (!read) {
        // Fifteen digits may round the largest numbers up.
        Require(std::abs(number) > 1.7976931348623e308, "a number reads back", written);
        return;
    }
    Require(std::abs(*read - number) <= std::abs(number) * 1e-14 + std::numeric_limits<double>::denorm_min(),
            "a number reads back", written);
    Require(text::NumberText(*read) == written, "a number is written alike again", written);
    Require(text::LeadingNumber(written) == *read, "Val reads it likewise", written);
}

void CheckWhole(std::int64_t whole) {
    Require(std::strtoll(text::WholeText(whole).c_str(), nullptr, 10) == whole, "a whole number reads back");
    const std::string amount = text::AmountText(whole);
    const auto decimal = text::Decimal::ReadPlain(amount);
    Require(decimal && decimal->ToAmount() == whole, "an amount reads back", amount);
    const auto loose = text::Decimal::Read(amount);
    Require(loose && loose->ToAmount() == whole, "an amount reads back as a number", amount);
    if (const auto scaled = text::AmountOfWhole(whole)) {
        Require(*scaled / text::kAmountScale == whole, "a whole amount", amount);
    } else {
        Require(std::abs(static_cast<double>(whole)) > 9.2e14, "only a large number has no amount", amount);
    }
}

void CheckProduct(std::int64_t a, std::int64_t b) {
    __extension__ using Wide = __int128;
    const Wide product = static_cast<Wide>(a) * b;
    Wide quotient = product / text::kAmountScale;
    const Wide rest = product % text::kAmountScale;
    const Wide twice = (rest < 0 ? -rest : rest) * 2;
    if (twice > text::kAmountScale || (twice == text::kAmountScale && quotient % 2 != 0))
        quotient += product < 0 ? -1 : 1;
    const bool fits =
        quotient >= std::numeric_limits<std::int64_t>::min() && quotient <= std::numeric_limits<std::int64_t>::max();
    const auto answered = text::AmountProduct(a, b);
    Require(fits == answered.has_value(), "a product in range");
    if (fits) Require(*answered == static_cast<std::int64_t>(quotient), "the nearest product");
}

void CheckAmount(double number) {
    const auto amount = text::AmountOf(number);
    if (!amount) {
        Require(!(std::abs(number) < 9.2e14), "only a large number has no amount");
        return;
    }
    // Both sides are exact enough to see half a ten-thousandth, but for the rounding of the product.
    const double scaled = number * static_cast<double>(text::kAmountScale);
    Require(std::abs(static_cast<double>(*amount) - scaled) <= 0.5 + std::abs(scaled) * 1e-15, "the nearest amount");
}

void CheckSerial(double serial) {
    if (!text::IsSerial(serial)) return;
    const std::string iso = text::IsoDateText(serial, 'T');
    Require(iso.size() <= text::kLongestIsoDate, "no longer than promised", iso);
    const auto read = text::ParseIsoDate(iso);
    Require(read && text::IsoDateText(*read, 'T') == iso, "a date reads back", iso);
    const std::string written = text::DateText(serial);
    const auto again = text::ParseDate(written);
    Require(again && text::DateText(*again) == written, "a date reads back", written);
    const text::DateParts parts = text::PartsOf(serial);
    const auto made = text::SerialOf(parts);
    Require(made && text::IsoDateText(*made, 'T') == iso, "a date is made of its parts", iso);
}

/// The value, or nothing when it raises one of Visual Basic's errors.
template <class Convert>
auto Answered(Convert convert) -> std::optional<decltype(convert())> {
    try {
        return convert();
    } catch (const Error&) {
        return std::nullopt;
    }
}

void CheckConversions(const Variant& value) {
    const auto number = Answered([&] { return CDbl(value); });
    const auto amount = Answered([&] { return CCur(value); });
    const auto whole = Answered([&] { return CLng(value); });
    const auto small = Answered([&] { return CInt(value); });
    const auto date = Answered([&] { return CDate(value); });
    Answered([&] { return CBool(value); });
    if (const auto written = Answered([&] { return CStr(value); }))
        Require(Text(value) == *written, "& writes as CStr does", *written);
    if (small) Require(whole && *whole == *small, "an Integer is a Long");
    if (whole) Require(number && std::abs(*number - *whole) <= 0.5, "the nearest Long");
    if (amount && number) {
        Require(std::abs(amount->ToDouble() - *number) <= 0.000051 + std::abs(*number) * 1e-14, "the nearest Currency");
    }
    if (date) CheckSerial(date->Serial());
    Answered([&] { return Compare(value, 1.5); });
    Answered([&] { return Compare(value, "1.5"); });
    Answered([&] { return EqualsNumber(value, 0); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto number = input.Raw<double>();
    const auto a = input.Raw<std::int64_t>();
    const auto b = input.Raw<std::int64_t>();
    const std::string_view rest = input.Rest();
    CheckNumber(number);
    CheckAmount(number);
    CheckSerial(number);
    CheckSerial(std::fmod(number, 3e6));
    CheckWhole(a);
    CheckProduct(a, b);
    CheckConversions(number);
    CheckConversions(rest);
    CheckConversions(Currency::FromScaled(a));
    if (const auto date = text::ParseDate(rest)) CheckSerial(*date);
    if (const auto date = text::ParseIsoDate(rest)) CheckSerial(*date);
    if (const auto read = text::ParseNumber(rest)) CheckNumber(*read);
    text::LeadingNumber(rest);
    if (const auto plain = text::Decimal::ReadPlain(rest))
        Require(text::Decimal::Read(rest).has_value(), "what is plain is a number", rest);
    return 0;
}
