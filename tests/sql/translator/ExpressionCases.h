// Tables of expressions and conditions over the columns of T.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "TranslationText.h"

namespace kpTables::sql::test {

struct ExpressionCase {
    const char* expression;
    const char* text;
    Type type;
    const char* parameters = "";
};

inline void CheckExpressions(std::initializer_list<ExpressionCase> cases) {
    for (const auto& [expression, text, type, parameters] : cases) {
        SCOPED_TRACE(expression);
        const auto translation = Translated("Select " + std::string(expression) + " From T");
        EXPECT_EQ(ExpressionText(translation), text);
        EXPECT_EQ(NameOf(translation.columns.at(0).type), NameOf(type));
        EXPECT_EQ(ParametersOf(translation), parameters);
    }
}

struct ConditionCase {
    const char* condition;
    std::string text;
    const char* parameters = "";
};

inline void CheckConditions(std::initializer_list<ConditionCase> cases) {
    for (const auto& [condition, text, parameters] : cases) {
        SCOPED_TRACE(condition);
        const auto translation = Translated("Delete From T Where " + std::string(condition));
        EXPECT_EQ(ConditionText(translation), text);
        EXPECT_EQ(ParametersOf(translation), parameters);
    }
}

struct StatementCase {
    const char* statement;
    const char* text;
    const char* parameters = "";
    const char* columns = "";
};

inline void CheckStatements(std::initializer_list<StatementCase> cases) {
    for (const auto& [statement, text, parameters, columns] : cases) {
        SCOPED_TRACE(statement);
        const auto translation = Translated(statement);
        EXPECT_EQ(translation.text, text);
        EXPECT_EQ(ParametersOf(translation), parameters);
        EXPECT_EQ(ColumnsOf(translation), columns);
    }
}

}  // namespace kpTables::sql::test
