#include "TranslationText.h"

#include <algorithm>

#include "TestCatalog.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sql::test {

namespace {

std::string NameOf(Binding binding) {
    switch (binding) {
        case Binding::Short:
            return "Short";
        case Binding::Long:
            return "Long";
        case Binding::Number:
            return "Number";
        case Binding::Currency:
            return "Currency";
        case Binding::CurrencyBound:
            return "CurrencyBound";
        case Binding::Boolean:
            return "Boolean";
        case Binding::Date:
            return "Date";
        case Binding::ServerDate:
            return "ServerDate";
        case Binding::DateYear:
            return "DateYear";
        case Binding::DateMonth:
            return "DateMonth";
        case Binding::DateDay:
            return "DateDay";
        case Binding::Text:
            return "Text";
    }
    return "?";
}

std::string Between(const std::string& text, std::string_view before, std::string_view after) {
    const auto begin = text.find(before);
    const auto end = after.empty() ? text.size() : text.rfind(after);
    if (begin == text.npos || end == text.npos || end < begin + before.size()) return "not as expected: " + text;
    return text.substr(begin + before.size(), end - begin - before.size());
}

}  // namespace

Translation Translated(std::string_view text, const std::vector<LiteralValue>& pivotValues) {
    return TranslatedBut({"eager aggregation", "implied order"}, text, pivotValues);
}

Translation TranslatedForServer(std::string_view text) {
    const TestCatalog catalog;
    return Translate(*parse::Parse(text, {}, Dialect::SqlServer), catalog, print::sqlite::SqliteEngine());
}

Translation TranslatedWhole(std::string_view text, const std::vector<LiteralValue>& pivotValues) {
    return TranslatedBut({}, text, pivotValues);
}

Translation TranslatedBut(const std::vector<std::string_view>& names, std::string_view text,
                          const std::vector<LiteralValue>& pivotValues) {
    const TestCatalog catalog;
    const auto statement = parse::Parse(text);
    const auto rules = RulesBut(names);
    return Translate(*statement, catalog, print::sqlite::SqliteEngine(), pivotValues, rules);
}

std::vector<rewrite::Rule> RulesBut(const std::vector<std::string_view>& names) {
    std::vector<rewrite::Rule> rules;
    for (const auto& rule : rewrite::Rules())
        if (std::find(names.begin(), names.end(), rule.name) == names.end()) rules.push_back(rule);
    return rules;
}

std::string ParametersOf(const Translation& translation) {
    std::string text;
    for (const auto& parameter : translation.parameters)
        text += (text.empty() ? "" : ", ") + std::to_string(parameter.literal) + " " + (parameter.negative ? "-" : "") +
                NameOf(parameter.binding);
    return text;
}

std::string ColumnsOf(const Translation& translation) {
    std::string text;
    for (const auto& column : translation.columns)
        text += (text.empty() ? "" : ", ") + column.name + " " + NameOf(column.type);
    return text;
}

std::string FixedOf(const Translation& translation) {
    auto fixed = translation.fixedLiterals;
    std::sort(fixed.begin(), fixed.end());
    std::string text;
    for (const int ordinal : fixed) text += (text.empty() ? "" : " ") + std::to_string(ordinal);
    return text;
}

std::string NameOf(Type type) {
    switch (type) {
        case Type::Unknown:
            return "Unknown";
        case Type::Null:
            return "Null";
        case Type::Boolean:
            return "Boolean";
        case Type::Short:
            return "Short";
        case Type::Long:
            return "Long";
        case Type::Double:
            return "Double";
        case Type::Currency:
            return "Currency";
        case Type::Date:
            return "Date";
        case Type::Text:
            return "Text";
    }
    return "?";
}

std::string ExpressionText(const Translation& translation) {
    return Between(translation.text, "SELECT ", " FROM \"T\"");
}

std::string ConditionText(const Translation& translation) {
    return Between(translation.text, "DELETE FROM \"T\" WHERE ", "");
}

}  // namespace kpTables::sql::test
