// Every text parameter of every method, with values that nobody should type: the call answers or raises an Error, no
// table changes but those that the method writes, and what a column can hold is stored as it is.
#include "hostile/HostileValues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "corpus/Call.h"
#include "hostile/FilledBook.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpTables/MemoryGrid.h"
#include "kpTables/bookkeeping/WatchedConnection.h"
#include "text/CaseMapping.h"

namespace kpTables::test {
namespace {

using Member = _CTables::Member;
using ValueType = _CTables::ValueType;

/// Says yes to everything on a fixed day.
class WillingHost final : public Host {
public:
    MessageAnswer MsgBox(const std::string&, MessageButtons buttons, const std::string&) override {
        return buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
    }
    Date Today() override { return Date::FromYearMonthDay(2004, 3, 7); }
};

/// The corpus's first call of a method, and one that is far from it, each as it is and with ids that the book has. A
/// method that sends no statement, and so is not in the corpus, is called with ones.
std::vector<corpus::Call> CallsOf(const Member& member) {
    std::vector<const corpus::Case*> cases;
    for (const corpus::Case& each : corpus::Cases())
        if (each.call.substr(0, each.call.find('(')) == member.name) cases.push_back(&each);
    if (cases.empty()) return {{std::string(member.name), std::vector<Variant>(member.parameters.size(), Variant(1))}};
    std::vector<corpus::Call> calls;
    for (const corpus::Case* each : {cases.front(), cases[cases.size() / 2]}) {
        calls.push_back(corpus::ParseCall(each->call));
        corpus::Call known = calls.back();
        for (Variant& argument : known.arguments)
            if (argument.If<std::int32_t>()) argument = 1;
        calls.push_back(std::move(known));
    }
    return calls;
}

/// The tables that the corpus knows a method to write.
std::set<std::string> TablesOf(const Member& member) {
    std::set<std::string> tables;
    for (const corpus::Case& each : corpus::Cases()) {
        if (each.call.substr(0, each.call.find('(')) != member.name) continue;
        for (const bool isSQL : {false, true})
            for (const corpus::Statement& statement : each.Statements(isSQL))
                tables.insert(WrittenTable(statement.kind, statement.text));
    }
    return tables;
}

bool TakesText(ValueType type) {
    return type == ValueType::String || type == ValueType::Variant || type == ValueType::VariantArray ||
           type == ValueType::Object;
}

/// A grid like the given one with the value in its keys, titles and cells.
Variant GridWith(const MemoryGrid& like, const Variant& value) {
    const auto* text = value.If<std::string>();
    auto grid = std::make_shared<MemoryGrid>(like.FixedRows());
    for (std::int32_t col = 0; col < like.Cols(); ++col) {
        MemoryGrid::Column column = like.ColumnAt(col);
        if (text && col == 0) column.key = *text;
        if (text) column.title = *text;
        grid->AddColumn(column);
    }
    const bool isCell = value.Type() != VarType::Object && value.Type() != VarType::Array;
    grid->AddRow(std::vector<Variant>(static_cast<std::size_t>(grid->Cols()), isCell ? value : Variant("x")));
    return grid;
}

/// The arguments in which the value can stand for an argument: the argument itself, or the cells of a grid, or each
/// element of an array.
std::vector<Variant> Replacements(const Variant& argument, const Variant& value) {
    if (const auto* object = argument.If<ObjectPtr>()) {
        const auto grid = std::dynamic_pointer_cast<MemoryGrid>(*object);
        return grid ? std::vector<Variant>{GridWith(*grid, value), value} : std::vector<Variant>{value};
    }
    const auto* array = argument.If<std::shared_ptr<VariantArray>>();
    if (!array || !*array) return {value};
    std::vector<Variant> replacements = {value};
    for (std::size_t i = 0; i < (*array)->items.size(); ++i) {
        auto changed = std::make_shared<VariantArray>(**array);
        changed->items[i] = value;
        replacements.emplace_back(std::move(changed));
    }
    return replacements;
}

struct Outcome {
    Contents contents;
    std::optional<std::string> error;
};

class HostileValuesTest : public testing::TestWithParam<const Member*> {
protected:
    static void SetUpTestSuite() {
        book_ = FilledBook();
        before_ = ContentsOf(*book_);
    }
    static void TearDownTestSuite() {
        book_.reset();
        before_.clear();
    }

    /// Calls the method on the book, and undoes what it wrote. Where it sent nothing but queries, nothing is undone,
    /// and nothing may have changed.
    static Outcome Called(const corpus::Call& call, bool isSQL) {
        bool writes = false;
        const auto watched = std::make_shared<bookkeeping::WatchedConnection>(book_, [] { return 0; });
        watched->onSend = [&](const bookkeeping::SentStatement& sent) { writes = writes || !IsQuery(sent); };
        CTables tables(std::make_shared<WillingHost>());
        tables.Cnn(watched);
        tables.isSQL(isSQL);
        std::vector<Variant> arguments = call.arguments;
        Outcome outcome;
        book_->BeginTrans();
        try {
            _CTables::Call(tables, call.method, arguments);
        } catch (const Error& error) {
            outcome.error = error.Description();
        }
        if (writes) {
            outcome.contents = ContentsOf(*book_);
            book_->RollbackTrans();
        } else {
            outcome.contents = before_;
            book_->CommitTrans();
        }
        return outcome;
    }

