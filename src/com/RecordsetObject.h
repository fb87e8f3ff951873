// kpTables.Recordset: the component's recordsets with the members of ADO's.
#pragma once

#include "com/HostObject.h"
#include "com/Scriptable.h"
#include "kpTables/Recordset.h"

namespace kpTables::com {

class RecordsetObject final : public Scriptable, public INative {
public:
    /// Null: one that is not open.
    explicit RecordsetObject(RecordsetPtr rows = nullptr);

    ULONG STDMETHODCALLTYPE AddRef() override { return Scriptable::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Scriptable::Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    void STDMETHODCALLTYPE GetNative(HINSTANCE caller, ObjectPtr* object) override {
        if (caller == Module()) *object = rows_;
    }

    /// Error 3704 while it is not open.
    Recordset& Rows() const;

    // The members, as ADO has them.
    Variant FieldsObject(Arguments arguments);
    Variant Open(Arguments arguments);
    Variant Close(Arguments arguments);
    Variant State(Arguments arguments);
    Variant Eof(Arguments arguments);
    Variant Bof(Arguments arguments);
    Variant RecordCount(Arguments arguments);
    Variant AbsolutePosition(Arguments arguments);
    Variant CacheSize(Arguments arguments);
    Variant SetCacheSize(Arguments arguments);
    Variant MoveFirst(Arguments arguments);
    Variant MoveNext(Arguments arguments);
    Variant Find(Arguments arguments);
    Variant Sort(Arguments arguments);
    Variant SetSort(Arguments arguments);
    Variant AddNew(Arguments arguments);
    Variant Update(Arguments arguments);
    Variant GetRows(Arguments arguments);

private:
    void SetFields(const Variant& fields, const Variant& values);

    RecordsetPtr rows_;
    std::string order_;  ///< as Sort was set
};

Pointer<IDispatch> MakeRecordset(RecordsetPtr rows);

}  // namespace kpTables::com
