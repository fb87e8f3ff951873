#include "sql/print/postgres/DeclaredType.h"

#include <algorithm>
#include <charconv>

#include "sql/print/postgres/FunctionList.h"

namespace kpTables::sql::print::postgres {

namespace {

struct Declared {
    std::string_view name;  ///< in the server's catalog
    std::string_view text;  ///< in a definition
    Type type;
};

constexpr Declared kDeclared[] = {
    {"int4", "integer", Type::Long},
    {"int2", "smallint", Type::Short},
    {"float8", "double precision", Type::Double},
    {"currency", kCurrencyDomain, Type::Currency},
    {"date", kDateDomain, Type::Date},
    {"flag", kFlagDomain, Type::Boolean},
    {"text", kTextDomain, Type::Text},
};

constexpr std::string_view kLimited = "text(";
constexpr std::string_view kDecimal = "decimal(";

/// The number at the text's beginning; the text is left behind the sign that ends it.
int TakeNumber(std::string_view& text) {
    int number = 0;
    const auto digits = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(std::min(text.size(), static_cast<std::size_t>(digits.ptr - text.data()) + 1));
    return number;
}

}  // namespace

std::string DeclaredType(const TypeName& type) {
    if (type.type == Type::Text && !type.memo) {
        constexpr int kLongest = 255;
        const int length = type.length > 0 ? type.length : kLongest;
        if (length <= kLongest) return "kp.\"" + std::string(kLimited) + std::to_string(length) + ")\"";
    }
    if (type.precision > 0) {
        return "kp.\"" + std::string(kDecimal) + std::to_string(type.precision) + "," + std::to_string(type.scale) +
               ")\"";
    }
    for (const Declared& known : kDeclared)
        if (known.type == type.type) return std::string(known.text);
    return {};
}

CatalogColumn ColumnOfDeclaredType(std::string_view name, std::string_view typeName) {
    CatalogColumn column;
    column.name = name;
    if (typeName.starts_with(kLimited)) {
        auto digits = typeName.substr(kLimited.size());
        column.type = Type::Text;
        column.length = TakeNumber(digits);
    }
    if (typeName.starts_with(kDecimal)) {
        auto digits = typeName.substr(kDecimal.size());
        column.type = Type::Currency;
        column.precision = TakeNumber(digits);
        column.scale = TakeNumber(digits);
    }
    for (const Declared& known : kDeclared)
        if (known.name == typeName) column.type = known.type;
    return column;
}

}  // namespace kpTables::sql::print::postgres
