#include "com/ConnectionPoint.h"

#include <olectl.h>

#include <utility>
#include <vector>

#include "com/Enumerator.h"
#include "com/Failure.h"
#include "com/Ids.h"
#include "com/Value.h"

namespace kpTables::com {
namespace {

constexpr DISPID kTableChanged = 1;

struct PointTraits {
    using Interface = IEnumConnectionPoints;
    using Item = IConnectionPoint*;
    using Held = Pointer<IConnectionPoint>;
    static const IID& Iid() { return IID_IEnumConnectionPoints; }
    static void Give(const Held& held, Item* item) { *item = Held(held).Detach(); }
};

struct ConnectionTraits {
    using Interface = IEnumConnections;
    using Item = CONNECTDATA;
    struct Held {
        Pointer<IUnknown> listener;
        DWORD cookie;
    };
    static const IID& Iid() { return IID_IEnumConnections; }
    static void Give(const Held& held, Item* item) {
        item->pUnk = Pointer<IUnknown>(held.listener).Detach();
        item->dwCookie = held.cookie;
    }
};

}  // namespace

/// A listener of the host's. What it answers is its own affair: the others are called all the same.
class Sink final : public __CTables {
public:
    explicit Sink(Pointer<IDispatch> listener) : listener_(std::move(listener)) {}
    void TableChanged(const std::string& ProcName, const std::string& TableName, std::int32_t ID) override {
        // The listener may end its registration, and with it this object.
        const Pointer<IDispatch> listener = listener_;
        Value arguments[] = {Value(ID), Value(TableName), Value(ProcName)};
        DISPPARAMS parameters = {arguments, nullptr, static_cast<UINT>(std::size(arguments)), 0};
        listener->Invoke(kTableChanged, IID_NULL, GetUserDefaultLCID(), DISPATCH_METHOD, &parameters, nullptr, nullptr,
                         nullptr);
    }
    IDispatch* Listener() const { return listener_.Get(); }

private:
    Pointer<IDispatch> listener_;
};

ConnectionPoint::ConnectionPoint(IConnectionPointContainer& container, CTables& tables)
    : container_(container), tables_(tables) {}

ConnectionPoint::~ConnectionPoint() = default;

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IConnectionPoint) return Answer(static_cast<IConnectionPoint*>(this), object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (!iid) return E_POINTER;
    *iid = kTablesEvents;
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (!container) return E_POINTER;
    *container = Pointer<IConnectionPointContainer>(&container_).Detach();
    return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* listener, DWORD* cookie) {
    if (!listener || !cookie) return E_POINTER;
    *cookie = 0;
    return Returned([&]() -> HRESULT {
        auto events = Query<IDispatch>(listener, kTablesEvents);
        if (!events) events = Query<IDispatch>(listener, IID_IDispatch);
        if (!events) return CONNECT_E_CANNOTCONNECT;
        auto sink = std::make_unique<Sink>(std::move(events));
        const auto added = static_cast<DWORD>(tables_.Advise(*sink));
        sinks_.emplace(added, std::move(sink));
        *cookie = added;
        return S_OK;
    });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    const auto found = sinks_.find(cookie);
    if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
    return Returned([&] {
        tables_.Unadvise(static_cast<std::int32_t>(cookie));
        sinks_.erase(found);
        return S_OK;
    });
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    if (!connections) return E_POINTER;
    return Returned([&] {
        std::vector<ConnectionTraits::Held> held;
        for (const auto& [cookie, sink] : sinks_) held.push_back({Pointer<IUnknown>(sink->Listener()), cookie});
        *connections = new Enumerator<ConnectionTraits>(
            std::make_shared<const std::vector<ConnectionTraits::Held>>(std::move(held)));
        return S_OK;
    });
}

Pointer<IEnumConnectionPoints> EnumeratorOf(IConnectionPoint& point) {
    const std::vector<PointTraits::Held> held = {Pointer<IConnectionPoint>(&point)};
    return Pointer<IEnumConnectionPoints>::Attach(
        new Enumerator<PointTraits>(std::make_shared<const std::vector<PointTraits::Held>>(held)));
}

}  // namespace kpTables::com
