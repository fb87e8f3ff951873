// Findings and changes of balance rows as tables show them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "kpTables/Connection.h"
#include "kpTables/MemoryRecordset.h"
#include "kpbook/GlobalOptions.h"

namespace kpTables::kpbook::commands {

/// Names of warehouses and products by id.
class MasterNames {
public:
    /// Knows no names.
    MasterNames() = default;
    explicit MasterNames(Connection& book);
    /// The name; of an id without a row, or without a name, the id as text; Null without an id.
    Variant Warehouse(std::optional<std::int32_t> id) const;
    Variant Product(std::optional<std::int32_t> id) const;

private:
    using Names = std::map<std::int32_t, std::string>;
    static Names Read(Connection& book, const std::string& query);

    Names warehouses_;
    Names products_;
};

/// A table with a figure a row: five columns say whose it is (仓库, 年份, 月份, pdID, 商品), and three texts follow,
/// with these headings.
std::shared_ptr<MemoryRecordset> FigureTable(const char* first, const char* second, const char* third,
                                             OutputFormat format);

/// "东库 2004-1"; without a year "东库 month 1".
std::string MonthLabel(const std::string& warehouse, std::int32_t year, std::int32_t month);

}  // namespace kpTables::kpbook::commands
