#include "kpbook/batch/BatchAnswer.h"

#include <string_view>

#include "kpbook/HostObjects.h"
#include "kpbook/output/JsonText.h"

namespace kpTables::kpbook::batch {

namespace {

/// Composes a JSON object member by member.
class Answer {
public:
    /// Appends the key; the caller appends the value.
    std::string& Member(std::string_view key) {
        text_ += text_.empty() ? "{" : ",";
        output::AppendJsonString(text_, key);
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
    /// Appends a value that is JSON already, unless it is empty.
    void MemberText(std::string_view key, const std::string& json) {
        if (!json.empty()) Member(key) += json;
    }
    std::string Line() const { return text_ + "}\n"; }

private:
    std::string text_;
};

void AppendSent(std::string& out, const bookkeeping::SentStatement& sent) {
    out += sent.op == bookkeeping::StatementOp::Execute ? R"({"op":"execute","text":)" : R"({"op":"open","text":)";
    output::AppendJsonString(out, sent.text);
    out += sent.kind == SourceKind::Text ? R"(,"kind":"text"})" : R"(,"kind":"table"})";
}

/// {"number":5,"description":"..."}
void AppendError(std::string& out, const Error& error) {
    out += "{\"number\":" + std::to_string(error.Number()) + ",\"description\":";
    output::AppendJsonString(out, error.Description());
    out += '}';
}

void AppendIncident(std::string& out, const Incident& incident) {
    out += "{\"text\":";
    output::AppendJsonString(out, incident.statement);
    out += ",\"error\":";
    AppendError(out, incident.error);
    out += '}';
}

void AppendMessage(std::string& out, const ShownMessage& message) {
    out += "{\"text\":";
    output::AppendJsonString(out, message.text);
    out += ",\"title\":";
    output::AppendJsonString(out, message.title);
    out += ",\"buttons\":" + std::to_string(static_cast<int>(message.buttons)) + ",\"answer\":";
    if (!message.answer) {
        out += "null}";
    } else {
        out += *message.answer == MessageAnswer::Ok    ? "\"ok\"}"
               : *message.answer == MessageAnswer::Yes ? "\"yes\"}"
                                                       : "\"no\"}";
    }
}

void AppendEvent(std::string& out, const RaisedEvent& event) {
    out += "{\"name\":";
    output::AppendJsonString(out, event.name);
    out += ",\"args\":" + ListText(event.arguments) + "}";
}

void AppendChange(std::string& out, const RecordingProgressBar::Change& change) {
    out += ListText({Variant(change.property), change.value});
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

}  // namespace

std::string ListText(const std::vector<Variant>& values) {
    std::string text = "[";
    for (const char* separator = ""; const auto& value : values) {
        text += separator;
        separator = ",";
        output::AppendJsonValue(text, value);
    }
    return text + "]";
}

std::string AnswerLine(const BatchRequest& request, const BatchOutcome& outcome) {
    Answer answer;
    if (request.method) output::AppendJsonString(answer.Member("method"), *request.method);
    if (request.execute) output::AppendJsonString(answer.Member("execute"), *request.execute);
    if (request.step) answer.Member(KeyOf(*request.step)) += "true";
    answer.MemberText("result", outcome.result);
    answer.MemberText("args", outcome.arguments);
    if (request.method || request.execute) answer.Member("sent", outcome.sent, AppendSent);
    if (!outcome.messages.empty()) answer.Member("messages", outcome.messages, AppendMessage);
    if (!outcome.events.empty()) answer.Member("events", outcome.events, AppendEvent);
    const auto progress = ProgressOf(request.arguments);
    if (!progress.empty()) answer.Member("progress", progress, AppendChange);
    if (!outcome.failed.empty()) answer.Member("failed", outcome.failed, AppendIncident);
    if (outcome.error) AppendError(answer.Member("error"), *outcome.error);
    return answer.Line();
}

}  // namespace kpTables::kpbook::batch
