#include "engines/common/EditableRecordset.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engines/common/Failure.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"
#include "recordset/RowStore.h"

namespace kpTables::engines {

struct EditableRecordset::State {
    State(Executor& theExecutor, BoundQuery theQuery)
        : executor(theExecutor),
          query(std::move(theQuery)),
          columns(CountColumns()),
          rows(std::make_unique<MemoryRecordset>(std::make_unique<recordset::RowStore>(query.statement->fields), true)),
          set(static_cast<std::size_t>(columns)) {}

    int CountColumns() const noexcept {
        return static_cast<int>(query.statement->fields->size()) - query.statement->hidden;
    }
    RowWriter& Writer() const noexcept { return *query.statement->writer; }
    void CheckColumn(int index) const {
        if (index < 0 || index >= columns) Raise(ErrorNumber::ItemNotFound, std::to_string(index));
    }
    RowKey Key() const {
        const Variant version = HasVersions() ? rows->GetValue(columns + 1) : Variant();
        const auto* number = version.If<Currency>();
        return {rows->GetValue(columns).If<Currency>()->Scaled(), number ? number->Scaled() : 0, moment};
    }
    bool HasVersions() const noexcept { return query.statement->hidden > 1; }
    void KeepVersion() {
        if (HasVersions()) rows->SetValue(columns + 1, Currency::FromScaled(Writer().LastVersion()));
    }

    /// Reads the rows of the table and appends those added before the fetch.
    void Fetch();
    std::unique_ptr<recordset::RowStore> WithAddedBehind(const recordset::RowStore& all);
    /// Fetches unless the current row was added before the fetch.
    void NeedCurrentRow() {
        if (!fetched && rows->Eof()) Fetch();
    }
    /// Before the fetch: the number of rows not added here.
    std::int32_t CountOthers();
    void CollectValues();
    void WriteNew();
    void WriteChanges();
    void Write();

    Executor& executor;
    BoundQuery query;
    int columns;                            ///< without the row id and version, which follow them in rows
    std::unique_ptr<MemoryRecordset> rows;  ///< before the fetch, the rows that were added
    bool fetched = false;
    std::int64_t moment = -1;             ///< of the fetch
    std::vector<std::int64_t> added;      ///< row ids of those
    std::optional<std::int32_t> counted;  ///< the result of CountOthers
    bool adding = false;
    ColumnSet set;                       ///< fields set since the edit began
    std::vector<const Variant*> values;  ///< their values, while they are written
};

void EditableRecordset::State::Fetch() {
    Writer().BeforeRead();
    auto all = executor.ReadEditable(query);
    moment = Writer().Moment();
    if (CountColumns() != columns) {
        if (!added.empty()) RaiseColumnsChanged(query.text);
        columns = CountColumns();
        set = ColumnSet(static_cast<std::size_t>(columns));
    }
    if (!added.empty()) all = WithAddedBehind(*all);
    rows = std::make_unique<MemoryRecordset>(std::move(all), true, &executor.GetDriver().Texts());
    fetched = true;
    if (added.empty()) return;
    // The row added last is the current one.
    for (std::int32_t step = rows->RecordCount(); step > 1; --step) rows->MoveNext();
    added = {};
}

std::unique_ptr<recordset::RowStore> EditableRecordset::State::WithAddedBehind(const recordset::RowStore& all) {
    auto ordered = std::make_unique<recordset::RowStore>(all.Fields());
    std::sort(added.begin(), added.end());
    for (std::size_t row = 0; row < all.Rows(); ++row) {
        const std::int64_t id = all.GetValue(row, columns).If<Currency>()->Scaled();
        if (std::binary_search(added.begin(), added.end(), id)) continue;
        ordered->BeginRow();
        for (int column = 0; column < all.Columns(); ++column) ordered->PutValue(column, all.GetValue(row, column));
    }
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
        ordered->BeginRow();
        for (int column = 0; column < all.Columns(); ++column) ordered->PutValue(column, rows->GetValue(column));
    }
    return ordered;
}

