// Another program's object, driven by the names of its members.
#pragma once

#include <oaidl.h>

#include <initializer_list>
#include <string>

#include "com/Pointer.h"
#include "kpTables/Variant.h"

namespace kpTables::com {

/// Every call looks its member up by name, as late-bound Visual Basic does. Raises error 91 for Nothing, 438 for a
/// member that the object does not have, and the Error that the member raised.
class LateBoundObject {
public:
    explicit LateBoundObject(Pointer<IDispatch> object) noexcept : object_(std::move(object)) {}
    /// A new object of a registered class; error 429 when there is none.
    static LateBoundObject Create(const wchar_t* progId);

    IDispatch* Dispatch() const noexcept { return object_.Get(); }

    Variant Get(const char* member, std::initializer_list<Variant> arguments = {}) const;
    /// A property whose value is an object: error 424 when it is none.
    LateBoundObject GetInner(const char* member, std::initializer_list<Variant> arguments = {}) const;
    void Call(const char* member, std::initializer_list<Variant> arguments = {}) const;
    /// The value is the last argument.
    void Put(const char* member, std::initializer_list<Variant> arguments) const;
    bool Has(const char* member) const;

    /// The default property, of an object that it answers with again.
    Variant DefaultValue() const;
    /// The default property with an argument.
    Variant DefaultItem(const Variant& argument) const;

private:
    HRESULT Find(const char* member, DISPID* id) const;
    DISPID IdOf(const char* member) const;

    Pointer<IDispatch> object_;
};

}  // namespace kpTables::com
