// A client of the server: calls by name, as a script makes them.
#pragma once

#include <oaidl.h>

#include <string>
#include <vector>

#include "com/Pointer.h"
#include "kpTables/Variant.h"

namespace kpTables::test {

/// What a call answered.
struct CallOutcome {
    HRESULT result = S_OK;
    Variant value;
    SCODE code = S_OK;        ///< of an error that the member raised
    std::string description;  ///< likewise
    std::string source;
};

/// A new object of a registered class; null when there is none.
com::Pointer<IDispatch> Create(const wchar_t* progId);

/// Calls a member with references to variables, which it may change.
CallOutcome CallByName(IDispatch* object, const std::string& name, std::vector<Variant>& variables,
                       WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET);
CallOutcome CallByName(IDispatch* object, const std::string& name);
/// Sets a property; an object as Set does.
HRESULT PutByName(IDispatch* object, const std::string& name, const VARIANT& value);
DISPID IdOf(IDispatch* object, const std::string& name);

}  // namespace kpTables::test
