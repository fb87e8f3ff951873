#include "engines/common/EditableRecordset.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"
#include "recordset/RowStore.h"

namespace kpTables::engines {

struct EditableRecordset::State {
    explicit State(std::unique_ptr<EditableRows> theTable)
        : table(std::move(theTable)),
          columns(table->Columns()),
          rows(std::make_unique<MemoryRecordset>(std::make_unique<recordset::RowStore>(table->Fields()), true)),
          set(static_cast<std::size_t>(columns)) {}

    void CheckColumn(int index) const {
        if (index < 0 || index >= columns) Raise(ErrorNumber::ItemNotFound, std::to_string(index));
    }
    void Fetch();
    /// Fetches unless the current row was added before the fetch.
    void NeedCurrentRow() {
        if (!fetched && rows->Eof()) Fetch();
    }
    /// Before the fetch: the number of rows not added here.
    std::int32_t CountOthers();
    void CollectValues();
    void Write();

    std::unique_ptr<EditableRows> table;
    int columns;                            ///< without the engine's own, which follow them in rows
    std::unique_ptr<MemoryRecordset> rows;  ///< before the fetch, the rows that were added
    bool fetched = false;
    std::optional<std::int32_t> counted;  ///< the result of CountOthers
    bool adding = false;
    ColumnSet set;                       ///< fields set since the edit began
    std::vector<const Variant*> values;  ///< their values, while they are written
};

void EditableRecordset::State::Fetch() {
    const bool hasAdded = rows->RecordCount() > 0;
    rows = table->Read(*rows);
    fetched = true;
    set = ColumnSet(static_cast<std::size_t>(table->Columns()));
    columns = table->Columns();
    if (!hasAdded) return;
    // The row added last is the current one.
    for (std::int32_t step = rows->RecordCount(); step > 1; --step) rows->MoveNext();
}

std::int32_t EditableRecordset::State::CountOthers() {
    if (!counted) counted = static_cast<std::int32_t>(table->CountOthers());
    return *counted;
}

void EditableRecordset::State::CollectValues() {
    values.clear();
    for (int column = 0; column < columns; ++column) {
        if (set.Has(column)) values.push_back(rows->PendingValue(column));
    }
}

void EditableRecordset::State::Write() {
    CollectValues();
    try {
        table->GetTransaction().BeginForRows();
        if (adding) {
            table->Insert(set, values, *rows);
            adding = false;
        } else {
            table->Change(set, values, *rows);
        }
    } catch (const DatabaseError& error) {
        if (!table->GetTransaction().TakeLossOfRows()) throw;
        throw DatabaseError(
            error.Number(),
            Message("{1}; rows that were written before it since the last save are lost too", error.Description()),
            error.Statement());
    }
    set.Clear();
    rows->Update();
}

EditableRecordset::EditableRecordset(std::unique_ptr<EditableRows> table)
    : state_(std::make_unique<State>(std::move(table))) {}

EditableRecordset::~EditableRecordset() {
    if (state_) state_->table->GetTransaction().CloseRowsQuietly();
}

EditableRecordset::State& EditableRecordset::Opened() const {
    if (!state_) Raise(ErrorNumber::ObjectClosed);
    return *state_;
}

EditableRecordset::State& EditableRecordset::Fetched() {
    Update();
    State& s = Opened();
    if (!s.fetched) s.Fetch();
    return s;
}

int EditableRecordset::FieldCount() const { return Opened().columns; }

const FieldInfo& EditableRecordset::FieldAt(int index) const {
    const State& s = Opened();
    s.CheckColumn(index);
    return s.rows->FieldAt(index);
}

int EditableRecordset::FieldIndex(std::string_view name) const {
    const State& s = Opened();
    // Names mostly come as the table spells them, and a month-end closing looks up millions.
    const auto& fields = *s.table->Fields();
    for (int i = 0; i < s.columns; ++i) {
        if (fields[static_cast<std::size_t>(i)].name == name) return i;
    }
    const int index = s.rows->FieldIndex(name);
    if (index == s.columns) Raise(ErrorNumber::ItemNotFound, std::string(name));
    return index;
}

Variant EditableRecordset::GetValue(int index) const {
    State& s = Opened();
    s.CheckColumn(index);
    s.NeedCurrentRow();
    return s.rows->GetValue(index);
}

void EditableRecordset::SetValue(int index, const Variant& value) {
    State& s = Opened();
    s.CheckColumn(index);
    s.NeedCurrentRow();
    if (!s.adding && s.set.Empty()) s.table->BeginChange(*s.rows);
    s.rows->SetValue(index, value);
    s.set.Add(index);
}

std::int32_t EditableRecordset::RecordCount() const {
    State& s = Opened();
    // A caller that counts a Select's rows will read them; one that adds rows may need no others.
    if (!s.fetched && s.rows->Eof() && !s.table->IsWholeTable()) s.Fetch();
    return (s.fetched ? 0 : s.CountOthers()) + s.rows->RecordCount();
}

std::int32_t EditableRecordset::AbsolutePosition() const {
    State& s = Opened();
    s.NeedCurrentRow();
    const std::int32_t position = s.rows->AbsolutePosition();
    if (s.fetched || position < 0) return position;
    return s.CountOthers() + position;
}

bool EditableRecordset::Eof() const {
    State& s = Opened();
    s.NeedCurrentRow();
    return s.rows->Eof();
}

void EditableRecordset::MoveFirst() { Fetched().rows->MoveFirst(); }
void EditableRecordset::MoveNext() { Fetched().rows->MoveNext(); }

void EditableRecordset::Find(std::string_view criteria, std::int32_t skip, int direction) {
    Fetched().rows->Find(criteria, skip, direction);
}

void EditableRecordset::Sort(std::string_view order) { Fetched().rows->Sort(order); }

void EditableRecordset::AddNew() {
    Update();
    State& s = Opened();
    s.rows->AddNew();
    s.adding = true;
    for (int column = 0; column < s.columns; ++column) {
        const Variant& value = s.table->DefaultOf(column);
        if (!value.IsNull()) s.rows->SetValue(column, value);
    }
}

void EditableRecordset::Update() {
    State& s = Opened();
    if (s.adding || !s.set.Empty()) s.Write();
}

void EditableRecordset::Close() {
    Opened();
    // The writer may have rows to send.
    const auto closed = std::move(state_);
    closed->table->GetTransaction().CloseRows();
}

}  // namespace kpTables::engines
