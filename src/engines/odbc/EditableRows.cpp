#include "engines/odbc/EditableRows.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "engines/common/BookTexts.h"
#include "engines/common/ColumnSet.h"
#include "engines/odbc/RowReader.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"
#include "recordset/RowStore.h"

namespace kpTables::engines::odbc {

namespace {

/// In place of what tells a row that has been met.
constexpr const char* kMet = "\2";

/// The writer's columns, followed by a flag that is True for a row that was written here.
std::vector<FieldInfo> FieldsWithFlag(const TableWriter& writer) {
    std::vector<FieldInfo> fields;
    for (const ServerColumn& column : writer.Columns())
        fields.push_back({column.description.name, FieldTypeOf(column.description)});
    fields.push_back({"", VarType::Boolean});
    return fields;
}

}  // namespace

struct EditableRows::State {
    State(OpenConnection& theConnection, EditableQuery theSource)
        : connection(theConnection),
          source(std::move(theSource)),
          fields(FieldsWithFlag(*source.writer)),
          columns(static_cast<int>(fields.size()) - 1),
          rows(std::make_unique<MemoryRecordset>(std::make_unique<recordset::RowStore>(fields), true,
                                                 &engines::kBookTexts)),
          set(fields.size()) {}

    TableWriter& Writer() const noexcept { return *source.writer; }
    void CheckColumn(int index) const {
        if (index < 0 || index >= columns) Raise(ErrorNumber::ItemNotFound, std::to_string(index));
    }
    void NeedCurrentRow() {
        if (!fetched && rows->Eof()) Fetch();
    }
    void Fetch();
    std::unique_ptr<recordset::RowStore> WithAddedLast(const recordset::RowStore& all);
    std::unique_ptr<recordset::RowStore> ReadAll();
    std::string IdentityOf(const std::function<Variant(int column)>& value) const;
    std::string IdentityOfCurrent() const {
        return IdentityOf([&](int column) { return rows->GetValue(column); });
    }
    /// Before the fetch: the number of rows that were not added here.
    std::int32_t CountOthers();
    void CollectValues();
    void WriteNew();
    void WriteChanges();
    void Write();

