// Runs a text of several statements over any connection.
#include <algorithm>
#include <optional>
#include <utility>

#include "engines/common/Failure.h"
#include "kpTables/Script.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/Position.h"
#include "sql/parse/Parser.h"
#include "sql/parse/ScriptSteps.h"

namespace kpTables {

namespace {

using sql::parse::ScriptStep;
using sql::parse::Slice;
using sql::parse::StepKind;

/// What is sent for a step, and where its parts stand in the whole text.
class SentText {
public:
    explicit SentText(std::string_view whole) : whole_(whole) {}

    SentText& Add(std::string_view words) {
        text_ += words;
        return *this;
    }
    SentText& Add(Slice slice) {
        parts_.push_back({text_.size(), slice});
        text_ += whole_.substr(slice.begin, slice.end - slice.begin);
        return *this;
    }

    const std::string& Get() const noexcept { return text_; }

    /// The error with the whole text and its place in it.
    DatabaseError InWhole(const DatabaseError& error) const {
        std::string message = error.Description();
        const std::size_t position = error.Position().value_or(0);
        const std::size_t place = PlaceOf(position);
        const std::string own = sql::PlaceText(sql::Locate(text_, position));
        const std::size_t found = error.Position() ? message.find(own) : message.npos;
        if (found != message.npos) {
            message.replace(found, own.size(), sql::PlaceText(sql::Locate(whole_, place)));
        } else {
            message = Message("line {1}: {2}", sql::Locate(whole_, place).line, message);
        }
        return DatabaseError(error.Number(), message, std::string(whole_), place);
    }

private:
    struct Part {
        std::size_t begin;  ///< in the sent text
        Slice slice;
    };

    std::size_t PlaceOf(std::size_t position) const {
        std::size_t place = parts_.front().slice.begin;
        for (const Part& part : parts_) {
            if (position < part.begin) break;
            place = part.slice.begin + std::min(position - part.begin, part.slice.end - part.slice.begin);
        }
        return place;
    }

    std::string_view whole_;
    std::string text_;
    std::vector<Part> parts_;
};

bool IsOfTransaction(std::string_view words) {
    constexpr std::size_t kShortest = 3;
    return !sql::SameName(words.substr(0, kShortest), "SET");
}

bool EndsTransactions(const std::vector<ScriptStep>& steps, std::string_view text) {
    return std::any_of(steps.begin(), steps.end(), [&](const ScriptStep& step) {
        const bool own = step.kind == StepKind::Session && IsOfTransaction(text.substr(step.text.begin));
        return own || EndsTransactions(step.then, text) || EndsTransactions(step.otherwise, text);
    });
}

/// Whether a statement may change the book.
bool MayChange(const std::vector<ScriptStep>& steps, std::string_view text) {
    return std::any_of(steps.begin(), steps.end(), [&](const ScriptStep& step) {
        if (step.kind != StepKind::Statement) return MayChange(step.then, text) || MayChange(step.otherwise, text);
        constexpr std::string_view kQuery = "SELECT";
        const std::string folded = sql::FoldedName(text.substr(step.text.begin, step.text.end - step.text.begin));
        return !sql::SameName(std::string_view(folded).substr(0, kQuery.size()), kQuery) ||
               folded.find("into") != folded.npos;
    });
}

class ScriptRun {
public:
    ScriptRun(Connection& connection, std::string_view text, const NamedValues& values)
        : connection_(connection), text_(text), values_(values), given_(values.size()) {}

    /// A value for a name besides those of the host.
    void Give(NamedValue value) {
        values_.push_back(std::move(value));
        ++given_;
    }

    RecordsetPtr Run(const std::vector<ScriptStep>& steps) {
        RunAll(steps);
        return answer_;
    }

private:
    void RunAll(const std::vector<ScriptStep>& steps) {
        for (const ScriptStep& step : steps) RunStep(step);
    }

    void RunStep(const ScriptStep& step) {
        switch (step.kind) {
            case StepKind::Statement:
                if (RecordsetPtr rows = Send(SentText(text_).Add(step.text)); rows && !answer_)
                    answer_ = std::move(rows);
                return;
            case StepKind::Session:
                return RunSession(step);
            case StepKind::Declare:
                for (const ScriptStep::Variable& variable : step.variables) Declare(variable);
                return;
            case StepKind::Set:
                return Set(step.variables.front());
            case StepKind::Assign:
                return Assign(step);
            case StepKind::If: {
                const auto rows = Send(SentText(text_).Add("Select 1 Where ").Add(step.condition));
                return RunAll(rows->RecordCount() > 0 ? step.then : step.otherwise);
            }
            case StepKind::Block:
                RunAll(step.then);
        }
    }

    RecordsetPtr Send(const SentText& sent) {
        try {
            return connection_.Execute(sent.Get(), values_);
        } catch (const DatabaseError& error) {
            throw sent.InWhole(error);
        }
    }

