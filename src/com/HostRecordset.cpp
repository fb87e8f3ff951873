#include "com/HostRecordset.h"

#include "com/AdoTypes.h"
#include "kpTables/Convert.h"

namespace kpTables::com {
namespace {

/// Positions from here on are of fields that were looked up by name; no table has so many columns.
constexpr int kFirstLookedUp = 1 << 20;

}  // namespace

const LateBoundObject& HostRecordset::FieldsObject() const {
    if (!fields_) fields_ = Members().GetInner("Fields");
    return *fields_;
}

const HostRecordset::Looked* HostRecordset::LookedUp(int index) const {
    return index >= kFirstLookedUp ? &looked_.at(static_cast<std::size_t>(index - kFirstLookedUp)) : nullptr;
}

const LateBoundObject& HostRecordset::FieldObject(int index) const {
    if (const Looked* looked = LookedUp(index)) return looked->field.value();
    const auto known = columns_.find(index);
    if (known != columns_.end()) return known->second;
    return columns_.emplace(index, FieldsObject().GetInner("Item", {index})).first->second;
}

int HostRecordset::FieldCount() const { return CLng(FieldsObject().Get("Count")); }

const FieldInfo& HostRecordset::FieldAt(int index) const {
    const auto known = infos_.find(index);
    if (known != infos_.end()) return known->second;
    const Looked* const looked = LookedUp(index);
    if (looked && !looked->field) return infos_.emplace(index, FieldInfo{looked->name}).first->second;
    const LateBoundObject& field = FieldObject(index);
    FieldInfo info{Text(field.Get("Name")), TypeOfAdo(CLng(field.Get("Type")))};
    return infos_.emplace(index, std::move(info)).first->second;
}

int HostRecordset::FieldIndex(std::string_view name) const {
    const auto known = positions_.find(std::string(name));
    if (known != positions_.end()) return known->second;
    Looked looked{std::string(name), std::nullopt};
    if (fields_ || Members().Has("Fields")) {
        looked.field = FieldsObject().GetInner("Item", {name});
    } else {
        Members().DefaultItem(name);
    }
    looked_.push_back(std::move(looked));
    const int index = kFirstLookedUp + static_cast<int>(looked_.size()) - 1;
    positions_.emplace(name, index);
    return index;
}

Variant HostRecordset::GetValue(int index) const {
    const Looked* const looked = LookedUp(index);
    if (!looked || looked->field) return FieldObject(index).Get("Value");
    const Variant value = Members().DefaultItem(looked->name);
    const auto* const object = value.If<ObjectPtr>();
    if (!object || !*object) return value;
    return LateBoundObject(DispatchOf(*object)).DefaultValue();
}

void HostRecordset::SetValue(int index, const Variant& value) { FieldObject(index).Put("Value", {value}); }

std::int32_t HostRecordset::RecordCount() const { return CLng(Members().Get("RecordCount")); }

std::int32_t HostRecordset::AbsolutePosition() const { return CLng(Members().Get("AbsolutePosition")); }

bool HostRecordset::Eof() const { return CBool(Members().Get("EOF")); }

void HostRecordset::MoveFirst() { Members().Call("MoveFirst"); }

void HostRecordset::MoveNext() { Members().Call("MoveNext"); }

void HostRecordset::Find(std::string_view criteria, std::int32_t skip, int direction) {
    Members().Call("Find", {criteria, skip, direction});
}

void HostRecordset::Sort(std::string_view order) { Members().Put("Sort", {order}); }

void HostRecordset::AddNew() { Members().Call("AddNew"); }

void HostRecordset::Update() { Members().Call("Update"); }

void HostRecordset::Close() { Members().Call("Close"); }

void HostRecordset::SetCacheSize(std::int32_t rows) { Members().Put("CacheSize", {rows}); }

}  // namespace kpTables::com
