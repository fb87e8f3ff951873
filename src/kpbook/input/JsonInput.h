// Values read from JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "kpTables/Variant.h"

namespace kpTables::kpbook::input {

using Json = nlohmann::ordered_json;

/// Reads one value in an argument's form. Error 5 when the text is not JSON or the form is unknown.
Variant ReadJsonValue(std::string_view text);

// For readers of whole JSON objects; each raises error 5 with the reason.

/// Parses a text; values may be nested 100 deep.
Json ParseJson(std::string_view text);
/// As ReadJsonValue, for a parsed value.
Variant VariantOf(const Json& value);
/// The value as a text; key names it in the error.
const std::string& TextOf(const Json& value, std::string_view key);
/// The value as a date, written as in a date argument; key names it in the error.
Date DateOf(const Json& value, std::string_view key);
/// The value as error texts show it: its JSON, at most 80 bytes.
std::string Shown(const Json& value);

}  // namespace kpTables::kpbook::input