    /// Through the connection's own methods, which a decorator of it sees.
    void RunSession(const ScriptStep& step) {
        using Action = sql::SessionStatement::Action;
        const auto dialect = connection_.Dialect() == SqlDialect::Jet ? sql::Dialect::Jet : sql::Dialect::SqlServer;
        const SentText sent = SentText(text_).Add(step.text);
        try {
            const sql::StatementPtr statement = sql::parse::Parse(sent.Get(), {}, dialect);
            switch (static_cast<const sql::SessionStatement&>(*statement).action) {
                case Action::Nothing:
                    return;
                case Action::Begin:
                    connection_.BeginTrans();
                    return;
                case Action::Commit:
                    return connection_.CommitTrans();
                case Action::Rollback:
                    return connection_.RollbackTrans();
            }
        } catch (const sql::SqlError& refusal) {
            try {
                engines::RaiseRefusal(refusal, sent.Get());
            } catch (const DatabaseError& error) {
                throw sent.InWhole(error);
            }
        } catch (const DatabaseError& error) {
            throw sent.InWhole(error);
        }
    }

    void Declare(const ScriptStep::Variable& variable) {
        if (Find(variable.name)) {
            throw SentText(text_)
                .Add(Slice{variable.offset, variable.offset})
                .InWhole(DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Syntax),
                                       Message("the variable @{1} is declared twice", variable.name)));
        }
        types_.push_back(variable.type);
        values_.push_back({variable.name, Variant::Null()});
        SentText sent = SentText(text_).Add("Select CAST(");
        variable.value.IsEmpty() ? sent.Add("Null") : sent.Add(variable.value);
        values_.back().value = Send(sent.Add(" AS ").Add(variable.type).Add(")"))->GetValue(0);
    }

    NamedValue* Find(std::string_view name) {
        const auto found = std::find_if(values_.begin(), values_.end(),
                                        [&](const NamedValue& each) { return sql::SameName(each.name, name); });
        return found == values_.end() ? nullptr : &*found;
    }

    /// The declared variable; an error when there is none.
    NamedValue& Declared(const ScriptStep::Variable& variable) {
        NamedValue* found = Find(variable.name);
        if (found && found - values_.data() >= static_cast<std::ptrdiff_t>(given_)) return *found;
        throw SentText(text_)
            .Add(Slice{variable.offset, variable.offset})
            .InWhole(DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Syntax),
                                   Message("the variable @{1} is not declared", variable.name)));
    }
    Slice TypeOf(const NamedValue& variable) const {
        return types_[static_cast<std::size_t>(&variable - values_.data()) - given_];
    }

    void Set(const ScriptStep::Variable& variable) {
        NamedValue& target = Declared(variable);
        const SentText sent =
            SentText(text_).Add("Select CAST(").Add(variable.value).Add(" AS ").Add(TypeOf(target)).Add(")");
        target.value = Send(sent)->GetValue(0);
    }

    /// The last row's values; without a row the variables stay as they are.
    void Assign(const ScriptStep& step) {
        SentText sent(text_);
        sent.Add("Select ").Add(step.lead).Add(" ");
        for (const ScriptStep::Variable& variable : step.variables) {
            const Slice type = TypeOf(Declared(variable));
            sent.Add(&variable == &step.variables.front() ? "CAST(" : ", CAST(").Add(variable.value);
            sent.Add(" AS ").Add(type).Add(")");
        }
        const auto rows = Send(sent.Add(" ").Add(step.rest));
        for (; !rows->Eof(); rows->MoveNext()) {
            for (std::size_t i = 0; i < step.variables.size(); ++i) {
                Declared(step.variables[i]).value = rows->GetValue(static_cast<int>(i));
            }
        }
    }

    Connection& connection_;
    std::string_view text_;
    NamedValues values_;        ///< the host's, then the variables
    std::size_t given_;         ///< how many are the host's
    std::vector<Slice> types_;  ///< of the variables
    RecordsetPtr answer_;
};

}  // namespace

RecordsetPtr ExecuteScript(Connection& connection, std::string_view text, const NamedValues& values) {
    if (!sql::parse::MayHaveSteps(text)) return connection.Execute(text, values);
    const bool jet = connection.Dialect() == SqlDialect::Jet;
    std::vector<ScriptStep> steps;
    try {
        steps = sql::parse::ParseScript(text, jet ? sql::Dialect::Jet : sql::Dialect::SqlServer);
    } catch (const sql::SqlError& refusal) {
        engines::RaiseRefusal(refusal, text);
    }
    if (steps.empty()) return connection.Execute(text, values);
    ScriptRun run(connection, text, values);
    const bool isOne = steps.size() == 1 && steps.front().kind == StepKind::Statement;
    if (isOne || EndsTransactions(steps, text) || !MayChange(steps, text)) return run.Run(steps);
    // The text's own transaction is none that it sees.
    if (sql::FoldedName(text).find("@@trancount") != std::string::npos) {
        run.Give({"@TRANCOUNT", connection.Execute("Select @@TRANCOUNT")->GetValue(0)});
    }
    Transaction transaction(connection);
    RecordsetPtr rows = run.Run(steps);
    transaction.Commit();
    return rows;
}

}  // namespace kpTables
