#include "kpbook/input/BillFile.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Utf8.h"
#include "kpbook/input/CsvReader.h"
#include "kpbook/input/InputFile.h"
#include "kpbook/input/JsonInput.h"
#include "kpbook/input/TextDecoder.h"
#include "kpbook/input/WholeFile.h"
#include "kpbook/input/XlsxReader.h"

namespace kpTables::kpbook::input {

namespace {

using bookkeeping::SheetRow;

constexpr const char* kLines = "明细";
constexpr std::string_view kMark = "\xEF\xBB\xBF";

std::string ReadAll(const std::string& path) {
    InputFile file(path);
    return WholeOf([&file](char* buffer, std::size_t size) { return file.Read(buffer, size); });
}

[[noreturn]] void RefuseFile(const std::string& path, const std::string& reason) {
    throw CommandError((path == "-" ? Message("standard input") : path) + ": " + reason);
}

std::string Cell(std::string_view text) { return std::string(Trim(text)); }

std::vector<std::string> ReadColumns(RowReader& csv, const std::string& path) {
    if (!csv.Next()) RefuseFile(path, Message("no header line with the names of the columns"));
    std::vector<std::string> columns;
    for (std::size_t i = 0; i < csv.FieldCount(); ++i) {
        std::string name = Cell(csv.Field(i));
        if (!name.empty() && std::ranges::find(columns, name) != columns.end()) {
            RefuseFile(path, Message("the column {1} stands twice in the first line", Printable(name)));
        }
        columns.push_back(std::move(name));
    }
    return columns;
}

std::vector<SheetRow> ReadTableRows(RowReader& csv, const std::string& path) {
    const auto columns = ReadColumns(csv, path);
    std::vector<SheetRow> rows;
    while (csv.Next()) {
        const auto refuse = [&](const std::string& why) {
            RefuseFile(path, Message("line {1}: {2}", csv.Line(), why));
        };
        if (!csv.Problem().empty()) refuse(csv.Problem());
        if (csv.FieldCount() > columns.size()) refuse(Message("more fields than the first line has columns"));
        SheetRow row{csv.Line(), {}};
        for (std::size_t i = 0; i < csv.FieldCount(); ++i) {
            if (!IsValidUtf8(csv.Field(i))) refuse(Message("not valid UTF-8"));
            row.cells[columns[i]] = Cell(csv.Field(i));
        }
        // Spreadsheets write empty rows as commas.
        if (std::ranges::any_of(row.cells, [](const auto& cell) { return !cell.second.empty(); })) rows.push_back(row);
    }
    return rows;
}

/// A text in any encoding, with any separator.
std::vector<SheetRow> ReadTextRows(const std::string& content, const std::string& path) {
    std::size_t read = 0;
    const auto source = [&](char* buffer, std::size_t size) {
        const std::size_t count = std::min(size, content.size() - read);
        std::copy_n(content.data() + read, count, buffer);
        read += count;
        return count;
    };
    TextDecoder text(source, "");
    CsvReader csv([&text](char* buffer, std::size_t size) { return text.Read(buffer, size); }, std::nullopt);
    return ReadTableRows(csv, path);
}

std::vector<SheetRow> ReadWorkbookRows(std::string content, const std::string& path) {
    XlsxReader sheet(std::move(content), path, "");
    return ReadTableRows(sheet, path);
}

std::string JsonCell(const Json& value, const std::string& key) {
    if (value.is_null()) return "";
    if (value.is_string()) return Cell(value.get_ref<const std::string&>());
    if (value.is_number()) return value.dump();
    throw CommandError(Message("{1} is neither a text nor a number: {2}", key, Shown(value)));
}

void AddCells(SheetRow& row, const Json& object) {
    if (!object.is_object()) throw CommandError(Message("a row is an object, not {1}", Shown(object)));
    for (const auto& [key, value] : object.items()) {
        if (key != kLines) row.cells[key] = JsonCell(value, key);
    }
}

std::vector<SheetRow> ReadJsonRows(const std::string& content, const std::string& path) {
    try {
        const Json json = ParseJson(content);
        std::vector<SheetRow> rows;
        const auto add = [&](const Json& bill) {
            SheetRow row;
            AddCells(row, bill);
            const auto lines = bill.find(kLines);
            if (lines != bill.end() && !lines->is_array()) throw CommandError(Message("{1} is no array", kLines));
            const bool isOne = lines == bill.end();
            // Objects without a key of their own are bills of their own.
            if (!isOne) row.cells.try_emplace("单据", "#" + std::to_string(rows.size() + 1));
            for (std::size_t i = 0; i < (isOne ? 1 : lines->size()); ++i) {
                SheetRow line = row;
                line.row = static_cast<std::int64_t>(rows.size()) + 1;
                if (!isOne) AddCells(line, (*lines)[i]);
                rows.push_back(std::move(line));
            }
        };
        if (json.is_array()) {
            for (const Json& bill : json) add(bill);
        } else {
            add(json);
        }
        return rows;
    } catch (const Error& error) {
        RefuseFile(path, error.Description());
    } catch (const CommandError& error) {
        RefuseFile(path, error.what());
    }
}

}  // namespace

std::vector<SheetRow> ReadBillFile(const std::string& path) {
    std::string content = ReadAll(path);
    if (content.starts_with(kMark)) content.erase(0, kMark.size());
    const auto first = content.find_first_not_of(" \t\r\n");
    const bool isJson = first != std::string::npos && (content[first] == '[' || content[first] == '{');
    auto rows = isJson                              ? ReadJsonRows(content, path)
                : content.starts_with("PK\x03\x04") ? ReadWorkbookRows(std::move(content), path)
                                                    : ReadTextRows(content, path);
    if (rows.empty()) RefuseFile(path, Message("there are no rows"));
    return rows;
}

SheetRow ReadLineWord(const std::string& word, std::int64_t row) {
    SheetRow line{row, {}};
    for (std::size_t at = 0; at <= word.size();) {
        const std::size_t end = std::min(word.find(',', at), word.size());
        const std::string part = word.substr(at, end - at);
        const auto equals = part.find('=');
        if (equals == std::string::npos || equals == 0) {
            throw UsageError(
                Message("--line {1}: '{2}' is not COLUMN=VALUE, such as 商品=01001,数量=5,单价=12.5", word, part));
        }
        line.cells[Cell(std::string_view(part).substr(0, equals))] = Cell(std::string_view(part).substr(equals + 1));
        at = end + 1;
    }
    return line;
}

}  // namespace kpTables::kpbook::input
