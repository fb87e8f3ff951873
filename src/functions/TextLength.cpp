#include "functions/TextLength.h"

#include "kpTables/text/Message.h"
#include "text/Utf8.h"

namespace kpTables::functions {

std::optional<std::string> LengthComplaint(std::string_view text, int length, std::string_view column) {
    // No text has more characters than bytes.
    const auto limit = static_cast<std::size_t>(length);
    if (limit == 0 || text.size() <= limit) return std::nullopt;
    const std::size_t characters = text::CountCharacters(text);
    if (characters <= limit) return std::nullopt;
    return Message("The field '{1}' is too small for a text of {2} characters: it takes {3}", column, characters,
                   length);
}

}  // namespace kpTables::functions
