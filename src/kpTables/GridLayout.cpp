// Column layouts of the host's grids, saved in the table Header.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Fill.h"
#include "kpTables/Numbers.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// The first columns of the table Header; the names are reserved words in one of the dialects.
struct HeaderNames {
    const char* table;
    const char* position;
};

HeaderNames NamesOf(bool isSQL) {
    if (isSQL) return {"TableName", "ColIndex"};
    return {"Table", "Index"};
}

Grid& Required(const GridPtr& grid) {
    if (!grid) Raise(ErrorNumber::ObjectNotSet);
    return *grid;
}

/// Adds a column with a key at the end; answers its index.
std::int32_t AddColumn(Grid& grid, const std::string& key) {
    const std::int32_t added = grid.Cols();
    grid.SetCols(added + 1);
    grid.SetColKey(added, key);
    return added;
}

/// Moves a column to a position, adding columns at the end until there is one.
void MoveColumn(Grid& grid, std::int32_t column, std::int32_t position) {
    while (grid.Cols() <= position) grid.SetCols(grid.Cols() + 1);
    grid.SetColPosition(column, position);
}

void ApplyRow(Grid& grid, Recordset& row, const char* positionName) {
    constexpr std::int32_t kTitleRow = 0;
    const std::string key = Text(row.Fields("colkey").Value());
    const double width = vDbl(row.Fields("Width").Value());
    std::int32_t column = grid.ColIndex(key);
    if (width == 0) {
        // Such a row only retitles and hides a column.
        if (column < 0) return;
    } else if (column < 0) {
        column = AddColumn(grid, key);
    } else {
        const std::int32_t position = CLng(row.Fields(positionName).Value());
        MoveColumn(grid, column, position);
        column = position;
    }
    grid.SetTextMatrix(kTitleRow, column, Text(row.Fields("Header").Value()));
    grid.SetColHidden(column, CBool(row.Fields("Hidden").Value()));
    if (width > 0) grid.SetColWidth(column, width);
}

void SaveLayout(Recordset& layout, const Grid& grid, const HeaderNames& names, const std::string& table,
                const std::string& flag) {
    for (std::int32_t column = 0; column < grid.Cols(); ++column) {
        const std::string key = grid.ColKey(column);
        if (key.empty()) continue;
        layout.AddNew();
        layout.Fields(names.table).SetValue(table);
        layout.Fields(names.position).SetValue(column);
        layout.Fields("Flag").SetValue(flag);
        layout.Fields("colkey").SetValue(key);
        layout.Fields("Header").SetValue(grid.TextMatrix(0, column));
        layout.Fields("Hidden").SetValue(grid.ColHidden(column));
        layout.Fields("Width").SetValue(grid.ColWidth(column));
        layout.Update();
    }
}

}  // namespace

bool CTables::Header(InOut<GridPtr> rfg, InOut<std::string> rTableName, InOut<std::string> rFlag, bool rSetting,
                     bool isSQL) {
    if (rFlag.get().empty()) rFlag = std::string("Default");
    const HeaderNames names = NamesOf(isSQL);
    const auto tableName = "tableName"_gap(names.table);
    const auto table = "table"_gap(rTableName);
    const auto flag = "flag"_gap(rFlag);
    if (rSetting) {
        db::Execute(cnn_,
                    Fill("Delete From Header Where {tableName}='{table}' And Flag='{flag}'", tableName, table, flag));
        const auto rows = db::OpenTable(cnn_, "Header");
        SaveLayout(*rows, Required(rfg), names, rTableName, rFlag);
        rows->Close();
    } else {
        const auto rows = db::OpenText(
            cnn_, Fill("Select * From Header Where {tableName}='{table}' And Flag='{flag}'", tableName, table, flag));
        for (; !rows->Eof(); rows->MoveNext()) ApplyRow(Required(rfg), *rows, names.position);
        rows->Close();
    }
    return false;
}

}  // namespace kpTables
