// Single answers through a wrapper around SQLite, with the texts that the component composes.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Cell.h"
#include "kpTables/Convert.h"
#include "kpTables/Variant.h"

namespace kpTables::bench {

/// The same answers as the members of CTables of the same names; Get商品资料 only for the attributes of HandLookups.
template <class Database>
class ComposedLookups {
public:
    explicit ComposedLookups(const std::string& path) : database_(path) { database_.Run("PRAGMA cache_size = -16384"); }

    /// From now on every text is also added to texts.
    void Record(std::vector<std::string>& texts) { recorded_ = &texts; }

    std::string Get仓库名称(std::int32_t dpID) {
        if (dpID == 0) return "全部仓库";
        return TextOf(First("Select 仓库名称 From 仓库设置 Where dpID=" + std::to_string(dpID), "仓库名称"));
    }

    Variant Get商品资料(std::int32_t rpdID, const std::string& rWhich) {
        const bool isPrice = rWhich == "默认单价";
        const bool isSupplier = rWhich == "生产厂商";
        const Cell cell =
            First("Select * From 商品设置 Where pdID=" + std::to_string(rpdID), isSupplier ? "KSID" : rWhich.c_str());
        if (std::holds_alternative<NoRow>(cell)) return "";
        if (!isPrice && !isSupplier) return TextOf(cell);
        if (std::holds_alternative<NullCell>(cell)) return isSupplier ? Variant::Null() : Variant(std::int16_t{0});
        if (isSupplier) return static_cast<std::int32_t>(Number(cell));
        return Number(cell);
    }

    std::int32_t Get商品ID(const std::string& theName) {
        for (const char* column : {"商品条码", "输入简码", "商品编号", "商品名称"}) {
            const Cell id = First(std::string("Select * From 商品设置 Where ") + column + "='" + theName + "'", "pdID");
            if (!std::holds_alternative<NoRow>(id)) return static_cast<std::int32_t>(Number(id));
        }
        return 0;
    }

    double Get本期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What) {
        const std::string month = std::to_string(rMonth);
        const std::string depot = std::to_string(rdpID);
        const std::string product = std::to_string(rpdID);
        const char* column = What.c_str();
        const double scale = What == "金额" ? 1 : kScale;
        const auto figure = [&](const Cell& cell) { return std::nearbyint(Number(cell) * scale); };
        const double opening = figure(
            First("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
                  "bn.月份=" +
                      month + " And bn.dpID=" + depot + " And bn.pdID=" + product,
                  column));
        const auto movement = [&](const std::string& kind) {
            return figure(First(
                "SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS "
                "合计 FROM " +
                    kind + "记录 AS Rec INNER JOIN " + kind +
                    "目录 AS Lst ON Rec.BillID = Lst.BillID Where  Lst.月份=" + month + " And Lst.dpID=" + depot +
                    " And Rec.pdID=" + product,
                column));
        };
        const double inbound = movement("入库");
        return (opening + inbound - movement("出库")) / kScale;
    }

    std::string Get_Option(const std::string& rItem) {
        return TextOf(First("Select * From 系统选项 Where Item='" + rItem + "'", "Discription"));
    }

private:
    static constexpr double kScale = 10'000;

    Cell First(const std::string& text, const char* column) {
        if (recorded_ != nullptr) recorded_->push_back(text);
        return database_.First(text, column);
    }
    static std::string TextOf(const Cell& cell) {
        const std::string* text = std::get_if<std::string>(&cell);
        return text != nullptr ? std::string(Trim(*text)) : std::string();
    }
    static double Number(const Cell& cell) {
        if (const std::int64_t* whole = std::get_if<std::int64_t>(&cell)) return static_cast<double>(*whole);
        if (const double* real = std::get_if<double>(&cell)) return *real;
        const std::string* text = std::get_if<std::string>(&cell);
        return text != nullptr ? std::stod(*text) : 0;
    }

    Database database_;
    std::vector<std::string>* recorded_ = nullptr;
};

}  // namespace kpTables::bench
