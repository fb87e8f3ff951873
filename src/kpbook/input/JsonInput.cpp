#include "kpbook/input/JsonInput.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "kpTables/Error.h"
#include "kpTables/MemoryGrid.h"
#include "kpTables/text/Message.h"
#include "kpbook/HostObjects.h"
#include "text/Utf8.h"

namespace kpTables::kpbook::input {

namespace {

[[noreturn]] void RefuseJson(const std::string& what) {
    throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), what);
}

Variant ReadCurrency(const Json& value) {
    if (value.is_string()) return Currency::FromDecimalText(value.get_ref<const std::string&>());
    if (value.is_number_integer()) return Currency::FromDecimalText(value.dump());
    if (value.is_number()) return Currency::FromDouble(value.get<double>());
    RefuseJson(Message("\"currency\" takes a decimal text or a number, not {1}", Shown(value)));
}

Variant ReadArray(const Json& value) {
    if (!value.is_array()) RefuseJson(Message("\"array\" takes a list, not {1}", Shown(value)));
    std::vector<Variant> items;
    for (const auto& item : value) items.push_back(VariantOf(item));
    return std::make_shared<VariantArray>(std::move(items));
}

Variant ReadRow(const Json& value) {
    if (!value.is_object()) RefuseJson(Message("\"row\" takes an object of columns and values, not {1}", Shown(value)));
    std::vector<std::pair<std::string, Variant>> row;
    for (const auto& [column, cell] : value.items()) {
        const Variant read = VariantOf(cell);
        switch (read.Type()) {
            case VarType::Object:
            case VarType::Array:
            case VarType::Missing:
                RefuseJson(Message("column \"{1}\" of a row cannot hold {2}", column, Shown(cell)));
            default:
                row.emplace_back(column, read);
        }
    }
    return std::make_shared<RowArgument>(row);
}

MemoryGrid::Column ReadGridColumn(const Json& value) {
    if (!value.is_object()) RefuseJson(Message("a grid's column takes an object, not {1}", Shown(value)));
    MemoryGrid::Column column;
    for (const auto& [key, content] : value.items()) {
        if (key == "key") {
            column.key = TextOf(content, key);
        } else if (key == "title") {
            column.title = TextOf(content, key);
        } else if (key == "hidden") {
            if (!content.is_boolean()) RefuseJson(Message("\"hidden\" takes true or false, not {1}", Shown(content)));
            column.hidden = content.get<bool>();
        } else if (key == "width") {
            if (!content.is_number()) RefuseJson(Message("\"width\" takes a number, not {1}", Shown(content)));
            column.width = content.get<double>();
        } else {
            RefuseJson(Message("unknown key \"{1}\" of a grid's column", key));
        }
    }
    return column;
}

std::vector<Variant> ReadGridRow(const Json& value) {
    if (!value.is_array()) RefuseJson(Message("a grid's row takes a list, not {1}", Shown(value)));
    std::vector<Variant> cells;
    for (const auto& cell : value) {
        cells.push_back(VariantOf(cell));
        const auto type = cells.back().Type();
        if (type == VarType::Object || type == VarType::Array || type == VarType::Missing) {
            RefuseJson(Message("a grid's cell cannot hold {1}", Shown(cell)));
        }
    }
    return cells;
}

std::int32_t ReadFixedRows(const Json& value) {
    constexpr std::int32_t kMost = 1000;
    if (!value.is_number_integer() || value < 0 || value > kMost) {
        RefuseJson(Message("\"FixedRows\" takes a number from 0 to {1}, not {2}", kMost, Shown(value)));
    }
    return value.get<std::int32_t>();
}

const Json& ListOf(const Json& value, std::string_view key) {
    if (!value.is_array()) RefuseJson(Message("\"{1}\" takes a list, not {2}", key, Shown(value)));
    return value;
}

Variant ReadGrid(const Json& value) {
    if (!value.is_object()) RefuseJson(Message("\"grid\" takes an object, not {1}", Shown(value)));
    for (const auto& [key, content] : value.items()) {
        if (key != "FixedRows" && key != "cols" && key != "rows")
            RefuseJson(Message("unknown key \"{1}\" of a grid", key));
    }
    auto grid = std::make_shared<MemoryGrid>(value.contains("FixedRows") ? ReadFixedRows(value["FixedRows"]) : 1);
    if (value.contains("cols")) {
        for (const auto& column : ListOf(value["cols"], "cols")) grid->AddColumn(ReadGridColumn(column));
    }
    if (value.contains("rows")) {
        for (const auto& row : ListOf(value["rows"], "rows")) {
            const auto cells = ReadGridRow(row);
            if (cells.size() > static_cast<std::size_t>(grid->Cols())) {
                RefuseJson(Message("a grid's row has more cells than there are columns: {1}", Shown(row)));
            }
            grid->AddRow(cells);
        }
    }
    return grid;
}

