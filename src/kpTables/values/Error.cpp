#include "kpTables/Error.h"

#include <utility>

#include "text/ErrorText.h"

namespace kpTables {

Error::Error(std::int32_t number, const std::string& description, std::string source)
    : std::runtime_error(description), number_(number), source_(std::move(source)) {}

DatabaseError::DatabaseError(std::int32_t number, const std::string& description, std::string statement,
                             std::optional<std::size_t> position)
    : Error(number, description), statement_(std::move(statement)), position_(position) {}

const char* ErrorText(ErrorNumber number) noexcept { return text::ErrorText(static_cast<std::int32_t>(number)); }

void Raise(ErrorNumber number, const std::string& detail) {
    std::string text = ErrorText(number);
    if (!detail.empty()) text += ": " + detail;
    throw Error(static_cast<std::int32_t>(number), text);
}

}  // namespace kpTables
