// The classes that the server creates.
#pragma once

#include <oaidl.h>

#include <span>

#include "com/Pointer.h"

namespace kpTables::com {

struct Class {
    const CLSID* id;
    const wchar_t* progId;
    Pointer<IDispatch> (*make)();
};

std::span<const Class> Classes();

/// A factory of the class with this id; null when the server has none.
Pointer<IClassFactory> FactoryOf(REFCLSID id);

}  // namespace kpTables::com