/// The forms that are an object with one key.
Variant ReadForm(const Json& value) {
    if (value.size() != 1) RefuseJson(Message("no such value form: {1}", Shown(value)));
    const std::string& form = value.begin().key();
    const Json& content = value.begin().value();
    if (form == "date") return DateOf(content, form);
    if (form == "currency") return ReadCurrency(content);
    if (form == "array") return ReadArray(content);
    if (form == "row") return ReadRow(content);
    if (form == "grid") return ReadGrid(content);
    const bool isTrue = content.is_boolean() && content.get<bool>();
    if (isTrue && form == "empty") return Variant();
    if (isTrue && form == "missing") return Variant::Missing();
    if (isTrue && form == "nothing") return nullptr;
    if (isTrue && form == "progress") return std::make_shared<RecordingProgressBar>();
    RefuseJson(Message("no such value form: {1}", Shown(value)));
}

}  // namespace

Json ParseJson(std::string_view text) {
    // Far more than any call needs, and far less than would exhaust the stack.
    constexpr int kDeepest = 100;
    // The keys of the objects that are open. Of two equal keys the parser would keep one without a word.
    std::vector<std::set<std::string>> keys;
    const auto check = [&](int depth, Json::parse_event_t event, Json& parsed) {
        if (depth > kDeepest) RefuseJson(Message("values nested too deep"));
        if (event == Json::parse_event_t::object_start) keys.emplace_back();
        if (event == Json::parse_event_t::object_end) keys.pop_back();
        if (event == Json::parse_event_t::key && !keys.back().insert(parsed.get<std::string>()).second) {
            RefuseJson(Message("the key {1} stands twice in an object", Shown(parsed)));
        }
        return true;
    };
    try {
        return Json::parse(text, check);
    } catch (const Json::parse_error& error) {
        // Its text begins with "[name] parse error at line 1, column 8: "; only the reason is needed here.
        std::string reason = error.what();
        const auto colon = reason.find(": ");
        if (colon != reason.npos) reason = reason.substr(colon + 2);
        // It quotes the text up to the byte that it refuses.
        RefuseJson(Message("not JSON at column {1}: {2}", error.byte, text::ReplaceInvalidUtf8(reason)));
    } catch (const Json::out_of_range&) {
        Raise(ErrorNumber::Overflow, Message("a number beyond any Double"));
    }
}

const std::string& TextOf(const Json& value, std::string_view key) {
    if (!value.is_string()) RefuseJson(Message("\"{1}\" takes a text, not {2}", key, Shown(value)));
    return value.get_ref<const std::string&>();
}

Date DateOf(const Json& value, std::string_view key) {
    const auto date = Date::ParseIso(TextOf(value, key));
    if (!date) RefuseJson(Message("\"{1}\": {2} is no date (YYYY-MM-DD[THH:MM[:SS]])", key, Shown(value)));
    return *date;
}

std::string Shown(const Json& value) {
    constexpr std::size_t kLongest = 80;
    const std::string json = value.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (json.size() <= kLongest) return json;
    std::size_t end = 0;
    for (std::size_t next = 0; next <= kLongest; next += text::CharacterSize(json, next)) end = next;
    return json.substr(0, end) + "...";
}

Variant VariantOf(const Json& value) {
    using LongLimits = std::numeric_limits<std::int32_t>;
    switch (value.type()) {
        case Json::value_t::null:
            return Variant::Null();
        case Json::value_t::boolean:
            return value.get<bool>();
        case Json::value_t::string:
            return value.get_ref<const std::string&>();
        case Json::value_t::number_float:
            return value.get<double>();
        case Json::value_t::number_unsigned:
            if (value.get<std::uint64_t>() <= static_cast<std::uint64_t>(LongLimits::max())) {
                return value.get<std::int32_t>();
            }
            return value.get<double>();
        case Json::value_t::number_integer:
            if (value.get<std::int64_t>() >= LongLimits::min()) return value.get<std::int32_t>();
            return value.get<double>();
        case Json::value_t::object:
            return ReadForm(value);
        default:
            RefuseJson(Message("no such value form: {1}; a list is written {\"array\":[...]}", Shown(value)));
    }
}

Variant ReadJsonValue(std::string_view text) { return VariantOf(ParseJson(text)); }

}  // namespace kpTables::kpbook::input
