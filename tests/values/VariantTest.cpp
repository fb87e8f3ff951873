#include "kpTables/Variant.h"

#include <gtest/gtest.h>

#include <limits>

#include "Raised.h"
#include "kpTables/Convert.h"
#include "kpTables/InOut.h"

namespace kpTables {
namespace {

class Thing : public Object {};

TEST(Variant, TypesHaveTheNumbersOfVarType) {
    struct Case {
        Variant value;
        int number;
    };
    const Case cases[] = {
        {Variant(), 0},
        {Variant::Null(), 1},
        {std::int16_t{1}, 2},
        {std::int32_t{1}, 3},
        {1.0, 5},
        {Currency::FromLong(1), 6},
        {Date::FromSerial(1), 7},
        {"a", 8},
        {std::string("a"), 8},
        {std::string_view("a"), 8},
        {std::make_shared<Thing>(), 9},
        {nullptr, 9},
        {Variant::Missing(), 10},
        {true, 11},
        {std::make_shared<VariantArray>(), 8204},
    };
    for (const Case& c : cases) EXPECT_EQ(static_cast<int>(c.value.Type()), c.number);
    EXPECT_TRUE(Variant().IsEmpty());
    EXPECT_TRUE(Variant::Null().IsNull());
    EXPECT_TRUE(Variant::Missing().IsMissing());
    EXPECT_FALSE(Variant("").IsEmpty());
}

TEST(Variant, IfGivesTheValueAsHeld) {
    Variant value = std::int32_t{7};
    ASSERT_NE(value.If<std::int32_t>(), nullptr);
    *value.If<std::int32_t>() = 8;
    EXPECT_EQ(*value.If<std::int32_t>(), 8);
    EXPECT_EQ(value.If<std::int16_t>(), nullptr);
    EXPECT_EQ(value.If<double>(), nullptr);
}

TEST(Variant, Is) {
    EXPECT_TRUE(Variant().Is(Variant()));
    EXPECT_TRUE(Variant::Null().Is(Variant::Null()));
    EXPECT_FALSE(Variant().Is(Variant::Null()));
    EXPECT_TRUE(Variant("a").Is("a"));
    EXPECT_FALSE(Variant("a").Is("A"));
    EXPECT_FALSE(Variant(std::int16_t{1}).Is(std::int32_t{1}));
    EXPECT_FALSE(Variant(1.0).Is(Currency::FromLong(1)));
    EXPECT_FALSE(Variant(true).Is(std::int16_t{-1}));
    const auto thing = std::make_shared<Thing>();
    EXPECT_TRUE(Variant(thing).Is(thing));
    EXPECT_FALSE(Variant(thing).Is(std::make_shared<Thing>()));
    EXPECT_TRUE(Variant(nullptr).Is(nullptr));
}

TEST(Variant, ArraysAreComparedByTheirElements) {
    const auto array = [](std::vector<Variant> items, int lower) {
        return Variant(std::make_shared<VariantArray>(std::move(items), lower));
    };
    const Variant nested = array({1.0, array({"a"}, 0)}, 1);
    EXPECT_TRUE(nested.Is(array({1.0, array({"a"}, 0)}, 1)));
    EXPECT_FALSE(nested.Is(array({1.0, array({"b"}, 0)}, 1)));
    EXPECT_FALSE(nested.Is(array({1.0, array({"a"}, 0)}, 0)));
    EXPECT_FALSE(nested.Is(array({1.0}, 1)));
    EXPECT_FALSE(nested.Is(Variant(std::shared_ptr<VariantArray>())));
    EXPECT_FALSE(nested.Is(Variant()));
}

TEST(InOut, BindsAVariableAValueOrNothing) {
    std::int32_t variable = 3;
    InOut<std::int32_t> bound(variable);
    bound = 5;
    EXPECT_EQ(variable, 5);
    InOut<std::int32_t> value(7);
    EXPECT_EQ(value.get(), 7);
    value = 8;
    EXPECT_EQ(value.get(), 8);
    EXPECT_EQ(InOut<std::int32_t>().get(), 0);
}

TEST(Error, CarriesNumberTextAndSource) {
    try {
        Raise(ErrorNumber::TypeMismatch);
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 13);
        EXPECT_EQ(error.Description(), "Type mismatch");
        EXPECT_EQ(error.Source(), "kpTables");
    }
    try {
        Raise(ErrorNumber::ItemNotFound, "商品名称");
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 3265);
        EXPECT_EQ(error.Description(),
                  "Item cannot be found in the collection corresponding to the requested name or ordinal: 商品名称");
    }
    const DatabaseError database(-2147217900, "syntax", "Select", 3);
    EXPECT_EQ(database.Number(), -2147217900);
    EXPECT_EQ(database.Statement(), "Select");
    EXPECT_EQ(database.Position(), 3u);
}

TEST(Error, EveryNumberHasItsText) {
    struct Case {
        int number;
        const char* text;
    };
    const Case cases[] = {
        {5, "Invalid procedure call or argument"},
        {6, "Overflow"},
        {9, "Subscript out of range"},
        {11, "Division by zero"},
        {13, "Type mismatch"},
        {91, "Object variable or With block variable not set"},
        {94, "Invalid use of Null"},
        {438, "Object doesn't support this property or method"},
        {449, "Argument not optional"},
        {450, "Wrong number of arguments or invalid property assignment"},
        {3001, "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another"},
        {3021, "Either BOF or EOF is True, or the current record has been deleted"},
        {3251, "Current Recordset does not support updating"},
        {3265, "Item cannot be found in the collection corresponding to the requested name or ordinal"},
        {3704, "Operation is not allowed when the object is closed"},
    };
    for (const Case& c : cases) EXPECT_STREQ(ErrorText(static_cast<ErrorNumber>(c.number)), c.text);
}

}  // namespace
}  // namespace kpTables
