// Arrays at the border.
#pragma once

#include <oaidl.h>

#include <memory>

#include "kpTables/Variant.h"

namespace kpTables::com {

/// A new SAFEARRAY of VARIANTs with the same bounds.
SAFEARRAY* ToSafeArray(const VariantArray& array);
/// A copy of an array of any element type, with its bounds. An array without elements that was never dimensioned (null)
/// has no dimension.
std::shared_ptr<VariantArray> FromSafeArray(SAFEARRAY* array);

}  // namespace kpTables::com
