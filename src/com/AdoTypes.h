// The types of fields with ADO's numbers.
#pragma once

#include <cstdint>

#include "kpTables/Variant.h"

namespace kpTables::com {

/// The nearest of the types that a column of a Recordset has; Empty for one that has none.
constexpr VarType TypeOfAdo(std::int32_t number) noexcept {
    switch (number) {
        case 11:  // adBoolean
            return VarType::Boolean;
        case 2:   // adSmallInt
        case 16:  // adTinyInt
        case 17:  // adUnsignedTinyInt
            return VarType::Integer;
        case 3:   // adInteger
        case 18:  // adUnsignedSmallInt
            return VarType::Long;
        case 4:    // adSingle
        case 5:    // adDouble
        case 14:   // adDecimal
        case 131:  // adNumeric
            return VarType::Double;
        case 6:  // adCurrency
            return VarType::Currency;
        case 7:    // adDate
        case 133:  // adDBDate
        case 134:  // adDBTime
        case 135:  // adDBTimeStamp
            return VarType::Date;
        case 8:    // adBSTR
        case 129:  // adChar
        case 130:  // adWChar
        case 200:  // adVarChar
        case 201:  // adLongVarChar
        case 202:  // adVarWChar
        case 203:  // adLongVarWChar
            return VarType::String;
        default:
            return VarType::Empty;
    }
}

/// ADO's number for the type of a column.
constexpr std::int32_t AdoType(VarType type) noexcept {
    constexpr std::int32_t kVarWChar = 202;
    constexpr std::int32_t kVariant = 12;
    switch (type) {
        case VarType::Boolean:
        case VarType::Integer:
        case VarType::Long:
        case VarType::Double:
        case VarType::Currency:
        case VarType::Date:
            return static_cast<std::int32_t>(type);
        case VarType::String:
            return kVarWChar;
        default:
            return kVariant;
    }
}

}  // namespace kpTables::com
