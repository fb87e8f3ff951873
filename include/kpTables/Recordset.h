// The result set of the component and its hosts: ADO's members by ADO's names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "kpTables/Convert.h"
#include "kpTables/Variant.h"

namespace kpTables {

/// Name and type of a column. The type is one of Boolean, Integer, Long, Double, Currency, Date, String,
/// or Empty where the engine does not know it (a bare Null, for example).
struct FieldInfo {
    std::string name;
    VarType type = VarType::Empty;
    /// Of a column of a joined table: the table's name or alias in the query.
    std::string qualifier = {};
};

/// Where a recordset stands when it is on no row, with ADO's numbers: what AbsolutePosition answers then.
enum Position : std::int32_t {
    PositionUnknown = -1,  ///< adPosUnknown
    PositionEof = -3,      ///< adPosEOF
};

/// The direction of Find, with ADO's numbers.
enum SearchDirection : int {
    SearchForward = 1,    ///< adSearchForward
    SearchBackward = -1,  ///< adSearchBackward
};

class Recordset;

/// One field of the current row.
class Field {
public:
    Field(Recordset& recordset, int index) noexcept : recordset_(&recordset), index_(index) {}
    const std::string& Name() const;
    VarType Type() const;
    /// Error 3021 when there is no current row.
    Variant Value() const;
    /// Sets the field of the row being edited or added; Update writes it. The value is converted to the field's type.
    void SetValue(const Variant& value);

private:
    Recordset* recordset_;
    int index_;
};

/// The row that a recordset stands on: another one once the recordset has moved.
class Row {
public:
    explicit Row(const Recordset& recordset) noexcept : recordset_(&recordset) {}

    /// A field as T: bool, std::int16_t, std::int32_t, double, Currency, Date, std::string, Variant, or a std::optional
    /// of one of them, which is empty for Null. Converts as CBool, CInt, CLng, CDbl, CCur, CDate and Text do: Null is
    /// error 94 (as a text ""), what does not fit error 6, what does not convert error 13; an unknown column is error
    /// 3265.
    template <class T>
    T get(std::string_view column) const;
    template <class T>
    T get(int column) const;

private:
    static void Convert(const Variant& value, bool& to) { to = CBool(value); }
    static void Convert(const Variant& value, std::int16_t& to) { to = CInt(value); }
    static void Convert(const Variant& value, std::int32_t& to) { to = CLng(value); }
    static void Convert(const Variant& value, double& to) { to = CDbl(value); }
    static void Convert(const Variant& value, Currency& to) { to = CCur(value); }
    static void Convert(const Variant& value, Date& to) { to = CDate(value); }
    static void Convert(const Variant& value, std::string& to) { to = Text(value); }
    static void Convert(const Variant& value, Variant& to) { to = value; }
    template <class T>
    static void Convert(const Variant& value, std::optional<T>& to) {
        if (!value.IsNull()) Convert(value, to.emplace());
    }

    const Recordset* recordset_;
};

/// The rows of a range-based for, of which each can be read until the next.
class RowIterator {
public:
    using iterator_concept = std::input_iterator_tag;
    using value_type = Row;
    using difference_type = std::ptrdiff_t;

    explicit RowIterator(Recordset& recordset) noexcept : recordset_(&recordset), row_(recordset) {}
    const Row& operator*() const noexcept { return row_; }
    RowIterator& operator++();
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const;

private:
    Recordset* recordset_;
    Row row_;
};

/// Base of all result sets. A recordset starts positioned on its first row, or at Eof when it has none.
class Recordset : public Object {
public:
    // Columns
    virtual int FieldCount() const = 0;
    /// Error 3265 when the position is out of range.
    virtual const FieldInfo& FieldAt(int index) const = 0;
    /// Position of the first field of that name, ignoring case; else of the one that a joined table's name or alias and
    /// a point before the name tell ("Lst.dpID"); error 3265 when there is none.
    virtual int FieldIndex(std::string_view name) const = 0;
    Field Fields(std::string_view name) { return Field(*this, FieldIndex(name)); }
    Field Fields(int index) {
        FieldAt(index);
        return Field(*this, index);
    }

    // The current row. Reading or writing without one raises error 3021.
    virtual Variant GetValue(int index) const = 0;
    /// Starts an edit of the current row, or fills the row that AddNew began. A read-only recordset raises error 3251.
    virtual void SetValue(int index, const Variant& value) = 0;

    // Navigation
    /// Number of rows, including one being added; -1 when unknown.
    virtual std::int32_t RecordCount() const = 0;
    /// 1-based position of the current row, or a Position.
    virtual std::int32_t AbsolutePosition() const = 0;
    virtual bool Eof() const = 0;
    /// Error 3021 when the recordset is empty.
    virtual void MoveFirst() = 0;
    /// To the next row or to Eof; error 3021 when already at Eof.
    virtual void MoveNext() = 0;
    /// Moves to the first row, from the current row (included) plus skip on, that meets "column op value" with op one
    /// of = <> < <= > >= Like; to Eof when there is none. direction: a SearchDirection. Error 3001 on other criteria.
    virtual void Find(std::string_view criteria, std::int32_t skip = 0, int direction = 1) = 0;
    /// Orders the rows by "column [ASC|DESC], ..." and moves to the first; "" restores the original order. Client-side
    /// only.
    virtual void Sort(std::string_view order) = 0;

    // All rows, from the first on: for (auto& row : *rs) total = total + row.get<Currency>("金额"). The loop moves the
    // recordset and leaves it at Eof.
    RowIterator begin() {
        if (RecordCount() != 0) MoveFirst();
        return RowIterator(*this);
    }
    std::default_sentinel_t end() const noexcept { return {}; }

    // Editing
    /// Begins a new row, which becomes the current one.
    virtual void AddNew() = 0;
    /// Writes the row being edited or added: only the fields that were set.
    virtual void Update() = 0;
    /// Later calls raise error 3704.
    virtual void Close() = 0;

    /// Rows that the provider fetches at once, as it was set here. It changes no result.
    std::int32_t CacheSize() const noexcept { return cacheSize_; }
    /// Stored for the host; a recordset over another one's passes it on.
    virtual void SetCacheSize(std::int32_t rows) { cacheSize_ = rows; }

private:
    std::int32_t cacheSize_ = 1;
};
using RecordsetPtr = std::shared_ptr<Recordset>;

template <class T>
T Row::get(std::string_view column) const {
    return get<T>(recordset_->FieldIndex(column));
}
template <class T>
T Row::get(int column) const {
    T value{};
    Convert(recordset_->GetValue(column), value);
    return value;
}

inline RowIterator& RowIterator::operator++() {
    recordset_->MoveNext();
    return *this;
}
inline bool RowIterator::operator==(std::default_sentinel_t) const { return recordset_->Eof(); }

inline const std::string& Field::Name() const { return recordset_->FieldAt(index_).name; }
inline VarType Field::Type() const { return recordset_->FieldAt(index_).type; }
inline Variant Field::Value() const { return recordset_->GetValue(index_); }
inline void Field::SetValue(const Variant& value) { recordset_->SetValue(index_, value); }

}  // namespace kpTables
