#include "kpbook/input/ArgumentText.h"

#include <string>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "kpbook/HostObjects.h"
#include "kpbook/Terminal.h"
#include "kpbook/input/JsonInput.h"

namespace kpTables::kpbook::input {

namespace {

[[noreturn]] void RefuseDate(std::string_view argument) {
    Raise(ErrorNumber::InvalidCall, Message("'{1}' does not have a value of that type", argument));
}

Variant ReadDate(std::string_view argument, std::string_view text) {
    auto date = Date::ParseIso(text);
    if (!date) date = Date::Parse(text);
    if (!date) RefuseDate(argument);
    return *date;
}

Variant NewProgressBar() {
    if (ErrorIsTerminal()) return std::make_shared<TerminalProgressBar>("");
    return std::make_shared<RecordingProgressBar>();
}

}  // namespace

Variant ReadArgument(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == text.npos) return text;
    const auto prefix = text.substr(0, colon);
    const auto rest = text.substr(colon + 1);
    if (prefix == "text") return rest;
    if (prefix == "date") return ReadDate(text, rest);
    if (prefix == "currency") return Currency::FromDecimalText(rest);
    if (prefix == "number") return CDbl(rest);
    if (prefix == "bool") return CBool(rest);
    if (prefix == "json") return ReadJsonValue(rest);
    if (!rest.empty()) return text;
    if (prefix == "null") return Variant::Null();
    if (prefix == "empty") return Variant();
    if (prefix == "missing") return Variant::Missing();
    if (prefix == "nothing") return nullptr;
    if (prefix == "progress") return NewProgressBar();
    return text;
}

}  // namespace kpTables::kpbook::input
