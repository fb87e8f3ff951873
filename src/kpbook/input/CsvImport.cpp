#include "kpbook/input/CsvImport.h"

#include <algorithm>
#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"
#include "kpbook/input/FieldReader.h"

namespace kpTables::kpbook::input {

namespace {

/// Progress is shown after this many rows.
constexpr std::int64_t kStep = 10'000;

/// Whether the error is about this row only, so that other rows can still be added.
bool IsRowsFault(const DatabaseError& error) noexcept {
    const auto number = static_cast<DatabaseErrorNumber>(error.Number());
    return number == DatabaseErrorNumber::ConstraintViolated || number == DatabaseErrorNumber::TypeMismatch ||
           number == DatabaseErrorNumber::Overflow;
}

std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "" : ", ") + Printable(name);
    return text;
}

}  // namespace

CsvImport::CsvImport(Book& book, const TableInfo& table, CsvReader& csv, const std::string& file)
    : book_(book), table_(table), csv_(csv), file_(file), faults_(file) {}

std::int64_t CsvImport::Run() {
    ReadHeader();
    Transaction transaction(book_);
    Begin();
    while (csv_.Next()) ImportRow();
    faults_.Finish();
    if (faults_.Count() > 0) {
        const auto bad = faults_.BadRows();
        throw CommandError(file_ + ": " + std::to_string(bad) + (bad == 1 ? " bad row" : " bad rows") +
                           ", nothing was imported");
    }
    transaction.Commit();
    return rows_;
}

void CsvImport::ReadHeader() {
    if (!csv_.Next()) throw CommandError(file_ + ": no header line with the names of the columns");
    if (!csv_.Problem().empty()) throw CommandError(file_ + ": line 1: " + csv_.Problem());
    std::vector<std::string> unknown;
    std::vector<std::string> repeated;
    for (std::size_t i = 0; i < csv_.FieldCount(); ++i) {
        const auto name = Trim(csv_.Field(i));
        const auto info = std::ranges::find_if(table_.columns, [&](const auto& c) { return SameName(c.name, name); });
        if (info == table_.columns.end()) {
            unknown.emplace_back(name);
        } else if (std::ranges::any_of(columns_, [&](const auto& c) { return c == &*info; })) {
            repeated.emplace_back(name);
        } else {
            columns_.push_back(&*info);
        }
    }
    CheckHeader(unknown, repeated);
    values_.resize(columns_.size());
}

/// Inside the transaction: no month is closed while rows are added.
void CsvImport::Begin() {
    std::vector<std::string> names;
    for (const auto* column : columns_) names.push_back(column->name);
    appender_ = book_.AppendTo(table_.name, names);
    guard_ = std::make_unique<bookkeeping::EntryGuard>(book_, table_.name, names);
}

void CsvImport::CheckHeader(const std::vector<std::string>& unknown, const std::vector<std::string>& repeated) const {
    std::vector<std::string> missing;
    for (const auto& column : table_.columns) {
        const bool given = std::ranges::any_of(columns_, [&](const auto& c) { return c == &column; });
        if (column.required && !column.counter && !given) missing.push_back(column.name);
    }
    std::string problems;
    if (!unknown.empty()) problems += "; no such column in " + table_.name + ": " + Joined(unknown);
    if (!repeated.empty()) problems += "; given more than once: " + Joined(repeated);
    if (!missing.empty()) problems += "; missing: " + Joined(missing);
    if (!problems.empty()) throw CommandError(file_ + ": line 1: wrong header" + problems);
}

void CsvImport::ImportRow() {
    if (!csv_.Problem().empty()) {
        faults_.Add(csv_.Line(), "", csv_.Problem());
    } else if (csv_.FieldCount() != columns_.size()) {
        faults_.Add(csv_.Line(), "",
                    (csv_.FieldCount() < columns_.size() ? "too few fields: " : "too many fields: ") +
                        std::to_string(csv_.FieldCount()) + " instead of " + std::to_string(columns_.size()));
    } else if (ReadFields()) {
        AddRow();
    }
}

bool CsvImport::ReadFields() {
    bool good = true;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const auto& column = *columns_[i];
        const auto text = csv_.Field(i);
        const bool isText = column.type == VarType::String;
        if (text.empty() && !isText) {
            const bool filled = column.counter || !column.defaultValue.IsNull();
            values_[i] = filled ? Variant::Missing() : Variant::Null();
            if (filled || !column.required) continue;
            faults_.Add(csv_.Line(), column.name, "empty, but the column needs a value");
            good = false;
            continue;
        }
        auto read = ReadField(text, column.type);
        if (!read.problem.empty()) {
            faults_.Add(csv_.Line(), column.name, read.problem);
            good = false;
        }
        values_[i] = std::move(read.value);
    }
    return good;
}

void CsvImport::AddRow() {
    if (const auto refusal = guard_->Refusal(values_); !refusal.empty()) return faults_.Add(csv_.Line(), "", refusal);
    try {
        appender_->Append(values_);
        if (++rows_ % kStep == 0) ShowProgress();
    } catch (const DatabaseError& error) {
        if (!IsRowsFault(error)) throw;
        faults_.Add(csv_.Line(), "", error.Description());
    }
}

void CsvImport::ShowProgress() const {
    if (!ErrorIsTerminal()) return;
    std::fprintf(stderr, "\r%s: %lld rows\r", table_.name.c_str(), static_cast<long long>(rows_));
}

}  // namespace kpTables::kpbook::input
