#include "kpbook/output/JsonText.h"

#include <charconv>
#include <cmath>

#include "kpTables/Error.h"
#include "kpTables/MemoryGrid.h"
#include "kpTables/text/Message.h"
#include "kpbook/HostObjects.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/CellText.h"

namespace kpTables::kpbook::output {

namespace {

/// {"form":"text"}
void AppendTextForm(std::string& out, std::string_view form, std::string_view text) {
    out += "{\"";
    out += form;
    out += "\":";
    AppendJsonString(out, text);
    out += '}';
}

/// The items of one dimension; those of an outer dimension are the lists of the next one.
void AppendDimension(std::string& out, const VariantArray& array, std::size_t dimension, std::size_t& next) {
    out += '[';
    // An array that was never dimensioned has no bounds.
    const std::int32_t count = array.bounds.empty() ? 0 : array.bounds[dimension].count;
    for (std::int32_t i = 0; i < count; ++i) {
        if (i > 0) out += ',';
        if (dimension + 1 < array.bounds.size()) {
            AppendDimension(out, array, dimension + 1, next);
        } else {
            AppendJsonValue(out, array.items[next++]);
        }
    }
    out += ']';
}

/// The shortest text that reads back as the same number: "100", "0.1". Error 6 when it is not finite.
void AppendPlainNumber(std::string& out, double value) {
    if (!std::isfinite(value)) Raise(ErrorNumber::Overflow, Message("the number is not finite"));
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    out.append(buffer, static_cast<std::size_t>(end - buffer));
}

void AppendRowArgument(std::string& out, const Recordset& row) {
    out += "{\"row\":{";
    for (int i = 0; i < row.FieldCount(); ++i) {
        if (i > 0) out += ',';
        AppendJsonString(out, row.FieldAt(i).name);
        out += ':';
        AppendJsonValue(out, row.GetValue(i));
    }
    out += "}}";
}

void AppendRecordset(std::string& out, Recordset& recordset) {
    out += "{\"columns\":";
    AppendJsonColumns(out, recordset);
    out += ",\"rows\":[";
    for (const char* separator = ""; !recordset.Eof(); recordset.MoveNext(), separator = ",") {
        out += separator;
        AppendJsonRow(out, recordset);
    }
    out += "]}";
}

void AppendGridColumn(std::string& out, const MemoryGrid::Column& column) {
    out += "{\"key\":";
    AppendJsonString(out, column.key);
    out += ",\"title\":";
    AppendJsonString(out, column.title);
    out += ",\"hidden\":";
    AppendJsonValue(out, column.hidden);
    out += ",\"width\":";
    AppendPlainNumber(out, column.width);
    out += '}';
}

void AppendGridRow(std::string& out, const MemoryGrid& grid, std::int32_t row) {
    out += '[';
    for (std::int32_t col = 0; col < grid.Cols(); ++col) {
        if (col > 0) out += ',';
        const Variant& cell = grid.Cell(row, col);
        // An empty cell is written as an empty text.
        AppendJsonValue(out, cell.IsEmpty() ? Variant("") : cell);
    }
    out += ']';
}

void AppendGrid(std::string& out, const MemoryGrid& grid) {
    out += "{\"grid\":{\"FixedRows\":" + std::to_string(grid.FixedRows()) + ",\"cols\":[";
    for (std::int32_t col = 0; col < grid.Cols(); ++col) {
        if (col > 0) out += ',';
        AppendGridColumn(out, grid.ColumnAt(col));
    }
    out += "],\"rows\":[";
    for (std::int32_t row = grid.FixedRows(); row < grid.Rows(); ++row) {
        if (row > grid.FixedRows()) out += ',';
        AppendGridRow(out, grid, row);
    }
    out += "]}}";
}

void AppendObject(std::string& out, const ObjectPtr& object) {
    if (!object) {
        out += "{\"nothing\":true}";
    } else if (const auto* row = dynamic_cast<const RowArgument*>(object.get())) {
        AppendRowArgument(out, *row);
    } else if (auto* recordset = dynamic_cast<Recordset*>(object.get())) {
        AppendRecordset(out, *recordset);
    } else if (const auto* grid = dynamic_cast<const MemoryGrid*>(object.get())) {
        AppendGrid(out, *grid);
    } else if (dynamic_cast<const ProgressBar*>(object.get())) {
        out += "{\"progress\":true}";
    } else {
        Raise(ErrorNumber::TypeMismatch, Message("the object has no value form"));
    }
}

}  // namespace

void AppendJsonString(std::string& out, std::string_view text) {
    if (!IsValidUtf8(text)) {
        AppendJsonString(out, ReplaceInvalidUtf8(text));
        return;
    }
    out += '"';
    const auto isSpecial = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\'; };
    std::size_t written = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!isSpecial(text[at])) continue;
        out += text.substr(written, at - written);
        if (static_cast<unsigned char>(text[at]) < 0x20) {
            AppendControl(out, static_cast<unsigned char>(text[at]), "\\u00");
        } else {
            out.append(1, '\\').append(1, text[at]);
        }
        written = at + 1;
    }
    out += text.substr(written);
    out += '"';
}

