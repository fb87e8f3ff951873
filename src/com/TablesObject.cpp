#include "com/TablesObject.h"

#include <olectl.h>

#include <map>
#include <memory>

#include "com/Failure.h"
#include "com/Ids.h"
#include "com/SystemHost.h"

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
    : Scriptable(TablesInterface()), tables_(std::make_shared<SystemHost>()), events_(*this, tables_) {}

HRESULT TablesObject::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == IID_IConnectionPointContainer) return Answer(static_cast<IConnectionPointContainer*>(this), object);
    return Scriptable::QueryInterface(iid, object);
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
