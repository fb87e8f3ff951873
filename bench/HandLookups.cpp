#include "HandLookups.h"

#include <sqlite3.h>

#include <cmath>
#include <string_view>

#include "kpTables/Convert.h"

namespace kpTables::bench {

namespace {

constexpr double kScale = 10'000;

/// Resets the statement at the end of a call, which releases the lock on the book.
class FoundRow {
public:
    explicit FoundRow(RawStatement& statement) : statement_(statement), found_(statement.Step()) {}
    ~FoundRow() { sqlite3_reset(statement_.Get()); }
    FoundRow(const FoundRow&) = delete;
    FoundRow& operator=(const FoundRow&) = delete;

    bool Found() const noexcept { return found_; }
    bool IsNull(int column) const { return sqlite3_column_type(statement_.Get(), column) == SQLITE_NULL; }
    std::int64_t Whole(int column) const { return sqlite3_column_int64(statement_.Get(), column); }
    double Real(int column) const { return sqlite3_column_double(statement_.Get(), column); }
    std::string_view Text(int column) const {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.Get(), column));
        return {text != nullptr ? text : "", static_cast<std::size_t>(sqlite3_column_bytes(statement_.Get(), column))};
    }

private:
    RawStatement& statement_;
    bool found_;
};

RawStatement ProductColumn(const RawDatabase& database, const std::string& column) {
    return database.Prepare("SELECT " + column + " FROM 商品设置 WHERE pdID = ?1");
}

RawStatement ProductId(const RawDatabase& database, const std::string& column) {
    return database.Prepare("SELECT pdID FROM 商品设置 WHERE " + column + " = ?1");
}

/// Opening, inbound and outbound figure in one statement, which takes the lock on the book once. The plus signs keep
/// SQLite from reading a warehouse's whole month for the sake of one product.
RawStatement StockFigures(const RawDatabase& database, const std::string& opening, const std::string& moved) {
    const auto movement = [&](const std::string& family) {
        return "(SELECT SUM(Rec." + moved + ") FROM " + family + "记录 AS Rec INNER JOIN " + family +
               "目录 AS Lst ON Rec.BillID = Lst.BillID WHERE Rec.pdID = ?2 AND +Lst.dpID = ?1 AND +Lst.月份 = ?3)";
    };
    return database.Prepare("SELECT (SELECT SUM(" + opening +
                            ") FROM 仓库余额表 WHERE pdID = ?2 AND +dpID = ?1 AND +月份 = ?3), " + movement("入库") +
                            ", " + movement("出库"));
}

}  // namespace

HandLookups::HandLookups(const std::string& path)
    : database_(path),
      depotName_(database_.Prepare("SELECT 仓库名称 FROM 仓库设置 WHERE dpID = ?1")),
      attributes_{ProductColumn(database_, "商品名称"), ProductColumn(database_, "计量单位"),
                  ProductColumn(database_, "规格"), ProductColumn(database_, "默认单价"),
                  ProductColumn(database_, "KSID")},
      productIds_{ProductId(database_, "商品条码"), ProductId(database_, "输入简码"), ProductId(database_, "商品编号"),
                  ProductId(database_, "商品名称")},
      quantity_(StockFigures(database_, "上期库存数量", "数量")),
      amount_(StockFigures(database_, "上期库存金额", "除税金额")),
      option_(database_.Prepare("SELECT Discription FROM 系统选项 WHERE Item = ?1")) {
    database_.SetLikeABook();
}

std::string HandLookups::Get仓库名称(std::int32_t dpID) {
    if (dpID == 0) return "全部仓库";
    const FoundRow row(depotName_.Bind(1, std::int64_t{dpID}));
    return row.Found() ? std::string(row.Text(0)) : std::string();
}

Variant HandLookups::Get商品资料(std::int32_t rpdID, const std::string& rWhich) {
    constexpr std::size_t kPrice = 3;
    constexpr std::size_t kSupplier = 4;
    std::size_t which = 0;
    while (which < kAttributes.size() && rWhich != kAttributes[which]) ++which;
    if (which == kAttributes.size()) return "";
    const FoundRow row(attributes_[which].Bind(1, std::int64_t{rpdID}));
    // None of these names is part of the text whose parts give 0 without a product.
    if (!row.Found()) return "";
    if (which < kPrice) return Trim(row.Text(0));
    if (row.IsNull(0)) return which == kSupplier ? Variant::Null() : Variant(std::int16_t{0});
    if (which == kSupplier) return static_cast<std::int32_t>(row.Whole(0));
    return row.Real(0);
}

std::int32_t HandLookups::Get商品ID(const std::string& theName) {
    for (RawStatement& each : productIds_) {
        const FoundRow row(each.Bind(1, std::string_view(theName)));
        if (row.Found()) return static_cast<std::int32_t>(row.Whole(0));
    }
    return 0;
}

double HandLookups::Get本期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What) {
    const bool amount = What == "金额";
    if (rMonth == 0 || (!amount && What != "数量")) return 0;
    RawStatement& figures = amount ? amount_ : quantity_;
    const FoundRow row(figures.Bind(1, std::int64_t{rdpID}).Bind(2, std::int64_t{rpdID}).Bind(3, std::int64_t{rMonth}));
    const auto figure = [&](int column) {
        return amount ? row.Whole(column) : static_cast<std::int64_t>(std::nearbyint(row.Real(column) * kScale));
    };
    return static_cast<double>(figure(0) + figure(1) - figure(2)) / kScale;
}

std::string HandLookups::Get_Option(const std::string& rItem) {
    const FoundRow row(option_.Bind(1, std::string_view(rItem)));
    return row.Found() ? std::string(Trim(row.Text(0))) : std::string();
}

}  // namespace kpTables::bench
