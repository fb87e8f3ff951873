// The connection point for the events of CTables.
#pragma once

#include <ocidl.h>

#include <map>
#include <memory>

#include "com/Pointer.h"
#include "kpTables/CTables.h"

namespace kpTables::com {

class Sink;

/// A part of its container: it counts the container's references.
class ConnectionPoint final : public IConnectionPoint {
public:
    ConnectionPoint(IConnectionPointContainer& container, CTables& tables);
    ~ConnectionPoint();

    ULONG STDMETHODCALLTYPE AddRef() override { return container_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return container_.Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* listener, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

private:
    IConnectionPointContainer& container_;
    CTables& tables_;
    std::map<DWORD, std::unique_ptr<Sink>> sinks_;
};

/// An enumerator over one connection point.
Pointer<IEnumConnectionPoints> EnumeratorOf(IConnectionPoint& point);

}  // namespace kpTables::com