void AppendJsonNumber(std::string& out, double value) {
    const std::size_t begin = out.size();
    AppendPlainNumber(out, value);
    if (out.find_first_of(".e", begin) == out.npos) out += ".0";
}

void AppendJsonCell(std::string& out, const Variant& value) {
    switch (value.Type()) {
        case VarType::Empty:
        case VarType::Null:
            out += "null";
            break;
        case VarType::Currency:
            AppendJsonString(out, value.If<Currency>()->ToText());
            break;
        case VarType::Date:
            AppendJsonString(out, value.If<Date>()->ToIso('T'));
            break;
        default:
            AppendJsonValue(out, value);
    }
}

void AppendJsonValue(std::string& out, const Variant& value) {
    switch (value.Type()) {
        case VarType::Empty:
            out += "{\"empty\":true}";
            break;
        case VarType::Null:
            out += "null";
            break;
        case VarType::Missing:
            out += "{\"missing\":true}";
            break;
        case VarType::Boolean:
            out += *value.If<bool>() ? "true" : "false";
            break;
        case VarType::Integer:
        case VarType::Long:
            out += CellText(value);
            break;
        case VarType::Double:
            AppendJsonNumber(out, *value.If<double>());
            break;
        case VarType::Currency:
            AppendTextForm(out, "currency", value.If<Currency>()->ToText());
            break;
        case VarType::Date:
            AppendTextForm(out, "date", value.If<Date>()->ToIso('T'));
            break;
        case VarType::String:
            AppendJsonString(out, *value.If<std::string>());
            break;
        case VarType::Object:
            AppendObject(out, *value.If<ObjectPtr>());
            break;
        case VarType::Array: {
            const auto& array = **value.If<std::shared_ptr<VariantArray>>();
            std::size_t next = 0;
            out += "{\"array\":";
            AppendDimension(out, array, 0, next);
            out += '}';
            break;
        }
    }
}

void AppendJsonColumns(std::string& out, const Recordset& recordset) {
    out += '[';
    for (int i = 0; i < recordset.FieldCount(); ++i) {
        out += i > 0 ? ",{\"name\":" : "{\"name\":";
        AppendJsonString(out, recordset.FieldAt(i).name);
        out += ",\"type\":\"";
        out += TypeName(recordset.FieldAt(i).type);
        out += "\"}";
    }
    out += ']';
}

void AppendJsonRow(std::string& out, const Recordset& recordset) {
    out += '[';
    const int count = recordset.FieldCount();
    for (int i = 0; i < count; ++i) {
        if (i > 0) out += ',';
        AppendJsonCell(out, recordset.GetValue(i));
    }
    out += ']';
}

}  // namespace kpTables::kpbook::output
