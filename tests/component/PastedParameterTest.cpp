// Which parameters are pasted into statements: the late-bound table against what the methods do.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "corpus/Call.h"
#include "kpTables/LateBound.h"
#include "kpTables/MemoryGrid.h"
#include "kpTables/Quoted.h"

namespace kpTables::test {
namespace {

constexpr const char* kMarker = "Mark'er";

/// The texts that stand for a value in turn: the marker alone, and after the value, for methods that only compare how
/// it begins or what it contains.
std::vector<Variant> Marked(const Variant& value) {
    std::vector<Variant> marked = {Variant(kMarker)};
    if (const auto* text = value.If<std::string>()) marked.emplace_back(*text + kMarker);
    return marked;
}

std::vector<Variant> MarkedArrays(const VariantArray& array) {
    std::vector<Variant> marked;
    for (std::size_t i = 0; i < array.items.size(); ++i) {
        for (const Variant& item : Marked(array.items[i])) {
            auto copy = std::make_shared<VariantArray>(array);
            copy->items[i] = item;
            marked.emplace_back(std::move(copy));
        }
    }
    return marked;
}

/// The grid with the marker as a key, as a title and in cells.
std::vector<Variant> MarkedGrids(const MemoryGrid& grid) {
    std::vector<Variant> marked;
    for (std::int32_t col = 0; col < grid.Cols(); ++col) {
        auto copy = std::make_shared<MemoryGrid>(grid);
        copy->AddColumn({kMarker, kMarker, false, 10});
        copy->AddRow(std::vector<Variant>(static_cast<std::size_t>(copy->Cols()), kMarker));
        copy->AddRow({});
        for (std::int32_t row = 0; row < copy->Rows(); ++row) copy->SetTextMatrix(row, col, kMarker);
        marked.emplace_back(copy);
        copy = std::make_shared<MemoryGrid>(grid);
        copy->SetColKey(col, kMarker);
        marked.emplace_back(copy);
    }
    return marked;
}

/// What stands for an argument, in turn.
std::vector<Variant> Replacements(const Variant& argument) {
    if (const auto* array = argument.If<std::shared_ptr<VariantArray>>()) return MarkedArrays(**array);
    const auto* object = argument.If<ObjectPtr>();
    if (!object || !*object) return Marked(argument);
    if (const auto* grid = dynamic_cast<const MemoryGrid*>(object->get())) return MarkedGrids(*grid);
    return {};
}

bool IsPasted(const corpus::Case& each, const std::vector<Variant>& arguments) {
    for (const bool isSQL : {false, true}) {
        for (const Sent& sent : corpus::SentWith(each, arguments, isSQL)) {
            if (sent.text.find(kMarker) != sent.text.npos) return true;
        }
    }
    return false;
}

using Names = std::set<std::string>;

/// "method(parameter)" of every parameter whose text turns up in a statement of some case.
Names PastedInTheCorpus() {
    Names pasted;
    for (const corpus::Case& each : corpus::Cases()) {
        const corpus::Call call = corpus::ParseCall(each.call);
        const auto* member = _CTables::Find(call.method);
        auto arguments = call.arguments;
        arguments.resize(member->parameters.size(), Variant::Missing());
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const std::string name = std::string(member->name) + "(" + member->parameters[i].name + ")";
            if (pasted.contains(name)) continue;
            for (const Variant& replacement : Replacements(arguments[i])) {
                auto marked = arguments;
                marked[i] = replacement;
                if (IsPasted(each, marked)) pasted.insert(name);
            }
        }
    }
    return pasted;
}

TEST(PastedParameter, TheTableMarksWhatTheStatementsContain) {
    Names marked;
    for (const auto& member : _CTables::Members()) {
        for (const auto& parameter : member.parameters) {
            if (parameter.pasted) marked.insert(std::string(member.name) + "(" + parameter.name + ")");
        }
    }
    const Names pasted = PastedInTheCorpus();
    for (const auto& name : pasted) EXPECT_TRUE(marked.contains(name)) << name << " is pasted and not marked";
    for (const auto& name : marked) EXPECT_TRUE(pasted.contains(name)) << name << " is marked and not pasted";
    EXPECT_FALSE(pasted.empty());
}

TEST(PastedParameter, QuotedTextsHaveNoLoneQuote) {
    EXPECT_EQ(Quoted("O'Hara"), "O''Hara");
    EXPECT_EQ(Quoted("''"), "''''");
    EXPECT_EQ(Quoted(""), "");
    for (const char* text : {"'", "O'Hara", "a''b'", "'''", "x' or 'a'='a"}) {
        EXPECT_TRUE(HasLoneQuote(text)) << text;
        EXPECT_FALSE(HasLoneQuote(Quoted(text))) << text;
    }
    for (const char* text : {"", "a", "''", "O''Hara", "''''"}) EXPECT_FALSE(HasLoneQuote(text)) << text;
}

TEST(PastedParameter, EveryMethodWithATextIsInTheCorpus) {
    Names called;
    for (const corpus::Case& each : corpus::Cases()) {
        called.insert(std::string(_CTables::Find(corpus::ParseCall(each.call).method)->name));
    }
    Names missing;
    for (const auto& member : _CTables::Members()) {
        if (member.kind != _CTables::MemberKind::Method || called.contains(std::string(member.name))) continue;
        for (const auto& parameter : member.parameters) {
            using Type = _CTables::ValueType;
            if (parameter.type == Type::String || parameter.type == Type::Variant ||
                parameter.type == Type::VariantArray) {
                missing.insert(std::string(member.name));
            }
        }
    }
    // None of these sends a statement.
    EXPECT_EQ(missing, (Names{"AllTrim", "CalcPrice", "Update"}));
}

}  // namespace
}  // namespace kpTables::test
