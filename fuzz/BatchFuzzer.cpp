// A line of a batch is read or refused with an error that is text; its arguments read back the same when they are
// written as an answer writes them.
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "Input.h"
#include "kpTables/Error.h"
#include "kpbook/batch/BatchRequest.h"
#include "kpbook/input/JsonInput.h"
#include "kpbook/output/JsonText.h"
#include "text/Utf8.h"

namespace {

using namespace kpTables;
using kpTables::fuzz::Require;

std::optional<std::string> Written(const Variant& value) {
    try {
        std::string json;
        kpbook::output::AppendJsonValue(json, value);
        return json;
    } catch (const Error&) {
        return std::nullopt;
    }
}

void CheckArgument(const Variant& value) {
    const auto json = Written(value);
    if (!json) return;
    const Variant again = kpbook::input::ReadJsonValue(*json);
    Require(again.Type() == value.Type(), "an argument keeps its type", *json);
    Require(Written(again) == json, "an argument reads back", *json);
}

void CheckMessage(const std::string& message) {
    std::string json;
    kpbook::output::AppendJsonString(json, message);
    Require(text::IsValidUtf8(json), "an answer is text", json);
    Require(kpbook::input::ParseJson(json).is_string(), "an answer is JSON", json);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    kpbook::batch::BatchRequest request;
    try {
        kpbook::batch::ReadRequest(line, request);
    } catch (const Error& error) {
        Require(text::IsValidUtf8(error.Description()), "an error is text", error.Description());
        CheckMessage(error.Description());
    }
    for (const Variant& argument : request.arguments) CheckArgument(argument);
    if (request.execute) CheckMessage(*request.execute);
    return 0;
}
