// kpTables.CTables: the component as an object.
#pragma once

#include <ocidl.h>

#include "com/ConnectionPoint.h"
#include "com/Scriptable.h"
#include "com/Thunk.h"
#include "kpTables/CTables.h"

namespace kpTables::com {

/// The late-bound table as an interface. A member's id is the place of its name among the names, from 1.
const Interface& TablesInterface();

/// The virtual table of the dual interface: IDispatch's functions, then one for each row, in the order of the rows.
const void* const* TablesFunctions();

class TablesObject final : public Scriptable, public IConnectionPointContainer, public IProvideClassInfo2 {
public:
    TablesObject();

    ULONG STDMETHODCALLTYPE AddRef() override { return Scriptable::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Scriptable::Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT number, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override;
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    CTables& Tables() noexcept { return tables_; }

private:
    CTables tables_;
    ConnectionPoint events_;
    DualFace face_;
};

}  // namespace kpTables::com
