#include "text/ErrorText.h"

#include "kpTables/text/Message.h"

namespace kpTables::text {

const char* ErrorText(std::int32_t number) noexcept {
    switch (number) {
        case 5:
            return Translated("Invalid procedure call or argument");
        case 6:
            return Translated("Overflow");
        case 9:
            return Translated("Subscript out of range");
        case 11:
            return Translated("Division by zero");
        case 13:
            return Translated("Type mismatch");
        case 91:
            return Translated("Object variable or With block variable not set");
        case 94:
            return Translated("Invalid use of Null");
        case 438:
            return Translated("Object doesn't support this property or method");
        case 449:
            return Translated("Argument not optional");
        case 450:
            return Translated("Wrong number of arguments or invalid property assignment");
        case 3001:
            return Translated(
                "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another");
        case 3021:
            return Translated("Either BOF or EOF is True, or the current record has been deleted");
        case 3251:
            return Translated("Current Recordset does not support updating");
        case 3265:
            return Translated("Item cannot be found in the collection corresponding to the requested name or ordinal");
        case 3704:
            return Translated("Operation is not allowed when the object is closed");
        default:
            return Translated("Application-defined or object-defined error");
    }
}

}  // namespace kpTables::text
