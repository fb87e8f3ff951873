#include "kpTables/MemoryRecordset.h"

#include <algorithm>
#include <optional>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "recordset/Criteria.h"
#include "recordset/FindIndex.h"
#include "recordset/RowOrder.h"
#include "recordset/RowStore.h"
#include "text/Ascii.h"
#include "text/FoldedText.h"

namespace kpTables {

using recordset::Criteria;
using recordset::FindIndex;
using recordset::RowStore;

namespace {

constexpr std::int32_t kPositionEof = -3;
constexpr TextOrder kFoldedTexts = {
    [](std::string_view left, std::string_view right) noexcept {
        const auto order = text::CompareFolded(left, right);
        return order < 0 ? -1 : order > 0 ? 1 : 0;
    },
    [](std::string_view text) noexcept { return std::optional(text::HashFolded(text)); },
    text::AppendFolded,
};
// An index costs about as much as this many searches that read every row.
constexpr std::size_t kScansBeforeIndex = 4;

Variant ConvertTo(VarType type, const Variant& value) {
    if (value.IsNull() || value.Type() == type) return value;
    switch (type) {
        case VarType::Boolean:
            return CBool(value);
        case VarType::Integer:
            return CInt(value);
        case VarType::Long:
            return CLng(value);
        case VarType::Double:
            return CDbl(value);
        case VarType::Currency:
            return CCur(value);
        case VarType::Date:
            return CDate(value);
        case VarType::String:
            return CStr(value);
        default:
            // An untyped field takes whatever has a text form.
            CStr(value);
            return value;
    }
}

}  // namespace

struct MemoryRecordset::State {
    State(std::unique_ptr<RowStore> store, bool canEdit, const TextOrder& order)
        : rows(std::move(store)), editable(canEdit), texts(order), finders(rows->Fields().size()) {}

    std::size_t Count() const { return rows->Rows() + (adding ? 1 : 0); }
    std::size_t RowAt(std::size_t at) const { return order.empty() ? at : order[at]; }
    void CheckColumn(int index) const {
        if (index < 0 || index >= rows->Columns()) Raise(ErrorNumber::ItemNotFound, std::to_string(index));
    }
    void CheckRow() const {
        if (position >= Count()) Raise(ErrorNumber::NoCurrentRecord);
    }
    void CheckEditable() const {
        if (!editable) Raise(ErrorNumber::NotUpdatable);
    }

    void BeginEdit() {
        editing = true;
        pending.assign(rows->Fields().size(), std::nullopt);
    }
    /// Writes the pending row, as moving off it does.
    void Settle();
    void PutPending();
    std::optional<std::size_t> Scan(const Criteria& criteria, std::size_t from, bool forward) const;
    std::optional<std::size_t> FindEqual(const Criteria& criteria, std::size_t from);

    struct Finder {
        std::unique_ptr<FindIndex> index;
        std::size_t scanned = 0;  // rows read without an index, or beyond it
        bool keyless = false;     // a cell has no key, so that no index can be made
    };
    void MakeIndex(Finder& finder, const Criteria& criteria) const;

    std::unique_ptr<RowStore> rows;
    bool editable;
    const TextOrder& texts;
    std::size_t position = 0;
    std::vector<std::uint32_t> order;  // stored row at each position, empty when they are in the stored order
    bool adding = false;               // the current row is the one that AddNew began
    bool editing = false;              // pending holds what was set
    std::vector<std::optional<Variant>> pending;
    std::vector<Finder> finders;
};

void MemoryRecordset::State::Settle() {
    if (!editing) return;
    if (adding) {
        rows->BeginRow();
        try {
            PutPending();
            if (!order.empty()) order.push_back(static_cast<std::uint32_t>(rows->Rows() - 1));
        } catch (...) {
            // The row stays pending, and can be written when there is memory again.
            rows->DropLastRow();
            throw;
        }
    } else {
        rows->EditRow(RowAt(position));
        PutPending();
    }
    adding = editing = false;
}

void MemoryRecordset::State::PutPending() {
    for (int column = 0; column < rows->Columns(); ++column) {
        const auto at = static_cast<std::size_t>(column);
        if (!pending[at]) continue;
        rows->PutValue(column, *pending[at]);
        if (!adding) finders[at] = {};
    }
}

std::optional<std::size_t> MemoryRecordset::State::Scan(const Criteria& criteria, std::size_t from,
                                                        bool forward) const {
    const std::size_t end = rows->Rows();
    for (std::size_t at = from; at < end; forward ? ++at : --at) {  // 0 - 1 wraps past the end
        if (criteria.Matches(*rows, RowAt(at))) return at;
    }
    return std::nullopt;
}

void MemoryRecordset::State::MakeIndex(Finder& finder, const Criteria& criteria) const {
    finder.index = std::make_unique<FindIndex>(rows->Rows(), [&](std::size_t at) {
        const auto key = criteria.KeyOf(*rows, RowAt(at));
        finder.keyless = finder.keyless || !key;
        return key.value_or(0);
    });
    if (finder.keyless) finder.index.reset();
    finder.scanned = 0;
}

std::optional<std::size_t> MemoryRecordset::State::FindEqual(const Criteria& criteria, std::size_t from) {
    Finder& finder = finders[static_cast<std::size_t>(criteria.Column())];
    const auto key = criteria.Key();
    if (finder.keyless || !key) return Scan(criteria, from, true);
    if (finder.scanned > kScansBeforeIndex * rows->Rows()) MakeIndex(finder, criteria);
    if (finder.index && from < finder.index->Covered()) {
        const auto found =
            finder.index->FirstFrom(from, *key, [&](std::size_t at) { return criteria.Matches(*rows, RowAt(at)); });
        if (found) return found;
        from = finder.index->Covered();
    }
    const auto found = Scan(criteria, from, true);
    finder.scanned += found.value_or(rows->Rows()) - std::min(from, rows->Rows());
    return found;
}

MemoryRecordset::MemoryRecordset(std::vector<FieldInfo> fields)
    : state_(std::make_unique<State>(std::make_unique<RowStore>(std::move(fields)), true, kFoldedTexts)) {}

MemoryRecordset::MemoryRecordset(std::unique_ptr<RowStore> rows, bool editable, const TextOrder* texts)
    : state_(std::make_unique<State>(std::move(rows), editable, texts ? *texts : kFoldedTexts)) {}

MemoryRecordset::~MemoryRecordset() = default;

MemoryRecordset::State& MemoryRecordset::Opened() const {
    if (!state_) Raise(ErrorNumber::ObjectClosed);
    return *state_;
}

int MemoryRecordset::FieldCount() const { return Opened().rows->Columns(); }

const FieldInfo& MemoryRecordset::FieldAt(int index) const {
    const State& s = Opened();
    s.CheckColumn(index);
    return s.rows->Fields()[static_cast<std::size_t>(index)];
}

int MemoryRecordset::FieldIndex(std::string_view name) const {
    const auto& fields = Opened().rows->Fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (text::EqualsIgnoringCase(fields[i].name, name)) return static_cast<int>(i);
    }
    const std::size_t point = name.find('.');
    for (std::size_t i = 0; i < fields.size() && point != name.npos; ++i) {
        if (fields[i].qualifier.empty()) continue;
        const bool same = text::EqualsIgnoringCase(fields[i].qualifier, name.substr(0, point)) &&
                          text::EqualsIgnoringCase(fields[i].name, name.substr(point + 1));
        if (same) return static_cast<int>(i);
    }
    Raise(ErrorNumber::ItemNotFound, std::string(name));
}

