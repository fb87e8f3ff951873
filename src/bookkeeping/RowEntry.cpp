#include "kpTables/bookkeeping/RowEntry.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "bookkeeping/Names.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// A value as a literal of a statement.
std::string Literal(const Variant& value) {
    switch (value.Type()) {
        case VarType::String:
            return "'" + Quoted(*value.If<std::string>()) + "'";
        case VarType::Date:
            return "#" + value.If<Date>()->ToIso(' ') + "#";
        case VarType::Currency:
            return value.If<Currency>()->ToText();
        case VarType::Boolean:
            return *value.If<bool>() ? "True" : "False";
        case VarType::Double: {
            std::array<char, 64> text{};
            return {text.data(), std::to_chars(text.data(), text.data() + text.size(), *value.If<double>()).ptr};
        }
        default:
            return std::to_string(CLng(value));
    }
}

bool IsEmptyText(const Variant& value) {
    const auto* text = value.If<std::string>();
    return value.IsNull() || (text && text->empty());
}

/// A value as it is stored: the column's default where the engine is to fill it.
const Variant& Stored(const Variant& value, const TableInfo::Column& column) {
    return value.IsMissing() ? column.defaultValue : value;
}

/// Values of one column: of one type, or Null.
bool IsSameValue(const Variant& a, const Variant& b, VarType type) {
    if (type == VarType::String && IsEmptyText(a) && IsEmptyText(b)) return true;
    if (a.IsNull() || b.IsNull()) return a.IsNull() && b.IsNull();
    switch (type) {
        case VarType::String:
            return Text(a) == Text(b);
        case VarType::Currency:
            return CCur(a) == CCur(b);
        case VarType::Date:
            return CDate(a) == CDate(b);
        case VarType::Boolean:
            return CBool(a) == CBool(b);
        default:
            return CDbl(a) == CDbl(b);
    }
}

std::vector<std::string> NamesOf(const std::vector<TableInfo::Column>& columns) {
    std::vector<std::string> names;
    for (const auto& column : columns) names.push_back(column.name);
    return names;
}

}  // namespace

RowEntry::RowEntry(Book& book, const TableInfo& table, const std::vector<std::string>& columns,
                   const RowEntryOptions& options)
    : book_(book), table_(table), update_(options.update) {
    for (const std::string& name : columns) {
        const auto found =
            std::ranges::find_if(table_.columns, [&](const auto& c) { return IsSameName(c.name, name); });
        if (found == table_.columns.end()) {
            Raise(ErrorNumber::InvalidCall, Message("{1} has no column {2}", table_.name, name));
        }
        columns_.push_back(&*found);
    }
    if (update_) FindKey(options.key);
    appender_ = book_.AppendTo(table_.name, columns);
    // A row that is changed is read first.
    if (options.refused && !update_) appender_->Gather(options.refused);
    if (options.closedMonths) return;
    guard_.emplace(book_, table_.name, columns);
    if (update_) whole_.emplace(book_, table_.name, NamesOf(table_.columns));
}

void RowEntry::FindKey(const std::vector<std::string>& key) {
    auto names = key;
    if (names.empty()) {
        for (const auto& column : table_.columns)
            if (column.key) names.push_back(column.name);
    }
    if (names.empty()) {
        Raise(ErrorNumber::InvalidCall,
              Message("{1} has no primary key; name the columns that tell its rows apart", table_.name));
    }
    for (const std::string& name : names) {
        const auto found = std::ranges::find_if(columns_, [&](const auto* c) { return IsSameName(c->name, name); });
        if (found == columns_.end()) {
            Raise(ErrorNumber::InvalidCall, Message("the key's column {1} of {2} is not given", name, table_.name));
        }
        key_.push_back(static_cast<std::size_t>(found - columns_.begin()));
    }
}

RowEntryResult RowEntry::Enter(const std::vector<Variant>& values) { return update_ ? Change(values) : Add(values); }

RowEntryResult RowEntry::Add(const std::vector<Variant>& values) {
    if (guard_) {
        if (auto refusal = guard_->Refusal(values); !refusal.empty()) {
            return {RowEntryResult::Outcome::Refused, std::move(refusal)};
        }
    }
    appender_->Append(values);
    return {RowEntryResult::Outcome::Added, {}};
}

std::string RowEntry::Condition(const std::vector<Variant>& values) const {
    std::string condition;
    for (const std::size_t at : key_) {
        condition += (condition.empty() ? "" : " And ") + Bracketed(columns_[at]->name) + "=" +
                     Literal(Stored(values[at], *columns_[at]));
    }
    return condition;
}

RowEntryResult RowEntry::Change(const std::vector<Variant>& values) {
    using Outcome = RowEntryResult::Outcome;
    for (const std::size_t at : key_) {
        const TableInfo::Column& column = *columns_[at];
        if (column.counter && values[at].IsMissing()) return Add(values);
        if (IsEmptyText(Stored(values[at], column)))
            return {Outcome::Refused, Message("the key {1} is empty", column.name)};
    }
    const auto condition = Condition(values);
    if (!entered_.insert(condition).second) return {Outcome::Refused, Message("the key stands above already")};
    const auto row = book_.Open("Select * From " + Bracketed(table_.name) + " Where " + condition, SourceKind::Text);
    if (row->Eof()) return Add(values);
    if (const auto count = row->RecordCount(); count > 1) {
        return {Outcome::Refused, Message("{1} rows of {2} have this key", count, table_.name)};
    }
    const auto differences = Differences(*row, values);
    if (differences.empty()) return {Outcome::Unchanged, {}};
    if (auto refusal = RefusalOfChange(*row, values); !refusal.empty()) return {Outcome::Refused, std::move(refusal)};
    for (const std::size_t at : differences) {
        row->SetValue(row->FieldIndex(columns_[at]->name), Stored(values[at], *columns_[at]));
    }
    row->Update();
    row->Close();
    return {Outcome::Changed, {}};
}

std::vector<std::size_t> RowEntry::Differences(const Recordset& row, const std::vector<Variant>& values) const {
    std::vector<std::size_t> differences;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const auto& column = *columns_[i];
        if (values[i].IsMissing() && column.counter) continue;
        const Variant current = row.GetValue(row.FieldIndex(column.name));
        if (!IsSameValue(current, Stored(values[i], column), column.type)) differences.push_back(i);
    }
    return differences;
}

std::string RowEntry::RefusalOfChange(const Recordset& row, const std::vector<Variant>& values) const {
    if (!whole_) return "";
    std::vector<Variant> whole;
    for (const auto& column : table_.columns) whole.push_back(row.GetValue(row.FieldIndex(column.name)));
    if (auto refusal = whole_->Refusal(whole); !refusal.empty()) return refusal;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!values[i].IsMissing()) whole[static_cast<std::size_t>(columns_[i] - table_.columns.data())] = values[i];
    }
    return whole_->Refusal(whole);
}

std::string FirstTableWithRows(Book& book) {
    for (const TableInfo& table : book.Tables()) {
        if (HasRows(book, "Select TOP 1 * From " + Bracketed(table.name))) return table.name;
    }
    return "";
}

}  // namespace kpTables::bookkeeping
