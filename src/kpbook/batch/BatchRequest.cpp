#include "kpbook/batch/BatchRequest.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "kpTables/Error.h"
#include "kpbook/input/JsonInput.h"

namespace kpTables::kpbook::batch {

namespace {

using input::Json;

[[noreturn]] void Refuse(const std::string& what) {
    throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), what);
}

MessageAnswer ReadAnswer(const Json& value) {
    if (value == "yes") return MessageAnswer::Yes;
    if (value == "no") return MessageAnswer::No;
    Refuse("\"answer\" takes \"yes\" or \"no\", not " + input::Shown(value));
}

bool IsMember(std::string_view key) {
    constexpr std::array<std::string_view, 6> kMembers = {"method", "execute", "args", "isSQL", "today", "answer"};
    return std::find(kMembers.begin(), kMembers.end(), key) != kMembers.end();
}

void ReadMember(const std::string& key, const Json& value, BatchRequest& request) {
    const auto is = [&](const char* name) { return key == name && !value.is_null(); };
    if (is("args")) {
        if (!value.is_array()) Refuse("\"args\" takes a list, not " + input::Shown(value));
        for (const auto& argument : value) request.arguments.push_back(input::VariantOf(argument));
    } else if (is("isSQL")) {
        if (!value.is_boolean()) Refuse("\"isSQL\" takes true or false, not " + input::Shown(value));
        request.isSQL = value.get<bool>();
    } else if (is("today")) {
        request.today = input::DateOf(value, key);
    } else if (is("answer")) {
        request.answer = ReadAnswer(value);
    } else if (!IsMember(key)) {
        Refuse("unknown key \"" + key + "\"");
    }
}

}  // namespace

void ReadRequest(std::string_view line, BatchRequest& request) {
    const Json json = input::ParseJson(line);
    if (!json.is_object()) Refuse("a line takes an object, not " + input::Shown(json));
    // A host that always writes every member writes null for those without a value.
    const auto isGiven = [&](const char* key) { return json.contains(key) && !json[key].is_null(); };
    // First the method, so that the answer can name it whatever is wrong with the other members.
    if (isGiven("method")) request.method = input::TextOf(json["method"], "method");
    if (isGiven("execute")) request.execute = input::TextOf(json["execute"], "execute");
    if (request.method && request.execute) Refuse("a line takes \"method\" or \"execute\", not both");
    if (!request.method && !request.execute) Refuse("a line takes \"method\" or \"execute\"");
    for (const auto& [key, value] : json.items()) ReadMember(key, value, request);
    if (request.execute && isGiven("args")) Refuse("\"args\" go with \"method\" only");
}

}  // namespace kpTables::kpbook::batch
