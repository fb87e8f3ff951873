#include "corpus/Call.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <stdexcept>
#include <utility>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpTables/MemoryGrid.h"
#include "support/ScriptedHost.h"

namespace kpTables::corpus {

namespace {

using test::MakeRows;
using test::ScriptedConnection;

class ValueReader {
public:
    explicit ValueReader(std::string_view text) : text_(text) {}

    bool AtEnd() const { return at_ == text_.size(); }
    bool Take(std::string_view token) {
        if (!text_.substr(at_).starts_with(token)) return false;
        at_ += token.size();
        return true;
    }
    void Expect(std::string_view token) {
        if (!Take(token)) Fail("expected " + std::string(token));
    }
    std::string UpTo(std::string_view ends) {
        const std::size_t end = std::min(text_.find_first_of(ends, at_), text_.size());
        std::string part(text_.substr(at_, end - at_));
        at_ = end;
        return part;
    }
    /// Values separated by commas, up to and including the closing token.
    std::vector<Variant> List(std::string_view close) {
        std::vector<Variant> values;
        while (!Take(close)) {
            if (!values.empty()) Expect(", ");
            values.push_back(Value());
        }
        return values;
    }
    /// Arguments by position, then by name, up to the closing parenthesis. A missing required one is Empty.
    void Arguments(Call& call) {
        for (bool first = true; !Take(")"); first = false) {
            if (!first) Expect(", ");
            const std::size_t begin = at_;
            const std::string name = text_[at_] == '"' ? "" : UpTo(":,)\"");
            if (Take(":=")) {
                const std::size_t position = PositionOf(name, call.method);
                if (position >= call.arguments.size()) call.arguments.resize(position + 1);
                call.arguments[position] = Value();
            } else {
                at_ = begin;
                call.arguments.push_back(Value());
            }
        }
        if (const auto* member = _CTables::Find(call.method))
            for (std::size_t i = call.arguments.size(); i < member->parameters.size(); ++i)
                if (!member->parameters[i].optional) call.arguments.resize(i + 1);
    }
    Variant Value() {
        if (Take("\"")) return Quoted();
        if (Take("#")) return Day();
        if (Take("[")) return std::make_shared<VariantArray>(List("]"));
        if (Take("Grid(")) return Grid();
        const std::string word = UpTo(",;)]");
        if (word == "True") return true;
        if (word == "False") return false;
        if (word == "Null") return Variant::Null();
        if (word == "Empty") return {};
        if (word == "Missing") return Variant::Missing();
        if (word == "Nothing") return nullptr;
        if (word == "Bar") return std::make_shared<test::ScriptedBar>(std::make_shared<test::Journal>());
        return Number(word);
    }

private:
    [[noreturn]] void Fail(const std::string& complaint) const {
        throw std::runtime_error(complaint + " at " + std::to_string(at_) + " of " + std::string(text_));
    }

    std::size_t PositionOf(const std::string& parameter, const std::string& method) const {
        const auto* member = _CTables::Find(method);
        if (!member) Fail("no method " + method);
        const auto& parameters = member->parameters;
        const auto found = std::find_if(parameters.begin(), parameters.end(),
                                        [&](const auto& each) { return each.name == parameter; });
        if (found == parameters.end()) Fail("no parameter " + parameter);
        return static_cast<std::size_t>(found - parameters.begin());
    }

