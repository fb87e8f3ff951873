// Comparing Variants.
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "text/Ascii.h"

namespace kpTables {

namespace {

bool IsScalar(const Variant& value) {
    const auto type = value.Type();
    return type != VarType::Object && type != VarType::Array && type != VarType::Missing;
}

std::partial_ordering CompareTexts(std::string_view left, std::string_view right) {
    // The bytes of UTF-8 are in the order of the code points.
    return left.compare(right) <=> 0;
}

/// A text as the number that it means beside a value of the given type.
double NumberBeside(const std::string& text, VarType other) {
    if (other == VarType::Boolean) {
        if (text::EqualsIgnoringCase(text, "true")) return -1;
        if (text::EqualsIgnoringCase(text, "false")) return 0;
    }
    if (other == VarType::Date) return CDate(text).Serial();
    return CDbl(text);
}

double NumberBeside(const Variant& value, const Variant& other) {
    if (const auto* text = value.If<std::string>()) return NumberBeside(*text, other.Type());
    return CDbl(value);
}

/// Whole numbers and Currency as exact ten-thousandths.
std::optional<std::int64_t> Scaled(const Variant& value) {
    if (const auto* currency = value.If<Currency>()) return currency->Scaled();
    if (const auto* number = value.If<std::int16_t>()) return std::int64_t{*number} * Currency::kScale;
    if (const auto* number = value.If<std::int32_t>()) return std::int64_t{*number} * Currency::kScale;
    return std::nullopt;
}

}  // namespace

std::optional<std::partial_ordering> Compare(const Variant& left, const Variant& right) {
    if (!IsScalar(left) || !IsScalar(right)) Raise(ErrorNumber::TypeMismatch);
    if (left.IsNull() || right.IsNull()) return std::nullopt;
    const auto* leftText = left.If<std::string>();
    const auto* rightText = right.If<std::string>();
    if (leftText && rightText) return CompareTexts(*leftText, *rightText);
    if (leftText && right.IsEmpty()) return CompareTexts(*leftText, "");
    if (rightText && left.IsEmpty()) return CompareTexts("", *rightText);
    const auto leftScaled = Scaled(left);
    const auto rightScaled = Scaled(right);
    if (leftScaled && rightScaled) return *leftScaled <=> *rightScaled;
    return NumberBeside(left, right) <=> NumberBeside(right, left);
}

std::optional<bool> EqualsText(const Variant& left, std::string_view right) {
    if (left.IsNull()) return std::nullopt;
    if (const auto* text = left.If<std::string>()) return *text == right;
    return CStr(left) == right;
}

std::optional<bool> EqualsNumber(const Variant& left, double right) {
    if (left.IsNull()) return std::nullopt;
    return CDbl(left) == right;
}

}  // namespace kpTables
