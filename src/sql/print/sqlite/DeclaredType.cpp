#include "sql/print/sqlite/DeclaredType.h"

#include <algorithm>
#include <charconv>

#include "sql/Names.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sql::print::sqlite {

namespace {

struct Declared {
    std::string_view text;
    Type type;
};

// A date's type contains TEXT and so has the affinity that keeps ISO text unchanged.
constexpr Declared kDeclared[] = {
    {"INTEGER", Type::Long},       {"SMALLINT", Type::Short}, {"DOUBLE", Type::Double}, {"CURRENCY", Type::Currency},
    {"DATETIME_TEXT", Type::Date}, {"YESNO", Type::Boolean},  {"LONGTEXT", Type::Text},
};

std::string Collated(std::string type) { return type.append(" COLLATE ").append(kTextCollation); }

}  // namespace

std::string DeclaredType(const TypeName& type, bool soleKey) {
    if (type.counter) return "INTEGER PRIMARY KEY AUTOINCREMENT";
    if (type.type == Type::Long && soleKey) return "INTEGER PRIMARY KEY";
    if (type.type == Type::Text && !type.memo) {
        constexpr int kUnstatedLength = 255;
        const int length = type.length > 0 ? type.length : kUnstatedLength;
        return Collated("TEXT(" + std::to_string(length) + ")");
    }
    if (type.precision > 0) return "DECIMAL(" + std::to_string(type.precision) + "," + std::to_string(type.scale) + ")";
    for (const auto& [text, known] : kDeclared)
        if (known == type.type) return known == Type::Text ? Collated(std::string(text)) : std::string(text);
    return {};
}

CatalogColumn ColumnOfDeclaredType(std::string_view name, std::string_view declaredType, bool autoincrement) {
    CatalogColumn column;
    column.name = name;
    column.counter = autoincrement;
    const auto word = declaredType.substr(0, declaredType.find('('));
    for (const auto& [text, type] : kDeclared)
        if (SameName(word, text)) column.type = type;
    if (SameName(word, "TEXT")) {
        column.type = Type::Text;
        const auto length = declaredType.substr(std::min(word.size() + 1, declaredType.size()));
        std::from_chars(length.data(), length.data() + length.size(), column.length);
    }
    if (SameName(word, "DECIMAL")) {
        column.type = Type::Currency;
        const char* const end = declaredType.data() + declaredType.size();
        const auto precision = std::from_chars(std::min(word.data() + word.size() + 1, end), end, column.precision);
        std::from_chars(std::min(precision.ptr + 1, end), end, column.scale);
    }
    return column;
}

std::string TypeNameOfDeclared(std::string_view column) {
    const std::string type(column);
    return "CASE " + type +
           " WHEN 'INTEGER' THEN 'int' WHEN 'SMALLINT' THEN 'smallint' WHEN 'DOUBLE' THEN 'float' "
           "WHEN 'CURRENCY' THEN 'money' WHEN 'DATETIME_TEXT' THEN 'datetime' WHEN 'YESNO' THEN 'bit' "
           "ELSE CASE WHEN " +
           type + " LIKE '%TEXT%' THEN 'nvarchar' ELSE lower(substr(" + type + ", 1, instr(" + type +
           " || '(', '(') - 1)) END END";
}

}  // namespace kpTables::sql::print::sqlite