    Variant Quoted() {
        std::string value = UpTo("\"");
        for (Expect("\""); Take("\""); Expect("\"")) value += '"' + UpTo("\"");
        return value;
    }
    Variant Day() {
        const auto day = Date::ParseIso(UpTo("#"));
        if (!day) Fail("expected a date");
        Expect("#");
        return *day;
    }
    Variant Grid() {
        auto grid = std::make_shared<MemoryGrid>();
        for (const Variant& key : List(")")) grid->AddColumn({kpTables::Text(key), kpTables::Text(key), false, 10});
        return grid;
    }
    Variant Number(const std::string& word) const {
        if (word.find_first_not_of("0123456789-.e@%") != word.npos || word.empty()) Fail("expected a value");
        const std::string digits = word.substr(0, word.find_first_of("@%"));
        if (word.ends_with('@')) return CCur(digits);
        if (word.ends_with('%')) return CInt(digits);
        if (digits.find_first_of(".e") != digits.npos) return CDbl(digits);
        return CLng(digits);
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

MessageAnswer AnswerOf(const std::string& box) {
    constexpr std::pair<std::string_view, MessageAnswer> kAnswers[] = {
        {"Ok", MessageAnswer::Ok}, {"Yes", MessageAnswer::Yes}, {"No", MessageAnswer::No}};
    for (const auto& [name, answer] : kAnswers)
        if (box == name) return answer;
    throw std::runtime_error("no such answer to a message box: " + box);
}

}  // namespace

Call ParseCall(std::string_view text) {
    ValueReader reader(text);
    Call call{reader.UpTo("("), {}};
    reader.Expect("(");
    reader.Arguments(call);
    if (!reader.AtEnd()) throw std::runtime_error("expected one call: " + std::string(text));
    return call;
}

Variant ParseValue(std::string_view text) { return ValueReader(text).Value(); }

RecordsetPtr ParseRows(std::string_view text) {
    if (text == "none") return nullptr;
    ValueReader reader(text);
    std::vector<FieldInfo> fields;
    do fields.push_back({reader.UpTo(",:"), VarType::Empty});
    while (reader.Take(", "));
    reader.Expect(":");
    test::Rows rows;
    while (!reader.AtEnd()) {
        reader.Expect(rows.empty() ? " " : "; ");
        auto& row = rows.emplace_back();
        do row.push_back(reader.Value());
        while (reader.Take(", "));
    }
    constexpr std::int32_t kNextId = 7;
    return std::make_shared<test::NumberedRecordset>(std::move(fields), rows, kNextId);
}

std::vector<test::Sent> Expected(const Case& each, bool isSQL) {
    std::vector<test::Sent> sent;
    for (const Statement& statement : each.Statements(isSQL)) {
        if (statement.kind == "execute")
            sent.push_back(test::Executed(statement.text));
        else
            sent.push_back(
                test::Opened(statement.text, statement.kind == "open" ? SourceKind::Text : SourceKind::Table));
    }
    return sent;
}

std::vector<test::Sent> Expected(std::string_view call, std::string_view title, bool isSQL) {
    return Expected(Find(call, title), isSQL);
}

test::Journal Entries(std::string_view call, std::string_view title, bool isSQL) {
    test::Journal entries;
    for (const Statement& each : Find(call, title).Statements(isSQL)) entries.push_back(each.kind + " " + each.text);
    return entries;
}

namespace {

/// The component on a connection and a host scripted by a case.
struct Scene {
    Scene(const Case& each, bool isSQL) {
        for (const Statement& statement : each.Statements(isSQL))
            cnn->Answer(statement.answer.empty() ? MakeRows({}, {}) : ParseRows(statement.answer));
        std::deque<MessageAnswer> answers;
        for (const std::string& box : each.boxes) answers.push_back(AnswerOf(box));
        host = std::make_shared<test::DatedHost>(std::move(answers));
        tables = std::make_unique<CTables>(host);
        tables->Cnn(cnn);
        tables->isSQL(isSQL);
    }

    std::shared_ptr<ScriptedConnection> cnn = std::make_shared<ScriptedConnection>();
    std::shared_ptr<test::DatedHost> host;
    std::unique_ptr<CTables> tables;
};

}  // namespace

Outcome Run(const Case& each, bool isSQL) {
    const Scene scene(each, isSQL);
    Call call = ParseCall(each.call);
    Outcome outcome;
    outcome.result = _CTables::Call(*scene.tables, call.method, call.arguments);
    outcome.sent = scene.cnn->Statements();
    outcome.boxesLeft = each.boxes.size() - scene.host->Messages().size();
    return outcome;
}

std::vector<test::Sent> SentWith(const Case& each, const std::vector<Variant>& arguments, bool isSQL) {
    const Scene scene(each, isSQL);
    auto passed = arguments;
    try {
        _CTables::Call(*scene.tables, ParseCall(each.call).method, passed);
    } catch (const Error&) {
        return scene.cnn->Statements();
    }
    return scene.cnn->Statements();
}

std::vector<std::string> SentBy(std::string_view text, bool isSQL) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    tables.Cnn(cnn);
    tables.isSQL(isSQL);
    Call call = ParseCall(text);
    try {
        _CTables::Call(tables, call.method, call.arguments);
    } catch (const Error&) {
        if (cnn->Statements().empty()) throw;
    }
    std::vector<std::string> texts;
    for (const test::Sent& sent : cnn->Statements()) texts.push_back(sent.text);
    return texts;
}

}  // namespace kpTables::corpus
