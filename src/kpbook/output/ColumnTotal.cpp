#include "kpbook/output/ColumnTotal.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "kpTables/Convert.h"
#include "kpbook/output/CellText.h"

namespace kpTables::kpbook::output {

namespace {

constexpr const char* kLabel = "合计";
/// More decimals than a Double written without an exponent can have.
constexpr int kAllDecimals = 400;

/// Counted in fifteen digits: further digits are rounding errors of the database's own sums, 1565.1049999999998 for
/// 1565.105.
int DecimalsOf(double value) {
    const std::string text = Text(value);
    if (text.find("E+") != text.npos) return 0;
    if (text.find_first_not_of("-0123456789.") != text.npos) return kAllDecimals;
    const auto point = text.find('.');
    return point == text.npos ? 0 : static_cast<int>(text.size() - point - 1);
}

double Rounded(double value, int decimals) {
    if (decimals >= kAllDecimals) return value;
    char buffer[800];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    std::from_chars(buffer, end.ptr, value);
    return value + 0.0;  // no "-0"
}

}  // namespace

void ColumnTotal::Add(const Variant& value) {
    if (value.IsNull() || value.IsEmpty()) return;
    if (const auto* money = value.If<Currency>()) {
        money_ = money_ + *money;
        return;
    }
    const double number = CDbl(value);
    isMoney_ = false;
    decimals_ = std::max(decimals_, DecimalsOf(number));
    // Neumaier's summation: the part of the smaller number that the larger one cannot hold is added up separately.
    const double sum = number_ + number;
    lost_ += std::fabs(number_) >= std::fabs(number) ? (number_ - sum) + number : (number - sum) + number_;
    number_ = sum;
}

Variant ColumnTotal::Value() const {
    if (isMoney_) return money_;
    return std::isfinite(number_) ? Rounded(number_ + lost_, decimals_) : number_;
}

TotalsRow::TotalsRow(const Recordset& recordset, const Presentation& presentation)
    : presentation_(presentation), totals_(presentation.totalled.size()), labelled_(-1) {
    for (int i = recordset.FieldCount() - 1; i >= 0; --i) {
        if (std::ranges::find(presentation_.totalled, i) == presentation_.totalled.end()) labelled_ = i;
    }
}

void TotalsRow::Add(const Recordset& recordset) {
    hasRows_ = true;
    for (std::size_t i = 0; i < totals_.size(); ++i) totals_[i].Add(recordset.GetValue(presentation_.totalled[i]));
}

std::string TotalsRow::Cell(int column) const {
    const Variant value = Value(column);
    return value.IsNull() ? std::string() : ShownText(value, presentation_.LookOf(column));
}

Variant TotalsRow::Value(int column) const {
    if (column == labelled_) return kLabel;
    const auto& totalled = presentation_.totalled;
    const auto found = std::ranges::find(totalled, column);
    if (found == totalled.end()) return Variant::Null();
    return totals_[static_cast<std::size_t>(found - totalled.begin())].Value();
}

}  // namespace kpTables::kpbook::output
