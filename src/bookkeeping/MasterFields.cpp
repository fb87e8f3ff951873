#include "bookkeeping/MasterFields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "bookkeeping/MasterRows.h"
#include "bookkeeping/Names.h"
#include "bookkeeping/References.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/DidYouMean.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// Columns that closing and reopening keep.
constexpr const char* kClosingColumns[] = {"结帐日期", "结帐标志"};

bool IsSettable(const MasterTable& table, const std::string& column) {
    return !IsSameName(column, table.id) && !(table.kind == MasterKind::Warehouse &&
                                              std::ranges::find(kClosingColumns, column) != std::end(kClosingColumns));
}

[[noreturn]] void RefuseColumn(const MasterTable& table, const std::string& given,
                               const std::vector<std::string>& columns) {
    std::string all;
    for (const auto& column : columns) all += (all.empty() ? "" : ", ") + column;
    RefuseWith(Message("{1} has no column {2}{3} (columns: {4})", table.table, given, DidYouMean(given, columns), all));
}

[[noreturn]] void RefuseValue(const std::string& column, const std::string& text, const std::string& why) {
    RefuseWith(Message("{1}: '{2}' {3}", column, text, why));
}

double NumberIn(const std::string& column, const std::string& text) {
    const auto number = ParseNumber(text);
    if (!number || !std::isfinite(*number)) RefuseValue(column, text, Message("is no number"));
    return *number;
}

bool FlagIn(const std::string& column, const std::string& text) {
    const auto isOneOf = [&](std::initializer_list<std::string_view> words) {
        return std::ranges::any_of(words, [&](std::string_view word) { return IsSameName(word, text); });
    };
    if (isOneOf({"True", "yes", "on", "1", "-1", "是"})) return true;
    if (isOneOf({"False", "no", "off", "0", "否"})) return false;
    RefuseValue(column, text, Message("is no flag (yes or no)"));
}

Variant ReadTyped(const FieldInfo& column, const std::string& given) {
    const std::string text(Trim(given));
    switch (column.type) {
        case VarType::Integer:
        case VarType::Long: {
            const double number = NumberIn(column.name, text);
            using Limits = std::numeric_limits<std::int32_t>;
            if (number != std::floor(number) || number < Limits::min() || number > Limits::max()) {
                RefuseValue(column.name, text, Message("is no whole number"));
            }
            return static_cast<std::int32_t>(number);
        }
        case VarType::Double:
            return NumberIn(column.name, text);
        case VarType::Currency:
            NumberIn(column.name, text);
            return CCur(text);
        case VarType::Boolean:
            return FlagIn(column.name, text);
        case VarType::Date:
            if (!IsDate(text)) RefuseValue(column.name, text, Message("is no date"));
            return CDate(text);
        default:
            return text;
    }
}

/// The id or class code that a word stands for; nothing when the column keeps none.
std::optional<Variant> ReadReference(const ConnectionPtr& book, const MasterTable& table, const std::string& column,
                                     const std::string& given) {
    const auto* reference = std::ranges::find_if(kReferences, [&](const Reference& each) {
        return std::string_view(each.table) == table.table && IsSameName(each.column, column);
    });
    if (reference == std::end(kReferences)) return std::nullopt;
    const std::string text(Trim(given));
    if (reference->by == ReferenceBy::Code) {
        return text.empty() ? Variant("") : Variant(ClassCodeOf(book, reference->master, text));
    }
    if (reference->by == ReferenceBy::Name) return std::nullopt;
    return text.empty() || text == "0" ? Variant(std::int32_t{0}) : Variant(MasterId(book, reference->master, text));
}

}  // namespace

ColumnValues ReadMasterValues(const ConnectionPtr& book, const MasterTable& table, const ColumnValues& values) {
    const auto fields = book->Execute("Select * From " + std::string(table.table) + " Where 1=0");
    std::vector<std::string> settable;
    for (int i = 0; i < fields->FieldCount(); ++i) {
        if (IsSettable(table, fields->FieldAt(i).name)) settable.push_back(fields->FieldAt(i).name);
    }
    ColumnValues read;
    for (const ColumnValue& each : values) {
        const std::string& given = each.column;
        if (!IsSettable(table, given)) RefuseWith(Message("{1} is not set by hand", given));
        const auto name = std::ranges::find_if(settable, [&](const auto& column) { return IsSameName(column, given); });
        if (name == settable.end()) RefuseColumn(table, given, settable);
        if (std::ranges::any_of(read, [&](const auto& other) { return other.column == *name; })) {
            RefuseWith(Message("{1} is given twice", *name));
        }
        const std::string text = Text(each.value);
        const auto& field = fields->FieldAt(fields->FieldIndex(*name));
        auto typed = ReadReference(book, table, *name, text);
        if (!typed) typed = ReadTyped(field, text);
        if (table.kind == MasterKind::Product && field.type == VarType::Double && CDbl(*typed) < 0) {
            RefuseValue(*name, text, Message("is negative"));
        }
        read.push_back({*name, *typed});
    }
    return read;
}

}  // namespace kpTables::bookkeeping
