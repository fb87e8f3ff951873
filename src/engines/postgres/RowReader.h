// The rows that the server sends, as typed cells.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "engines/common/Limits.h"
#include "engines/postgres/Database.h"
#include "recordset/RowStore.h"

namespace kpTables::engines::postgres {

/// A whole number whose bytes come in network order.
template <class Whole>
Whole WholeOf(std::string_view bytes) noexcept {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Whole) && i < bytes.size(); ++i) {
        value = value << 8U | static_cast<unsigned char>(bytes[i]);
    }
    return static_cast<Whole>(value);
}

/// Runs a query, handing each of its rows to the sink; the answer has the types of its columns.
using Query = std::function<void(const RowSink& sink)>;

/// All rows of the query. A field whose type is Empty gets that of the server's column. shown: the text for messages.
std::unique_ptr<recordset::RowStore> ReadRows(const Query& query, recordset::FieldsPtr fields, std::string_view shown,
                                              const engines::Limits& limits);

}  // namespace kpTables::engines::postgres
