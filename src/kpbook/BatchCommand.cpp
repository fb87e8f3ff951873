#include <optional>

#include "kpTables/Error.h"
#include "kpTables/LateBound.h"
#include "kpbook/Commands.h"
#include "kpbook/Host.h"
#include "kpbook/HostObjects.h"
#include "kpbook/InputFile.h"
#include "kpbook/JsonInput.h"
#include "kpbook/JsonText.h"
#include "kpbook/LineReader.h"
#include "kpbook/Names.h"
#include "kpbook/Output.h"
#include "kpbook/Session.h"

namespace kpTables::kpbook {

namespace {

struct RaisedEvent {
    std::string name;
    std::vector<Variant> arguments;
};

/// The members of an answer line, in order.
class Answer {
public:
    /// Appends "key":; the value is to follow.
    std::string& Member(std::string_view key) {
        text_ += text_.empty() ? "{" : ",";
        AppendJsonString(text_, key);
        return text_ += ':';
    }
    template <class List, class AppendItem>
    void Member(std::string_view key, const List& list, AppendItem appendItem) {
        auto& out = Member(key);
        out += '[';
        for (const char* separator = ""; const auto& item : list) {
            out += separator;
            separator = ",";
            appendItem(out, item);
        }
        out += ']';
    }
    /// Values that were made before; nothing where there are none.
    void MemberText(std::string_view key, const std::string& json) {
        if (!json.empty()) Member(key) += json;
    }
    std::string Line() const { return text_ + "}\n"; }

private:
    std::string text_;
};

void AppendSent(std::string& out, const SentStatement& sent) {
    out += sent.op == StatementOp::Execute ? R"({"op":"execute","text":)" : R"({"op":"open","text":)";
    AppendJsonString(out, sent.text);
    out += sent.kind == SourceKind::Text ? R"(,"kind":"text"})" : R"(,"kind":"table"})";
}

void AppendMessage(std::string& out, const ShownMessage& message) {
    out += "{\"text\":";
    AppendJsonString(out, message.text);
    out += ",\"title\":";
    AppendJsonString(out, message.title);
    out += ",\"buttons\":" + std::to_string(static_cast<int>(message.buttons)) + ",\"answer\":";
    if (!message.answer) {
        out += "null}";
    } else {
        out += *message.answer == MessageAnswer::Ok    ? "\"ok\"}"
               : *message.answer == MessageAnswer::Yes ? "\"yes\"}"
                                                       : "\"no\"}";
    }
}

void AppendList(std::string& out, const std::vector<Variant>& values) {
    out += '[';
    for (const char* separator = ""; const auto& value : values) {
        out += separator;
        separator = ",";
        AppendJsonValue(out, value);
    }
    out += ']';
}

void AppendEvent(std::string& out, const RaisedEvent& event) {
    out += "{\"name\":";
    AppendJsonString(out, event.name);
    out += ",\"args\":";
    AppendList(out, event.arguments);
    out += '}';
}

void AppendChange(std::string& out, const RecordingProgressBar::Change& change) {
    AppendList(out, {Variant(change.property), change.value});
}

std::vector<RecordingProgressBar::Change> ProgressOf(const std::vector<Variant>& arguments) {
    std::vector<RecordingProgressBar::Change> changes;
    for (const auto& argument : arguments) {
        const auto* object = argument.If<ObjectPtr>();
        const auto* bar = object ? dynamic_cast<const RecordingProgressBar*>(object->get()) : nullptr;
        if (bar) changes.insert(changes.end(), bar->changes.begin(), bar->changes.end());
    }
    return changes;
}

class BatchRunner : private __CTables {
public:
    BatchRunner(const BatchOptions& options, const GlobalOptions& global)
        : global_(global), host_(std::make_shared<BatchHost>()), session_(options.book, host_, global) {
        session_.tables.Advise(*this);
        auto trace = session_.connection->onSend;
        session_.connection->onSend = [this, trace](const SentStatement& sent) {
            sent_.push_back(sent);
            if (trace) trace(sent);
        };
    }

