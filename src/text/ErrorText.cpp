#include "text/ErrorText.h"

namespace kpTables::text {

const char* ErrorText(std::int32_t number) noexcept {
    switch (number) {
        case 5:
            return "Invalid procedure call or argument";
        case 6:
            return "Overflow";
        case 9:
            return "Subscript out of range";
        case 11:
            return "Division by zero";
        case 13:
            return "Type mismatch";
        case 91:
            return "Object variable or With block variable not set";
        case 94:
            return "Invalid use of Null";
        case 438:
            return "Object doesn't support this property or method";
        case 449:
            return "Argument not optional";
        case 450:
            return "Wrong number of arguments or invalid property assignment";
        case 3001:
            return "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another";
        case 3021:
            return "Either BOF or EOF is True, or the current record has been deleted";
        case 3251:
            return "Current Recordset does not support updating";
        case 3265:
            return "Item cannot be found in the collection corresponding to the requested name or ordinal";
        case 3704:
            return "Operation is not allowed when the object is closed";
        default:
            return "Application-defined or object-defined error";
    }
}

}  // namespace kpTables::text
