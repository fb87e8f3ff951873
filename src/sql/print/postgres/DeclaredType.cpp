#include "sql/print/postgres/DeclaredType.h"

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

}  // namespace

std::string DeclaredType(const TypeName& type) {
    if (type.type == Type::Text && !type.memo) {
        constexpr int kLongest = 255;
        const int length = type.length > 0 ? type.length : kLongest;
        if (length <= kLongest) return "kp.\"" + std::string(kLimited) + std::to_string(length) + ")\"";
    }
    for (const Declared& known : kDeclared)
        if (known.type == type.type) return std::string(known.text);
    return {};
}

CatalogColumn ColumnOfDeclaredType(std::string_view name, std::string_view typeName) {
    CatalogColumn column;
    column.name = name;
    if (typeName.starts_with(kLimited)) {
        const auto digits = typeName.substr(kLimited.size());
        column.type = Type::Text;
        std::from_chars(digits.data(), digits.data() + digits.size(), column.length);
    }
    for (const Declared& known : kDeclared)
        if (known.name == typeName) column.type = known.type;
    return column;
}

std::string IndexName(std::string_view table, std::string_view index) {
    return std::string(table).append(".").append(index);
}

}  // namespace kpTables::sql::print::postgres
