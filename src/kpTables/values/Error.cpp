#include "kpTables/Error.h"

#include <utility>

namespace kpTables {

Error::Error(std::int32_t number, const std::string& description, std::string source)
    : std::runtime_error(description), number_(number), source_(std::move(source)) {}

DatabaseError::DatabaseError(std::int32_t number, const std::string& description, std::string statement,
                             std::optional<std::size_t> position)
    : Error(number, description), statement_(std::move(statement)), position_(position) {}

const char* ErrorText(ErrorNumber number) noexcept {
    switch (number) {
        case ErrorNumber::InvalidCall:
            return "Invalid procedure call or argument";
        case ErrorNumber::Overflow:
            return "Overflow";
        case ErrorNumber::SubscriptOutOfRange:
            return "Subscript out of range";
        case ErrorNumber::DivisionByZero:
            return "Division by zero";
        case ErrorNumber::TypeMismatch:
            return "Type mismatch";
        case ErrorNumber::ObjectNotSet:
            return "Object variable or With block variable not set";
        case ErrorNumber::InvalidUseOfNull:
            return "Invalid use of Null";
        case ErrorNumber::UnknownMember:
            return "Object doesn't support this property or method";
        case ErrorNumber::ArgumentNotOptional:
            return "Argument not optional";
        case ErrorNumber::WrongArgumentCount:
            return "Wrong number of arguments or invalid property assignment";
        case ErrorNumber::NoCurrentRecord:
            return "Either BOF or EOF is True, or the current record has been deleted";
        case ErrorNumber::ItemNotFound:
            return "Item cannot be found in the collection corresponding to the requested name or ordinal";
        case ErrorNumber::InvalidArgument:
            return "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another";
        case ErrorNumber::ObjectClosed:
            return "Operation is not allowed when the object is closed";
        case ErrorNumber::NotUpdatable:
            return "Current Recordset does not support updating";
    }
    return "Application-defined or object-defined error";
}

void Raise(ErrorNumber number, const std::string& detail) {
    std::string text = ErrorText(number);
    if (!detail.empty()) text += ": " + detail;
    throw Error(static_cast<std::int32_t>(number), text);
}

}  // namespace kpTables
