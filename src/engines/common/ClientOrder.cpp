#include "engines/common/ClientOrder.h"

#include <new>
#include <vector>

#include "recordset/RowOrder.h"

namespace kpTables::engines {

void PutInOrder(recordset::RowStore& rows, const sql::ClientOrder& order, const TextOrder& texts, const Limits& limits,
                std::string_view shown) {
    if (order.keys.empty()) return;
    if (rows.Rows() > 1) {
        std::vector<recordset::SortKey> keys;
        for (const sql::ClientOrder::Key& key : order.keys)
            keys.push_back({static_cast<int>(key.column), key.descending});
        try {
            rows.Arrange(recordset::OrderRows(rows, keys, texts, [&] { limits.AskHost(shown); }));
        } catch (const std::bad_alloc&) {
            Limits::RaiseOutOfMemory(shown);
        }
    }
    if (!order.hidden.empty()) rows.DropLastColumns(static_cast<int>(order.hidden.size()));
}

}  // namespace kpTables::engines
