#include "sql/Names.h"

#include <algorithm>

#include "text/Ascii.h"

namespace kpTables::sql {

bool SameName(std::string_view a, std::string_view b) noexcept { return text::EqualsIgnoringCase(a, b); }

std::string FoldedName(std::string_view name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), text::Lower);
    return folded;
}

}  // namespace kpTables::sql
