#include "functions/TextLength.h"

#include "text/Utf8.h"

namespace kpTables::functions {

std::optional<std::string> LengthComplaint(std::string_view text, int length, std::string_view column) {
    // No text has more characters than bytes.
    const auto limit = static_cast<std::size_t>(length);
    if (limit == 0 || text.size() <= limit) return std::nullopt;
    const std::size_t characters = text::CountCharacters(text);
    if (characters <= limit) return std::nullopt;
    std::string complaint = "The field '";
    complaint.append(column).append("' is too small for a text of ").append(std::to_string(characters));
    return complaint.append(" characters: it takes ").append(std::to_string(length));
}

}  // namespace kpTables::functions