Variant MemoryRecordset::GetValue(int index) const {
    const State& s = Opened();
    s.CheckColumn(index);
    s.CheckRow();
    if (s.editing) {
        if (const auto& value = s.pending[static_cast<std::size_t>(index)]) return *value;
        if (s.adding) return Variant::Null();
    }
    return s.rows->GetValue(s.RowAt(s.position), index);
}

void MemoryRecordset::SetValue(int index, const Variant& value) {
    State& s = Opened();
    s.CheckEditable();
    s.CheckColumn(index);
    s.CheckRow();
    Variant converted = ConvertTo(s.rows->Fields()[static_cast<std::size_t>(index)].type, value);
    if (!s.editing) s.BeginEdit();
    s.pending[static_cast<std::size_t>(index)] = std::move(converted);
}

std::int32_t MemoryRecordset::RecordCount() const { return static_cast<std::int32_t>(Opened().Count()); }

std::int32_t MemoryRecordset::AbsolutePosition() const {
    const State& s = Opened();
    return s.position < s.Count() ? static_cast<std::int32_t>(s.position) + 1 : kPositionEof;
}

bool MemoryRecordset::Eof() const {
    const State& s = Opened();
    return s.position >= s.Count();
}

void MemoryRecordset::MoveFirst() {
    State& s = Opened();
    s.Settle();
    s.position = 0;
    s.CheckRow();
}

void MemoryRecordset::MoveNext() {
    State& s = Opened();
    s.CheckRow();
    s.Settle();
    ++s.position;
}

void MemoryRecordset::Find(std::string_view criteriaText, std::int32_t skip, int direction) {
    State& s = Opened();
    if (direction != 1 && direction != -1) Raise(ErrorNumber::InvalidArgument, "direction");
    const auto text = recordset::CriteriaText::Parse(criteriaText);
    const int column = FieldIndex(text.column);
    const Criteria criteria(column, FieldAt(column), text, s.texts);
    s.CheckRow();
    s.Settle();
    const std::int64_t from = static_cast<std::int64_t>(s.position) + std::int64_t{skip} * direction;
    const std::size_t count = s.rows->Rows();
    std::optional<std::size_t> found;
    if (from >= 0 && from < static_cast<std::int64_t>(count)) {
        const auto start = static_cast<std::size_t>(from);
        found = direction == 1 && criteria.IsEquality() ? s.FindEqual(criteria, start)
                                                        : s.Scan(criteria, start, direction == 1);
    }
    s.position = found.value_or(count);
}

void MemoryRecordset::Sort(std::string_view orderText) {
    State& s = Opened();
    std::vector<recordset::SortKey> keys;
    for (const auto& column : recordset::ParseSort(orderText))
        keys.push_back({FieldIndex(column.name), column.descending});
    s.Settle();
    s.order = keys.empty() ? std::vector<std::uint32_t>() : recordset::OrderRows(*s.rows, keys, s.texts);
    for (State::Finder& finder : s.finders) finder = {};
    s.position = 0;
}

void MemoryRecordset::AddNew() {
    State& s = Opened();
    s.CheckEditable();
    s.Settle();
    s.adding = true;
    s.BeginEdit();
    s.position = s.rows->Rows();
}

void MemoryRecordset::Update() {
    State& s = Opened();
    s.CheckEditable();
    s.Settle();
}

void MemoryRecordset::Close() {
    Opened();
    state_.reset();
}

const Variant* MemoryRecordset::PendingValue(int index) const {
    const State& s = Opened();
    s.CheckColumn(index);
    if (!s.editing) return nullptr;
    const auto& value = s.pending[static_cast<std::size_t>(index)];
    return value ? &*value : nullptr;
}

}  // namespace kpTables
