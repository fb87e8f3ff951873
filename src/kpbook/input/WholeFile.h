// All that a source gives.
#pragma once

#include <cstddef>
#include <string>

namespace kpTables::kpbook::input {

/// read: reads the next bytes into a buffer, at most a size; returns their number, 0 at the end.
template <class Source>
std::string WholeOf(Source&& read) {
    constexpr std::size_t kPiece = 1 << 16;
    std::string text;
    for (std::size_t count = 1; count > 0;) {
        const auto size = text.size();
        text.resize(size + kPiece);
        count = read(text.data() + size, kPiece);
        text.resize(size + count);
    }
    return text;
}

}  // namespace kpTables::kpbook::input
