#include "engines/common/NamedLiterals.h"

#include <array>
#include <charconv>
#include <cmath>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"

namespace kpTables::engines {

namespace {

using sql::LiteralKind;
using sql::LiteralValue;

/// The shortest text that reads as the same number.
std::string ExactText(const std::string& name, double number) {
    if (!std::isfinite(number)) Raise(ErrorNumber::Overflow, Message("the value of {1}", name));
    std::array<char, 32> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

LiteralValue LiteralOf(const std::string& name, const Variant& value) {
    switch (value.Type()) {
        case VarType::Null:
            return {LiteralKind::Null, ""};
        case VarType::Boolean:
            return {LiteralKind::Boolean, *value.If<bool>() ? "True" : "False"};
        case VarType::Integer:
        case VarType::Long:
            return {LiteralKind::Integer, Text(value)};
        case VarType::Double:
            return {LiteralKind::Decimal, ExactText(name, *value.If<double>())};
        case VarType::Currency:
            return {LiteralKind::Decimal, Text(value)};
        case VarType::Date:
            return {LiteralKind::Date, Text(value)};
        case VarType::String:
            return {LiteralKind::Text, *value.If<std::string>()};
        default:
            Raise(ErrorNumber::TypeMismatch, Message("the value of {1} cannot be bound", name));
    }
}

}  // namespace

sql::NamedLiterals NamedLiteralsOf(const NamedValues& values) {
    sql::NamedLiterals literals;
    for (const NamedValue& each : values) {
        for (const auto& before : literals) {
            if (sql::SameName(before.name, each.name)) {
                Raise(ErrorNumber::InvalidCall, Message("the parameter {1} is given twice", each.name));
            }
        }
        literals.push_back({each.name, LiteralOf(each.name, each.value)});
    }
    return literals;
}

}  // namespace kpTables::engines