    static bool IsQuery(const bookkeeping::SentStatement& sent) {
        constexpr std::string_view kSelect = "SELECT";
        constexpr std::string_view kCrosstab = "TRANSFORM";
        const std::string text = text::UpperCase(Trim(sent.text));
        return sent.op == bookkeeping::StatementOp::Execute &&
               (text.starts_with(kSelect) || text.starts_with(kCrosstab));
    }

    /// Whether a text in the place of this argument is stored in a cell by itself.
    static bool Stores(corpus::Call call, std::size_t index) {
        const std::string marker = "Marker";
        call.arguments[index] = marker;
        const Contents contents = Called(call, false).contents;
        return Holds(contents, marker);
    }

    static void ExpectStored(corpus::Call call, std::size_t index, const HostileValue& hostile) {
        call.arguments[index] = hostile.value;
        const Outcome outcome = Called(call, false);
        EXPECT_TRUE(Holds(outcome.contents, *hostile.value.If<std::string>()))
            << call.method << " did not store " << hostile.name << " as argument " << index << ": "
            << outcome.error.value_or("no error");
    }

    /// Some methods add a blank, so that no text is empty.
    static bool Holds(const Contents& contents, const std::string& text) {
        return std::any_of(contents.begin(), contents.end(), [&](const auto& table) {
            const auto has = [&](const std::string& cell) { return table.second.find(CellText(cell)) != cell.npos; };
            return has(text) || has(text + ' ');
        });
    }

    static inline BookPtr book_;
    static inline Contents before_;
};

TEST_P(HostileValuesTest, ChangeNoOtherTable) {
    const Member& member = *GetParam();
    const std::set<std::string> written = TablesOf(member);
    const std::vector<corpus::Call> calls = CallsOf(member);
    for (const corpus::Call& call : calls) {
        for (std::size_t i = 0; i < call.arguments.size(); ++i) {
            if (!TakesText(member.parameters[i].type)) continue;
            for (const HostileValue& hostile : HostileValues()) {
                for (const Variant& replacement : Replacements(call.arguments[i], hostile.value)) {
                    corpus::Call changed = call;
                    changed.arguments[i] = replacement;
                    const Outcome outcome = Called(changed, (i + calls.size()) % 2 == 0);
                    for (const std::string& table : Changed(before_, outcome.contents)) {
                        EXPECT_EQ(written.count(table), 1U) << member.name << " changed " << table << " by "
                                                            << hostile.name << " as " << member.parameters[i].name;
                    }
                }
            }
        }
    }
    EXPECT_TRUE(ContentsOf(*book_) == before_) << member.name << " changed a table by a query";
}

/// The parameters that fill a cell by themselves.
const std::set<std::string> kStored = {"Update_Option rItem",
                                       "Update_AccInfo rWhich",
                                       "Update_Option rValue",
                                       "Update_AccInfo rValue",
                                       "操作员_Append rName",
                                       "操作员_Update rName",
                                       "Update_Password rPassWord",
                                       "Header rTableName",
                                       "Header rFlag",
                                       "History_Update rCaption",
                                       "History_Update rSetting",
                                       "BillAdulting rAdultor",
                                       "Close_DepotBalance rBookCurrentDate"};

TEST_P(HostileValuesTest, AreStoredAsTheyAre) {
    const Member& member = *GetParam();
    for (std::size_t i = 0; i < member.parameters.size(); ++i) {
        const auto& [name, type, inOut, optional] = member.parameters[i];
        if (type != ValueType::String && type != ValueType::Variant) continue;
        bool isStored = false;
        for (const corpus::Call& call : CallsOf(member)) {
            if (i >= call.arguments.size() || !Stores(call, i)) continue;
            isStored = true;
            for (const HostileValue& hostile : HostileValues())
                if (hostile.storable) ExpectStored(call, i, hostile);
        }
        const std::string parameter = std::string(member.name) + ' ' + name;
        EXPECT_EQ(isStored, kStored.count(parameter) != 0) << parameter;
    }
}

std::vector<const Member*> MethodsWithTexts() {
    std::vector<const Member*> methods;
    for (const Member& member : _CTables::Members()) {
        const bool any = std::any_of(member.parameters.begin(), member.parameters.end(),
                                     [](const auto& parameter) { return TakesText(parameter.type); });
        if (member.kind == _CTables::MemberKind::Method && any) methods.push_back(&member);
    }
    return methods;
}

// GoogleTest takes no Chinese names; the messages of a failure name the method.
INSTANTIATE_TEST_SUITE_P(Method, HostileValuesTest, testing::ValuesIn(MethodsWithTexts()));

}  // namespace
}  // namespace kpTables::test
