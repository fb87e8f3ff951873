#include "com/HostObject.h"

#include <memory>
#include <utility>

#include "com/HostConnection.h"
#include "com/HostControl.h"
#include "com/HostRecordset.h"
#include "com/Module.h"
#include "com/RecordsetObject.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

/// The class of an object does not tell what it is: its members do, when they are used.
class HostObject final : public HostConnection, public HostRecordset, public HostGrid, public HostProgressBar {
public:
    explicit HostObject(IDispatch* object) : HostMembers(LateBoundObject(Pointer<IDispatch>(object))) {}
};

}  // namespace

ObjectPtr ObjectOf(IDispatch* object) {
    if (!object) return nullptr;
    if (const auto own = Query<INative>(object, kNativeIid)) {
        ObjectPtr native;
        own->GetNative(Module(), &native);
        if (native) return native;
    }
    // One of its bases that are an Object.
    return std::static_pointer_cast<HostRecordset>(std::make_shared<HostObject>(object));
}

Pointer<IDispatch> DispatchOf(const ObjectPtr& object) {
    if (!object) return nullptr;
    if (const auto host = std::dynamic_pointer_cast<HostReference>(object)) return Pointer<IDispatch>(host->Dispatch());
    if (auto rows = std::dynamic_pointer_cast<Recordset>(object)) return MakeRecordset(std::move(rows));
    Raise(ErrorNumber::TypeMismatch);
}

}  // namespace kpTables::com
