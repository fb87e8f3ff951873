#include "engines/common/PivotValues.h"

#include "kpTables/Convert.h"

namespace kpTables::engines {

namespace {

sql::LiteralKind KindOf(VarType type) noexcept {
    switch (type) {
        case VarType::Null:
            return sql::LiteralKind::Null;
        case VarType::Boolean:
            return sql::LiteralKind::Boolean;
        case VarType::Integer:
        case VarType::Long:
            return sql::LiteralKind::Integer;
        case VarType::Double:
        case VarType::Currency:
            return sql::LiteralKind::Decimal;
        case VarType::Date:
            return sql::LiteralKind::Date;
        default:
            return sql::LiteralKind::Text;
    }
}

}  // namespace

std::vector<sql::LiteralValue> PivotValues(const recordset::RowStore& rows) {
    std::vector<sql::LiteralValue> values;
    for (std::size_t row = 0; row < rows.Rows(); ++row) {
        values.push_back({KindOf(rows.TypeAt(row, 0)), Text(rows.GetValue(row, 0))});
    }
    return values;
}

}  // namespace kpTables::engines