    OpenConnection& connection;
    EditableQuery source;
    std::vector<FieldInfo> fields;
    int columns;                            ///< without the flag, which follows them
    std::unique_ptr<MemoryRecordset> rows;  ///< before the fetch, the rows that were added
    bool fetched = false;
    std::vector<std::string> added;       ///< what tells those rows
    std::optional<std::int32_t> counted;  ///< the result of CountOthers
    bool adding = false;
    ColumnSet set;                       ///< fields set since the edit began
    RowValues before;                    ///< the row as it was then
    std::vector<const Variant*> values;  ///< the fields' values, while they are written
};

std::string EditableRows::State::IdentityOf(const std::function<Variant(int column)>& value) const {
    std::string identity;
    for (const int column : Writer().Identity()) {
        const Variant cell = value(column);
        identity += cell.IsNull() ? std::string("\1") : Text(cell);
        identity += '\0';
    }
    return identity;
}

std::unique_ptr<recordset::RowStore> EditableRows::State::ReadAll() {
    if (!std::exchange(source.hasRun, false)) source.query->Execute({}, source.text);
    auto all = ReadRows(*source.query, connection.session, fields, connection.limits, source.text);
    source.query->CloseCursor();
    return all;
}

/// The rows, those that were added here last. The server's own values count: it may have rounded them.
std::unique_ptr<recordset::RowStore> EditableRows::State::WithAddedLast(const recordset::RowStore& all) {
    auto ordered = std::make_unique<recordset::RowStore>(fields);
    const auto append = [&](std::size_t row, bool own) {
        ordered->BeginRow();
        for (int column = 0; column < columns; ++column) ordered->PutValue(column, all.GetValue(row, column));
        if (own) ordered->PutBoolean(columns, true);
    };
    std::vector<std::pair<std::size_t, std::size_t>> own;  // when it was added, and the row
    for (std::size_t row = 0; row < all.Rows(); ++row) {
        const auto found = std::ranges::find(added, IdentityOf([&](int column) { return all.GetValue(row, column); }));
        if (found == added.end()) {
            append(row, false);
            continue;
        }
        own.emplace_back(static_cast<std::size_t>(found - added.begin()), row);
        *found = kMet;
    }
    std::ranges::sort(own);
    for (const auto& [number, row] : own) append(row, true);
    return ordered;
}

void EditableRows::State::Fetch() {
    auto all = ReadAll();
    if (!added.empty()) all = WithAddedLast(*all);
    rows = std::make_unique<MemoryRecordset>(std::move(all), true, &engines::kBookTexts);
    fetched = true;
    if (std::exchange(added, {}).empty()) return;
    // The row added last is the current one.
    for (std::int32_t step = rows->RecordCount(); step > 1; --step) rows->MoveNext();
}

std::int32_t EditableRows::State::CountOthers() {
    if (counted) return *counted;
    std::int64_t others = 0;
    if (source.wholeTable) {
        others = Writer().CountRows() - static_cast<std::int64_t>(added.size());
    } else {
        const auto all = ReadAll();
        others = static_cast<std::int64_t>(all->Rows());
        for (std::size_t row = 0; row < all->Rows(); ++row) {
            const std::string identity = IdentityOf([&](int column) { return all->GetValue(row, column); });
            if (std::ranges::find(added, identity) != added.end()) --others;
        }
    }
    counted = static_cast<std::int32_t>(others);
    return *counted;
}

void EditableRows::State::CollectValues() {
    values.clear();
    for (int column = 0; column < columns; ++column) {
        if (set.Has(column)) values.push_back(rows->PendingValue(column));
    }
}

void EditableRows::State::WriteNew() {
    CollectValues();
    connection.transaction.BeginForRows();
    const auto counter = Writer().Insert(set, values);
    rows->SetValue(columns, true);
    if (const auto column = Writer().CounterColumn(); column && counter) rows->SetValue(*column, *counter);
    if (!fetched) added.push_back(IdentityOfCurrent());
    adding = false;
}

void EditableRows::State::WriteChanges() {
    CollectValues();
    const Variant own = rows->GetValue(columns);
    connection.transaction.BeginForRows();
    Writer().Change(set, values, before, own.Is(true));
    rows->SetValue(columns, true);
    if (!fetched) added.back() = IdentityOfCurrent();
}

void EditableRows::State::Write() {
    try {
        if (adding) {
            WriteNew();
        } else {
            WriteChanges();
        }
    } catch (const DatabaseError& error) {
        if (!connection.transaction.TakeLossOfRows()) throw;
        throw DatabaseError(
            error.Number(),
            Message("{1}; rows that were written before it since the last save are lost too", error.Description()),
            error.Statement());
    }
    set.Clear();
    rows->Update();
}

EditableRows::EditableRows(OpenConnectionPtr connection, EditableQuery source)
    : connection_(std::move(connection)), state_(std::make_unique<State>(*connection_, std::move(source))) {}

EditableRows::~EditableRows() {
    if (state_) connection_->transaction.CloseRowsQuietly();
}

EditableRows::State& EditableRows::Opened() const {
    if (!state_) Raise(ErrorNumber::ObjectClosed);
    return *state_;
}

EditableRows::State& EditableRows::Fetched() {
    Update();
    State& s = Opened();
    if (!s.fetched) s.Fetch();
    return s;
}

int EditableRows::FieldCount() const { return Opened().columns; }

const FieldInfo& EditableRows::FieldAt(int index) const {
    const State& s = Opened();
    s.CheckColumn(index);
    return s.rows->FieldAt(index);
}

int EditableRows::FieldIndex(std::string_view name) const {
    const State& s = Opened();
    const int index = s.rows->FieldIndex(name);
    if (index == s.columns) Raise(ErrorNumber::ItemNotFound, std::string(name));
    return index;
}

Variant EditableRows::GetValue(int index) const {
    State& s = Opened();
    s.CheckColumn(index);
    s.NeedCurrentRow();
    return s.rows->GetValue(index);
}

void EditableRows::SetValue(int index, const Variant& value) {
    State& s = Opened();
    s.CheckColumn(index);
    s.NeedCurrentRow();
    if (!s.adding && s.set.Empty() && !s.rows->Eof()) {
        s.before.clear();
        for (int column = 0; column < s.columns; ++column) s.before.push_back(s.rows->GetValue(column));
    }
    s.rows->SetValue(index, value);
    s.set.Add(index);
}

std::int32_t EditableRows::RecordCount() const {
    State& s = Opened();
    // A caller that counts a Select's rows will read them; one that adds rows may need no others.
    if (!s.fetched && s.rows->Eof() && !s.source.wholeTable) s.Fetch();
    return (s.fetched ? 0 : s.CountOthers()) + s.rows->RecordCount();
}

std::int32_t EditableRows::AbsolutePosition() const {
    State& s = Opened();
    s.NeedCurrentRow();
    const std::int32_t position = s.rows->AbsolutePosition();
    if (s.fetched || position < 0) return position;
    return s.CountOthers() + position;
}

bool EditableRows::Eof() const {
    State& s = Opened();
    s.NeedCurrentRow();
    return s.rows->Eof();
}

void EditableRows::MoveFirst() { Fetched().rows->MoveFirst(); }
void EditableRows::MoveNext() { Fetched().rows->MoveNext(); }

void EditableRows::Find(std::string_view criteria, std::int32_t skip, int direction) {
    Fetched().rows->Find(criteria, skip, direction);
}

void EditableRows::Sort(std::string_view order) { Fetched().rows->Sort(order); }

void EditableRows::AddNew() {
    Update();
    State& s = Opened();
    s.rows->AddNew();
    s.adding = true;
    for (int column = 0; column < s.columns; ++column) {
        const Variant& value = s.Writer().Columns()[static_cast<std::size_t>(column)].defaultValue;
        if (!value.IsNull()) s.rows->SetValue(column, value);
    }
}

void EditableRows::Update() {
    State& s = Opened();
    if (s.adding || !s.set.Empty()) s.Write();
}

void EditableRows::Close() {
    Opened();
    state_.reset();
    connection_->transaction.CloseRows();
}

}  // namespace kpTables::engines::odbc