    std::string AnswerTo(std::string_view line, std::int64_t lineNumber) {
        sent_.clear();
        events_.clear();
        host_->messages.clear();
        BatchRequest request;
        std::string result;
        std::string arguments;
        std::optional<Error> error;
        const auto attempt = [&error](auto action) {
            try {
                action();
                return true;
            } catch (const Error& raised) {
                if (!error) error = raised;
            } catch (const std::exception& raised) {
                if (!error) error = Error(static_cast<int>(ErrorNumber::InvalidCall), raised.what());
            }
            return false;
        };
        if (attempt([&] { Read(line, lineNumber, request); })) {
            attempt([&] { AppendJsonValue(result, Run(request)); });
            if (request.method && !attempt([&] { AppendList(arguments, request.arguments); })) arguments.clear();
        }
        if (error) result.clear();
        return Compose(request, result, arguments, error);
    }

private:
    void TableChanged(const std::string& procName, const std::string& tableName, std::int32_t id) override {
        events_.push_back({"TableChanged", {Variant(procName), Variant(tableName), Variant(id)}});
    }

    static void Read(std::string_view line, std::int64_t lineNumber, BatchRequest& request) {
        try {
            ReadRequest(line, request);
        } catch (const Error& error) {
            throw Error(error.Number(), "line " + std::to_string(lineNumber) + ": " + error.Description());
        }
    }

    Variant Run(BatchRequest& request) {
        host_->today = request.today ? request.today : global_.today;
        host_->answer = request.answer ? request.answer : global_.answer;
        if (request.execute) {
            const auto recordset = session_.connection->Execute(*request.execute);
            return recordset ? Variant(recordset) : Variant(nullptr);
        }
        if (!request.isSQL) return CallMember(session_.tables, *request.method, request.arguments);
        return RunInDialect(*request.isSQL, request);
    }

    /// The line's dialect holds for its call alone, unless the call sets the property itself.
    Variant RunInDialect(bool isSQL, BatchRequest& request) {
        struct Restore {
            CTables& tables;
            bool isSQL;
            ~Restore() { tables.isSQL(isSQL); }
        };
        if (SameName(*request.method, "isSQL") && !request.arguments.empty()) {
            return CallMember(session_.tables, *request.method, request.arguments);
        }
        const Restore restore{session_.tables, session_.tables.isSQL()};
        session_.tables.isSQL(isSQL);
        return CallMember(session_.tables, *request.method, request.arguments);
    }

    std::string Compose(const BatchRequest& request, const std::string& result, const std::string& arguments,
                        const std::optional<Error>& error) const {
        Answer answer;
        if (request.method) AppendJsonString(answer.Member("method"), *request.method);
        if (request.execute) AppendJsonString(answer.Member("execute"), *request.execute);
        answer.MemberText("result", result);
        answer.MemberText("args", arguments);
        if (request.method || request.execute) answer.Member("sent", sent_, AppendSent);
        if (!host_->messages.empty()) answer.Member("messages", host_->messages, AppendMessage);
        if (!events_.empty()) answer.Member("events", events_, AppendEvent);
        const auto progress = ProgressOf(request.arguments);
        if (!progress.empty()) answer.Member("progress", progress, AppendChange);
        if (error) {
            auto& out = answer.Member("error");
            out += "{\"number\":" + std::to_string(error->Number()) + ",\"description\":";
            AppendJsonString(out, error->Description());
            out += '}';
        }
        return answer.Line();
    }

    const GlobalOptions& global_;
    std::shared_ptr<BatchHost> host_;
    std::vector<SentStatement> sent_;
    std::vector<RaisedEvent> events_;
    Session session_;
};

}  // namespace

int Batch(const BatchOptions& options, const GlobalOptions& global) {
    BatchRunner runner(options, global);
    InputFile file(options.path);
    LineReader lines(file);
    Output output("");
    while (const auto line = lines.Next()) {
        if (line->find_first_not_of(" \t\r") == line->npos) continue;
        output.Write(runner.AnswerTo(*line, lines.Number()));
        output.Flush();
    }
    return kSucceeded;
}

}  // namespace kpTables::kpbook
