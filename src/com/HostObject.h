// Objects of the host as the component sees them, and the component's as the host does.
#pragma once

#include <oaidl.h>
#include <windows.h>

#include <memory>
#include <utility>

#include "com/Pointer.h"
#include "kpTables/Variant.h"

namespace kpTables::com {

/// An object that the host knows already: where the component hands it back, the host gets its own.
class HostReference {
public:
    virtual ~HostReference() = default;
    virtual IDispatch* Dispatch() const noexcept = 0;
};

/// An object of this server on its way to the host.
class OwnObject final : public kpTables::Object, public HostReference {
public:
    explicit OwnObject(Pointer<IDispatch> object) noexcept : object_(std::move(object)) {}
    IDispatch* Dispatch() const noexcept override { return object_.Get(); }

private:
    Pointer<IDispatch> object_;
};
template <class T>
Variant Give(Pointer<T> object) {
    return std::make_shared<OwnObject>(Pointer<IDispatch>(static_cast<IDispatch*>(object.Get())));
}

/// An enumerator on its way to the host: it has no dispatch interface.
class OwnEnumerator final : public kpTables::Object {
public:
    explicit OwnEnumerator(Pointer<IUnknown> object) noexcept : object_(std::move(object)) {}
    const Pointer<IUnknown>& Unknown() const noexcept { return object_; }

private:
    Pointer<IUnknown> object_;
};

/// An object of this server, for those that share its code: what it stands for within.
struct INative : IUnknown {
    /// Null for another module's caller, whose objects may be laid out differently, and while it stands for nothing, as
    /// a recordset that is not open.
    virtual void STDMETHODCALLTYPE GetNative(HINSTANCE caller, ObjectPtr* object) = 0;
};
inline constexpr IID kNativeIid = {0x071a82d8, 0xf6e3, 0x4349, {0xae, 0x48, 0x02, 0x7f, 0x0a, 0x40, 0x5c, 0x43}};

/// An object of this server is what it stands for; any other is a connection, a recordset, a grid and a progress bar in
/// one, whose members are looked up when they are used. Nothing is null.
ObjectPtr ObjectOf(IDispatch* object);
/// The host's own object, or a new one that stands for the component's. Error 13 for an object that no host can use.
Pointer<IDispatch> DispatchOf(const ObjectPtr& object);

}  // namespace kpTables::com
