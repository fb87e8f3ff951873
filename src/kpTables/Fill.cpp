#include "kpTables/Fill.h"

namespace kpTables {

std::string JoinTemplate(const TemplatePieces& cut, const std::string_view* values) {
    const std::span pieces(cut.pieces.data(), cut.count);
    std::size_t size = 0;
    for (const auto& each : pieces) size += each.length + values[each.gap].size();
    std::string joined(size, '\0');
    char* at = joined.data();
    for (const auto& each : pieces) {
        at = std::copy_n(cut.text.data() + each.begin, each.length, at);
        at = std::copy_n(values[each.gap].data(), values[each.gap].size(), at);
    }
    return joined;
}

}  // namespace kpTables
