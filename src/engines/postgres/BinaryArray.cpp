#include "engines/postgres/BinaryArray.h"

namespace kpTables::engines::postgres {

std::string_view ArrayName(ServerType element) noexcept {
    switch (element) {
        case kInteger2:
            return "smallint[]";
        case kInteger4:
            return "integer[]";
        case kInteger8:
            return "bigint[]";
        case kTransaction:
            return "xid[]";
        case kReal8:
            return "float8[]";
        case kTimestamp:
            return "timestamp[]";
        default:
            return "bpchar[]";
    }
}

void BinaryArray::Cut(std::size_t size) noexcept {
    if (size >= starts_.size()) return;
    cells_.resize(starts_[size]);
    starts_.resize(size);
}

std::string BinaryArray::Slice(std::size_t first, std::size_t count) const {
    const std::size_t begin = starts_[first];
    const std::size_t end = first + count < starts_.size() ? starts_[first + count] : cells_.size();
    return ArrayOf(element_, std::string_view(cells_).substr(begin, end - begin), count);
}

std::string ArrayOf(ServerType element, std::string_view cells, std::size_t count) {
    constexpr std::size_t kHead = 20;
    std::string bytes;
    bytes.reserve(kHead + cells.size());
    AppendWhole(bytes, std::int32_t{1});  // dimensions
    AppendWhole(bytes, std::int32_t{1});  // there may be Nulls
    AppendWhole(bytes, static_cast<std::uint32_t>(element));
    AppendWhole(bytes, static_cast<std::int32_t>(count));
    AppendWhole(bytes, std::int32_t{1});  // the first index
    return bytes.append(cells);
}

}  // namespace kpTables::engines::postgres
