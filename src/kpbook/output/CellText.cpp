#include "kpbook/output/CellText.h"

#include <charconv>
#include <cmath>

namespace kpTables::kpbook::output {

std::string NumberText(double value) {
    // Up to here all digits before the point are written; beyond, an exponent reads better.
    constexpr double kLargestPlain = 1e17;
    constexpr double kSmallestPlain = 1e-6;
    char buffer[64];
    const double size = std::fabs(value);
    const bool plain = size == 0 || (size >= kSmallestPlain && size < kLargestPlain);
    const auto end = plain ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed)
                           : std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, end.ptr);
}

std::string CellText(const Variant& value) {
    switch (value.Type()) {
        case VarType::Boolean:
            return *value.If<bool>() ? "True" : "False";
        case VarType::Integer:
            return std::to_string(*value.If<std::int16_t>());
        case VarType::Long:
            return std::to_string(*value.If<std::int32_t>());
        case VarType::Double:
            return NumberText(*value.If<double>());
        case VarType::Currency:
            return value.If<Currency>()->ToText();
        case VarType::Date:
            return value.If<Date>()->ToIso(' ');
        case VarType::String:
            return *value.If<std::string>();
        case VarType::Object:
            return *value.If<ObjectPtr>() ? "(object)" : "(nothing)";
        case VarType::Array: {
            std::string text;
            for (const auto& item : (*value.If<std::shared_ptr<VariantArray>>())->items) {
                if (!text.empty()) text += ", ";
                text += CellText(item);
            }
            return text;
        }
        default:
            return {};
    }
}

std::string ShownText(const Variant& value) {
    constexpr int kDigits = 15;
    const auto* number = value.If<double>();
    if (!number) return CellText(value);
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, *number, std::chars_format::general, kDigits);
    double rounded = *number;
    std::from_chars(buffer, end.ptr, rounded);
    return NumberText(rounded);
}

bool IsNumber(VarType type) noexcept {
    return type == VarType::Integer || type == VarType::Long || type == VarType::Double || type == VarType::Currency;
}

std::string_view TypeName(VarType type) noexcept {
    switch (type) {
        case VarType::Boolean:
            return "Boolean";
        case VarType::Integer:
            return "Integer";
        case VarType::Long:
            return "Long";
        case VarType::Double:
            return "Double";
        case VarType::Currency:
            return "Currency";
        case VarType::Date:
            return "Date";
        case VarType::String:
            return "String";
        default:
            return "Empty";
    }
}

}  // namespace kpTables::kpbook::output
