#include "Copies.h"

#include <sqlite3.h>

namespace kpTables::bench {

void Copies::Add(sqlite3_stmt* row, int column) {
    switch (sqlite3_column_type(row, column)) {
        case SQLITE_INTEGER: {
            const sqlite3_int64 value = sqlite3_column_int64(row, column);
            Append(&value, sizeof value);
            break;
        }
        case SQLITE_FLOAT: {
            const double value = sqlite3_column_double(row, column);
            Append(&value, sizeof value);
            break;
        }
        case SQLITE_TEXT: {
            const unsigned char* text = sqlite3_column_text(row, column);
            const int length = sqlite3_column_bytes(row, column);
            Append(&length, sizeof length);
            Append(text, static_cast<std::size_t>(length));
            textBytes_ += length;
            break;
        }
        default:
            break;
    }
}

void Copies::Append(const void* bytes, std::size_t count) {
    constexpr std::size_t kBlock = 1 << 20;
    if (blocks_.empty() || blocks_.back().size() + count > kBlock) {
        blocks_.emplace_back().reserve(kBlock);
    }
    const char* first = static_cast<const char*>(bytes);
    blocks_.back().insert(blocks_.back().end(), first, first + count);
}

}  // namespace kpTables::bench
