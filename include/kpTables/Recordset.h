// The result set of the component and its hosts: ADO's members by ADO's names.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kpTables/Variant.h"

namespace kpTables {

/// Name and type of a column. The type is one of Boolean, Integer, Long, Double, Currency, Date, String,
/// or Empty where the engine does not know it (a bare Null, for example).
struct FieldInfo {
    std::string name;
    VarType type = VarType::Empty;
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

/// Base of all result sets. A recordset starts positioned on its first row, or at Eof when it has none.
class Recordset : public Object {
public:
    // Columns
    virtual int FieldCount() const = 0;
    /// Error 3265 when the position is out of range.
    virtual const FieldInfo& FieldAt(int index) const = 0;
    /// Position of the first field of that name, ignoring case; error 3265 when there is none.
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
    /// 1-based position of the current row; -3 (adPosEOF) at the end, -1 (adPosUnknown) where it is unknown.
    virtual std::int32_t AbsolutePosition() const = 0;
    virtual bool Eof() const = 0;
    /// Error 3021 when the recordset is empty.
    virtual void MoveFirst() = 0;
    /// To the next row or to Eof; error 3021 when already at Eof.
    virtual void MoveNext() = 0;
    /// Moves to the first row, from the current row (included) plus skip on, that meets "column op value" with op one
    /// of = <> < <= > >= Like; to Eof when there is none. direction 1 searches forward, -1 backward. Error 3001 on
    /// other criteria.
    virtual void Find(std::string_view criteria, std::int32_t skip = 0, int direction = 1) = 0;
    /// Orders the rows by "column [ASC|DESC], ..." and moves to the first; "" restores the original order. Client-side
    /// only.
    virtual void Sort(std::string_view order) = 0;

    // Editing
    /// Begins a new row, which becomes the current one.
    virtual void AddNew() = 0;
    /// Writes the row being edited or added: only the fields that were set.
    virtual void Update() = 0;
    /// Later calls raise error 3704.
    virtual void Close() = 0;

    /// Rows that the provider fetches at once. Stored for the host; it changes no result.
    std::int32_t CacheSize() const noexcept { return cacheSize_; }
    void SetCacheSize(std::int32_t rows) noexcept { cacheSize_ = rows; }

private:
    std::int32_t cacheSize_ = 1;
};
using RecordsetPtr = std::shared_ptr<Recordset>;

inline const std::string& Field::Name() const { return recordset_->FieldAt(index_).name; }
inline VarType Field::Type() const { return recordset_->FieldAt(index_).type; }
inline Variant Field::Value() const { return recordset_->GetValue(index_); }
inline void Field::SetValue(const Variant& value) { recordset_->SetValue(index_, value); }

}  // namespace kpTables
