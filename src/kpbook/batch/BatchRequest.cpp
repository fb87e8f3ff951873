#include "kpbook/batch/BatchRequest.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "kpTables/Error.h"
#include "kpbook/input/JsonInput.h"

namespace kpTables::kpbook::batch {

namespace {

using input::Json;

[[noreturn]] void RefuseLine(const std::string& what) {
    throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), what);
}

MessageAnswer ReadAnswer(const Json& value) {
    if (value == "yes") return MessageAnswer::Yes;
    if (value == "no") return MessageAnswer::No;
    RefuseLine("\"answer\" takes \"yes\" or \"no\", not " + input::Shown(value));
}

bool IsMember(std::string_view key) {
    constexpr std::array<std::string_view, 11> kMembers = {
        "method", "execute", "several", "params", "begin", "commit", "rollback", "args", "isSQL", "today", "answer"};
    return std::find(kMembers.begin(), kMembers.end(), key) != kMembers.end();
}

/// The steps whose keys a line has.
std::vector<TransactionStep> StepsOf(const Json& line) {
    std::vector<TransactionStep> steps;
    for (const auto step : {TransactionStep::Begin, TransactionStep::Commit, TransactionStep::Rollback}) {
        const std::string key(KeyOf(step));
        if (!line.contains(key) || line[key].is_null()) continue;
        if (line[key] != true) RefuseLine("\"" + key + "\" takes true, not " + input::Shown(line[key]));
        steps.push_back(step);
    }
    return steps;
}

void ReadMember(const std::string& key, const Json& value, BatchRequest& request) {
    const auto is = [&](const char* name) { return key == name && !value.is_null(); };
    if (is("args")) {
        if (!value.is_array()) RefuseLine("\"args\" takes a list, not " + input::Shown(value));
        for (const auto& argument : value) request.arguments.push_back(input::VariantOf(argument));
    } else if (is("params")) {
        if (!value.is_object()) RefuseLine("\"params\" takes an object, not " + input::Shown(value));
        for (const auto& [name, each] : value.items()) request.values.push_back({name, input::VariantOf(each)});
    } else if (is("isSQL")) {
        if (!value.is_boolean()) RefuseLine("\"isSQL\" takes true or false, not " + input::Shown(value));
        request.isSQL = value.get<bool>();
    } else if (is("several")) {
        if (!value.is_boolean()) RefuseLine("\"several\" takes true or false, not " + input::Shown(value));
        request.several = value.get<bool>();
    } else if (is("today")) {
        request.today = input::DateOf(value, key);
    } else if (is("answer")) {
        request.answer = ReadAnswer(value);
    } else if (!IsMember(key)) {
        RefuseLine("unknown key \"" + key + "\"");
    }
}

}  // namespace

std::string_view KeyOf(TransactionStep step) noexcept {
    switch (step) {
        case TransactionStep::Begin:
            return "begin";
        case TransactionStep::Commit:
            return "commit";
        default:
            return "rollback";
    }
}

void ReadRequest(std::string_view line, BatchRequest& request) {
    const Json json = input::ParseJson(line);
    if (!json.is_object()) RefuseLine("a line takes an object, not " + input::Shown(json));
    // A host that always writes every member writes null for those without a value.
    const auto isGiven = [&](const char* key) { return json.contains(key) && !json[key].is_null(); };
    // First the method, so that the answer can name it whatever is wrong with the other members.
    if (isGiven("method")) request.method = input::TextOf(json["method"], "method");
    if (isGiven("execute")) request.execute = input::TextOf(json["execute"], "execute");
    const auto steps = StepsOf(json);
    if (!steps.empty()) request.step = steps.front();
    const auto asked = steps.size() + (request.method ? 1 : 0) + (request.execute ? 1 : 0);
    if (asked > 1)
        RefuseLine("a line takes one of \"method\", \"execute\", \"begin\", \"commit\" and \"rollback\", not several");
    if (asked == 0) RefuseLine("a line takes \"method\", \"execute\", \"begin\", \"commit\" or \"rollback\"");
    for (const auto& [key, value] : json.items()) ReadMember(key, value, request);
    if (!request.method && isGiven("args")) RefuseLine("\"args\" go with \"method\" only");
    if (!request.execute && request.several) RefuseLine("\"several\" goes with \"execute\" only");
    if (!request.execute && isGiven("params")) RefuseLine("\"params\" go with \"execute\" only");
}

}  // namespace kpTables::kpbook::batch
