#include "com/TablesObject.h"

#include <olectl.h>

#include <map>
#include <memory>

#include "com/Failure.h"
#include "com/Ids.h"
#include "com/SystemHost.h"
#include "com/TypeLibrary.h"

namespace kpTables::com {
namespace {

Variant CallMember(Scriptable& self, const Row& row, Arguments arguments) {
    return _CTables::Invoke(static_cast<TablesObject&>(self).Tables(), _CTables::Members()[row.index], arguments);
}

std::vector<Row> RowsOfTable() {
    std::map<std::string_view, DISPID> ids;
    std::vector<Row> rows;
    for (const auto& member : _CTables::Members()) {
        const auto next = static_cast<DISPID>(ids.size() + 1);
        const DISPID id = ids.emplace(member.name, next).first->second;
        rows.push_back({member.name, id, member.kind, member.parameters, member.result, &CallMember});
    }
    return rows;
}

}  // namespace

const Interface& TablesInterface() {
    static const Interface members(kTablesInterface, "_CTables", RowsOfTable());
    return members;
}

TablesObject::TablesObject()
    : Scriptable(TablesInterface()),
      tables_(std::make_shared<SystemHost>()),
      events_(*this, tables_),
      face_{TablesFunctions(), this} {}

HRESULT TablesObject::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == kTablesInterface) {
        AddRef();
        *object = &face_;
        return S_OK;
    }
    if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)
        return Answer(static_cast<IProvideClassInfo2*>(this), object);
    if (iid == IID_IConnectionPointContainer) return Answer(static_cast<IConnectionPointContainer*>(this), object);
    return Scriptable::QueryInterface(iid, object);
}

HRESULT TablesObject::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = TypeInfoOf(kTablesInterface) ? 1 : 0;
    return S_OK;
}

HRESULT TablesObject::GetTypeInfo(UINT number, LCID, ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (number != 0) return DISP_E_BADINDEX;
    *info = TypeInfoOf(kTablesInterface).Detach();
    return *info ? S_OK : TYPE_E_LIBNOTREGISTERED;
}

HRESULT TablesObject::GetClassInfo(ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = TypeInfoOf(kTablesClass).Detach();
    return *info ? S_OK : TYPE_E_LIBNOTREGISTERED;
}

HRESULT TablesObject::GetGUID(DWORD kind, GUID* id) {
    if (!id) return E_POINTER;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    *id = kTablesEvents;
    return S_OK;
}

HRESULT TablesObject::EnumConnectionPoints(IEnumConnectionPoints** points) {
    if (!points) return E_POINTER;
    return Returned([&] {
        *points = EnumeratorOf(events_).Detach();
        return S_OK;
    });
}

HRESULT TablesObject::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (!point) return E_POINTER;
    *point = nullptr;
    if (iid != kTablesEvents) return CONNECT_E_NOCONNECTION;
    *point = Pointer<IConnectionPoint>(&events_).Detach();
    return S_OK;
}

}  // namespace kpTables::com
