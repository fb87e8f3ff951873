#include "kpTables/Numbers.h"

#include <cmath>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables {

double vDbl(const Variant& value) { return IsNumeric(value) ? CDbl(value) : 0; }

Currency vCur(const Variant& value) { return IsNumeric(value) ? CCur(value) : Currency(); }

double Finite(double number) {
    if (!std::isfinite(number)) Raise(ErrorNumber::Overflow);
    return number;
}

double CalcPrice(const Variant& amount, const Variant& quantity) {
    if (!IsNumeric(amount) || !IsNumeric(quantity)) return 0;
    const double divisor = CDbl(quantity);
    if (!(divisor > 0)) return 0;
    return Finite(CDbl(amount) / divisor);
}

}  // namespace kpTables
