#include "bookkeeping/BalanceChanges.h"

#include <array>
#include <string>

#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kKeys = "年份,月份,pdID";
constexpr int kFirstFigure = 3;
constexpr const char* kFigures =
    "上期库存单价,上期库存数量,上期库存金额,本期入库单价,本期入库数量,本期入库金额,累计入库数量,累计入库金额,"
    "本期出库单价,本期出库数量,本期出库金额,累计出库数量,累计出库金额,本期库存单价,本期库存数量,本期库存金额,备注";

using Key = std::array<std::int32_t, kFirstFigure>;

std::int32_t Whole(const Variant& value) { return value.IsNull() ? 0 : CLng(value); }

Key KeyOf(const Recordset& rows) { return {Whole(rows.GetValue(0)), Whole(rows.GetValue(1)), Whole(rows.GetValue(2))}; }

/// Adds what differs between two rows; a row that is not there is null.
void AddChanges(std::vector<Change>& changes, const Key& key, const Recordset* before, const Recordset* after) {
    const Recordset& any = before ? *before : *after;
    for (int column = kFirstFigure; column < any.FieldCount(); ++column) {
        const Variant from = before ? before->GetValue(column) : Variant::Null();
        const Variant to = after ? after->GetValue(column) : Variant::Null();
        if (!from.Is(to)) changes.push_back({key[0], key[1], key[2], any.FieldAt(column).name, from, to});
    }
}

void Rewind(Recordset& rows) {
    if (rows.RecordCount() > 0) rows.MoveFirst();
}

}  // namespace

BalanceSnapshot::BalanceSnapshot(Connection& book, std::int32_t warehouse, std::int32_t firstMonth,
                                 std::int32_t lastMonth)
    : rows_(book.Execute("Select " + std::string(kKeys) + "," + kFigures +
                         " From 仓库余额表 Where dpID=" + std::to_string(warehouse) + " And 月份 Between " +
                         std::to_string(firstMonth) + " And " + std::to_string(lastMonth) + " Order by " + kKeys)),
      flag_(book.Execute("Select 结帐标志,结帐日期 From 仓库设置 Where dpID=" + std::to_string(warehouse))) {}

std::vector<Change> BalanceSnapshot::ChangesTo(const BalanceSnapshot& later) const {
    std::vector<Change> changes;
    Recordset& before = *rows_;
    Recordset& after = *later.rows_;
    Rewind(before);
    Rewind(after);
    while (!before.Eof() || !after.Eof()) {
        const bool removed = after.Eof() || (!before.Eof() && KeyOf(before) < KeyOf(after));
        const bool added = before.Eof() || (!after.Eof() && KeyOf(after) < KeyOf(before));
        AddChanges(changes, KeyOf(added ? after : before), added ? nullptr : &before, removed ? nullptr : &after);
        if (!added) before.MoveNext();
        if (!removed) after.MoveNext();
    }
    if (flag_->Eof() || later.flag_->Eof()) return changes;
    for (int column = 0; column < flag_->FieldCount(); ++column) {
        const Variant from = flag_->GetValue(column);
        const Variant to = later.flag_->GetValue(column);
        if (!from.Is(to)) changes.push_back({0, 0, std::nullopt, flag_->FieldAt(column).name, from, to});
    }
    return changes;
}

}  // namespace kpTables::bookkeeping