std::int32_t EditableRecordset::State::CountOthers() {
    if (!counted) {
        const bool whole = Writer().Table().whole;
        const std::size_t others = whole ? static_cast<std::size_t>(Writer().CountRows()) - added.size()
                                         : executor.CountEditable(query, added);
        counted = static_cast<std::int32_t>(others);
    }
    return *counted;
}

void EditableRecordset::State::CollectValues() {
    values.clear();
    for (int column = 0; column < columns; ++column) {
        if (set.Has(column)) values.push_back(rows->PendingValue(column));
    }
}

void EditableRecordset::State::WriteNew() {
    CollectValues();
    // After the row is in the table, nothing may fail for want of memory: a second attempt would add it twice.
    if (added.size() == added.capacity()) added.reserve(2 * added.size() + 1);
    executor.GetTransaction().BeginForRows();
    const std::int64_t id = Writer().Insert(set, values);
    if (!fetched) added.push_back(id);
    rows->SetValue(columns, Currency::FromScaled(id));
    KeepVersion();
    if (const auto column = Writer().Table().rowIdColumn) rows->SetValue(*column, static_cast<double>(id));
    adding = false;
}

void EditableRecordset::State::WriteChanges() {
    CollectValues();
    executor.GetTransaction().BeginForRows();
    Writer().Change(Key(), set, values);
    KeepVersion();
    const auto key = Writer().Table().rowIdColumn;
    if (key && set.Has(*key)) {
        const Variant id = rows->GetValue(*key);
        if (const auto* whole = id.If<std::int32_t>()) rows->SetValue(columns, Currency::FromScaled(*whole));
    }
}

void EditableRecordset::State::Write() {
    try {
        if (adding) {
            WriteNew();
        } else {
            WriteChanges();
        }
    } catch (const DatabaseError& error) {
        if (!executor.GetTransaction().TakeLossOfRows()) throw;
        throw DatabaseError(
            error.Number(),
            Message("{1}; rows that were written before it since the last save are lost too", error.Description()),
            error.Statement());
    }
    set.Clear();
    rows->Update();
}

EditableRecordset::EditableRecordset(ExecutorPtr executor, BoundQuery query)
    : executor_(std::move(executor)), state_(std::make_unique<State>(*executor_, std::move(query))) {}

EditableRecordset::~EditableRecordset() {
    if (state_) executor_->GetTransaction().CloseRowsQuietly();
}

EditableRecordset::State& EditableRecordset::Opened() const {
    if (!state_) Raise(ErrorNumber::ObjectClosed);
    return *state_;
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
    const auto& fields = *s.query.statement->fields;
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
    s.rows->SetValue(index, value);
    s.set.Add(index);
}

std::int32_t EditableRecordset::RecordCount() const {
    State& s = Opened();
    // A caller that counts a Select's rows will read them; one that adds rows may need no others.
    if (!s.fetched && s.rows->Eof() && !s.Writer().Table().whole) s.Fetch();
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

void EditableRecordset::MoveFirst() {
    Update();
    State& s = Opened();
    if (!s.fetched) s.Fetch();
    s.rows->MoveFirst();
}

void EditableRecordset::MoveNext() {
    Update();
    State& s = Opened();
    if (!s.fetched) s.Fetch();
    s.rows->MoveNext();
}

void EditableRecordset::Find(std::string_view criteria, std::int32_t skip, int direction) {
    Update();
    State& s = Opened();
    if (!s.fetched) s.Fetch();
    s.rows->Find(criteria, skip, direction);
}

void EditableRecordset::Sort(std::string_view order) {
    Update();
    State& s = Opened();
    if (!s.fetched) s.Fetch();
    s.rows->Sort(order);
}

void EditableRecordset::AddNew() {
    Update();
    State& s = Opened();
    s.rows->AddNew();
    s.adding = true;
    for (int column = 0; column < s.columns; ++column) {
        const Variant& value = s.Writer().Table().columns[static_cast<std::size_t>(column)].defaultValue;
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
    executor_->GetTransaction().CloseRows();
}

}  // namespace kpTables::engines
