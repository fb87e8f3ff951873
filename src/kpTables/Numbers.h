// Numbers of values that may not be numeric.
#pragma once

#include "kpTables/Variant.h"

namespace kpTables {

/// The value when it is numeric, otherwise 0.
double vDbl(const Variant& value);
Currency vCur(const Variant& value);
/// The number itself; error 6 when it is too large for a Double.
double Finite(double number);
/// Amount / quantity, unrounded; 0 when either is not numeric or the quantity is not above 0.
double CalcPrice(const Variant& amount, const Variant& quantity);

}  // namespace kpTables
