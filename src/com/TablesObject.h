// kpTables.CTables: the component as an object.
#pragma once

#include <ocidl.h>

#include "com/ConnectionPoint.h"
#include "com/Scriptable.h"
#include "kpTables/CTables.h"

namespace kpTables::com {

/// The late-bound table as an interface. A member's id is the place of its name among the names, from 1.
const Interface& TablesInterface();

class TablesObject final : public Scriptable, public IConnectionPointContainer {
public:
    TablesObject();

    ULONG STDMETHODCALLTYPE AddRef() override { return Scriptable::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Scriptable::Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    CTables& Tables() noexcept { return tables_; }

private:
    CTables tables_;
    ConnectionPoint events_;
};

}  // namespace kpTables::com
