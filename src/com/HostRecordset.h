// A recordset of the host's, by ADO's members.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "com/HostMembers.h"
#include "kpTables/Recordset.h"

namespace kpTables::com {

/// Also a row: an object whose default member answers a field by its name. A field that is looked up by name gets a
/// position of its own, above those of the columns.
class HostRecordset : public Recordset, public virtual HostMembers {
public:
    int FieldCount() const override;
    const FieldInfo& FieldAt(int index) const override;
    int FieldIndex(std::string_view name) const override;
    Variant GetValue(int index) const override;
    void SetValue(int index, const Variant& value) override;
    std::int32_t RecordCount() const override;
    std::int32_t AbsolutePosition() const override;
    bool Eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    void Find(std::string_view criteria, std::int32_t skip, int direction) override;
    void Sort(std::string_view order) override;
    void AddNew() override;
    void Update() override;
    void Close() override;
    void SetCacheSize(std::int32_t rows) override;

protected:
    HostRecordset() noexcept : HostMembers(LateBoundObject(nullptr)) {}

private:
    struct Looked {
        std::string name;
        std::optional<LateBoundObject> field;  ///< nothing: the default member answers its value
    };
    /// The recordset's collection of fields, which stays the same.
    const LateBoundObject& FieldsObject() const;
    const LateBoundObject& FieldObject(int index) const;
    const Looked* LookedUp(int index) const;

    mutable std::optional<LateBoundObject> fields_;
    mutable std::unordered_map<int, LateBoundObject> columns_;
    mutable std::unordered_map<int, FieldInfo> infos_;
    mutable std::vector<Looked> looked_;
    mutable std::unordered_map<std::string, int> positions_;
};

}  // namespace kpTables::com
