#include "kpbook/input/TableImport.h"

#include <algorithm>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Terminal.h"
#include "kpbook/Utf8.h"

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

TableImport::TableImport(Book& book, const TableInfo& table, RowReader& rows, const std::string& file,
                         const bookkeeping::RowEntryOptions& options)
    : book_(book), table_(table), rows_(rows), file_(file), options_(options), faults_(file) {
    options_.refused = [this](std::int64_t row, const DatabaseError& error) {
        AddRefusal(lines_[static_cast<std::size_t>(row)], error);
    };
}

ImportCounts TableImport::Run() {
    ReadHeader();
    Transaction transaction(book_);
    Begin();
    while (rows_.Next()) ImportRow();
    entry_->Finish();
    faults_.Finish();
    if (faults_.Count() > 0) {
        const auto bad = faults_.BadRows();
        throw CommandError(CountedMessage(bad, "{2}: {1} bad row, nothing was imported",
                                          "{2}: {1} bad rows, nothing was imported", file_));
    }
    transaction.Commit();
    return counts_;
}

void TableImport::ReadHeader() {
    if (!rows_.Next()) throw CommandError(Message("{1}: no header line with the names of the columns", file_));
    RefuseNul();
    if (!rows_.Problem().empty()) throw CommandError(Message("{1}: line 1: {2}", file_, rows_.Problem()));
    std::vector<std::string> unknown;
    std::vector<std::string> repeated;
    for (std::size_t i = 0; i < rows_.FieldCount(); ++i) {
        const auto name = Trim(rows_.Field(i));
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

/// Inside the transaction: no month is closed while rows are entered.
void TableImport::Begin() {
    std::vector<std::string> names;
    for (const auto* column : columns_) names.push_back(column->name);
    try {
        entry_.emplace(book_, table_, names, options_);
    } catch (const DatabaseError&) {
        throw;
    } catch (const Error& error) {
        throw CommandError(Message("{1}: line 1: {2}", file_, error.Description()));
    }
}

void TableImport::RefuseNul() const {
    for (std::size_t i = 0; i < rows_.FieldCount(); ++i) {
        if (rows_.Field(i).find('\0') == std::string_view::npos) continue;
        throw CommandError(Message(
            "{1}: line 1: NUL characters; if the file is UTF-16 without a byte order mark, --encoding UTF-16LE reads it",
            file_));
    }
}

void TableImport::CheckHeader(const std::vector<std::string>& unknown, const std::vector<std::string>& repeated) const {
    std::vector<std::string> missing;
    for (const auto& column : table_.columns) {
        const bool given = std::ranges::any_of(columns_, [&](const auto& c) { return c == &column; });
        if (column.required && !column.counter && !given) missing.push_back(column.name);
    }
    std::string problems;
    if (!unknown.empty()) problems += Message("; no such column in {1}: {2}", table_.name, Joined(unknown));
    if (!repeated.empty()) problems += Message("; given more than once: {1}", Joined(repeated));
    if (!missing.empty()) problems += Message("; missing: {1}", Joined(missing));
    if (!problems.empty()) throw CommandError(Message("{1}: line 1: wrong header{2}", file_, problems));
}

void TableImport::ImportRow() {
    if (!rows_.Problem().empty()) {
        faults_.Add(rows_.Line(), "", rows_.Problem());
    } else if (rows_.FieldCount() != columns_.size()) {
        faults_.Add(rows_.Line(), "",
                    rows_.FieldCount() < columns_.size()
                        ? Message("too few fields: {1} instead of {2}", rows_.FieldCount(), columns_.size())
                        : Message("too many fields: {1} instead of {2}", rows_.FieldCount(), columns_.size()));
    } else if (ReadFields()) {
        EnterRow();
    }
}

bool TableImport::ReadFields() {
    bool good = true;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const auto& column = *columns_[i];
        const auto text = rows_.Field(i);
        const bool isNull = text == kNullField && !rows_.IsQuoted(i);
        const bool isEmpty = isNull || (text.empty() && column.type != VarType::String);
        FieldValue read = isEmpty ? ReadEmpty(column, isNull) : ReadField(text, column.type, rows_.Encoding());
        values_[i] = std::move(read.value);
        if (read.problem.empty()) continue;
        faults_.Add(rows_.Line(), column.name, read.problem);
        good = false;
    }
    return good;
}

FieldValue TableImport::ReadEmpty(const TableInfo::Column& column, bool isNull) {
    const bool filled = column.counter || (!isNull && !column.defaultValue.IsNull());
    if (filled) return {Variant::Missing(), {}};
    if (!column.required) return {Variant::Null(), {}};
    return {Variant::Null(),
            isNull ? Message("Null, but the column needs a value") : Message("empty, but the column needs a value")};
}

void TableImport::EnterRow() {
    try {
        lines_.push_back(rows_.Line());
        const auto result = entry_->Enter(values_);
        if (result.outcome == bookkeeping::RowEntryResult::Outcome::Refused) {
            lines_.pop_back();
            return faults_.Add(rows_.Line(), "", result.refusal);
        }
        Count(result.outcome);
    } catch (const DatabaseError& error) {
        AddRefusal(rows_.Line(), error);
    }
}

void TableImport::AddRefusal(std::int64_t line, const DatabaseError& error) {
    if (!IsRowsFault(error)) throw error;
    faults_.Add(line, "", error.Description());
}

void TableImport::Count(bookkeeping::RowEntryResult::Outcome outcome) {
    using Outcome = bookkeeping::RowEntryResult::Outcome;
    ++(outcome == Outcome::Added ? counts_.added : outcome == Outcome::Changed ? counts_.changed : counts_.unchanged);
    if ((counts_.added + counts_.changed + counts_.unchanged) % kStep == 0) ShowProgress();
}

void TableImport::ShowProgress() const {
    if (!ErrorIsTerminal()) return;
    const std::int64_t rows = counts_.added + counts_.changed + counts_.unchanged;
    TellText("\r" + CountedMessage(rows, "{2}: {1} rows", "{2}: {1} rows", table_.name) + "\r");
}

}  // namespace kpTables::kpbook::input
