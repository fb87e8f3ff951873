#include "com/Classes.h"

#include <algorithm>

#include "com/BookkeepingObject.h"
#include "com/ConnectionObject.h"
#include "com/Failure.h"
#include "com/Ids.h"
#include "com/Object.h"
#include "com/RecordsetObject.h"
#include "com/TablesObject.h"

namespace kpTables::com {
namespace {

template <class T>
Pointer<IDispatch> MakeObject() {
    return Pointer<IDispatch>(static_cast<IDispatch*>(Make<T>().Get()));
}

constexpr Class kClasses[] = {
    {&kTablesClass, L"kpTables.CTables", &MakeObject<TablesObject>},
    {&kRecordsetClass, L"kpTables.Recordset", &MakeObject<RecordsetObject>},
    {&kConnectionClass, L"kpTables.Connection", &MakeObject<ConnectionObject>},
    {&kBookkeepingClass, L"kpTables.Bookkeeping", &MakeObject<BookkeepingObject>},
};

class Factory final : public Object<IClassFactory> {
public:
    explicit Factory(const Class& made) : made_(made) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        if (iid == IID_IUnknown || iid == IID_IClassFactory) return Answer(static_cast<IClassFactory*>(this), object);
        *object = nullptr;
        return E_NOINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return Returned([&] { return made_.make()->QueryInterface(iid, object); });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            AddUse();
        } else {
            EndUse();
        }
        return S_OK;
    }

private:
    const Class& made_;
};

}  // namespace

std::span<const Class> Classes() { return kClasses; }

Pointer<IClassFactory> FactoryOf(REFCLSID id) {
    const auto found = std::ranges::find_if(kClasses, [&](const Class& each) { return *each.id == id; });
    if (found == std::end(kClasses)) return nullptr;
    return Pointer<IClassFactory>::Attach(new Factory(*found));
}

}  // namespace kpTables::com
