// The product catalogue: products and their classes, one attribute of one product, ids by text, the last customer
// price.
#include <array>
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Convert.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// How an attribute's field is answered.
enum class Reading {
    Raw,      ///< as it is
    Trimmed,  ///< as trimmed text
    Text,     ///< as text, blanks kept
    Number,   ///< as it is, Null as 0
};

struct Attribute {
    std::string_view name;
    std::string_view field;
    Reading reading;
};

constexpr std::array<Attribute, 25> kAttributes = {{
    {"ID", "pdID", Reading::Raw},
    {"商品名称", "商品名称", Reading::Trimmed},
    {"商品编号", "商品编号", Reading::Trimmed},
    {"生产厂商", "KSID", Reading::Raw},  // the supplier's id, not a name
    {"存放地点", "存放地点", Reading::Trimmed},
    {"ClassCode", "ClassCode", Reading::Trimmed},
    {"输入简码", "输入简码", Reading::Trimmed},
    {"计量单位", "计量单位", Reading::Trimmed},
    {"计价方法", "计价方法", Reading::Trimmed},
    {"规格", "规格", Reading::Trimmed},
    {"型号", "型号", Reading::Trimmed},
    {"进位方法", "进位方法", Reading::Trimmed},
    {"默认单价", "默认单价", Reading::Number},
    {"普通税率", "普通税率", Reading::Number},
    {"增值税率", "增值税率", Reading::Number},
    {"购进单价", "购进单价", Reading::Number},
    {"普购税率", "普购税率", Reading::Number},
    {"增购税率", "增购税率", Reading::Number},
    {"存放位置", "存放位置", Reading::Trimmed},
    {"最低库存", "最低库存", Reading::Number},
    {"最高库存", "最高库存", Reading::Number},
    {"商品条码", "商品条码", Reading::Text},
    {"单位数量", "单位数量", Reading::Number},
    {"分类代码”", "ClassCode", Reading::Text},  // hosts ask with the typographic quote
    {"备注", "备注", Reading::Trimmed},
}};

Variant Read(const Variant& value, Reading reading) {
    switch (reading) {
        case Reading::Raw:
            return value;
        case Reading::Trimmed:
            return Trim(Text(value));
        case Reading::Text:
            return Text(value);
        case Reading::Number:
            break;
    }
    return value.IsNull() ? Variant(std::int16_t{0}) : value;
}

}  // namespace

// Keeps the cache size that the connection gave.
RecordsetPtr CTables::rs商品分类(const std::string& rClass) {
    return db::Execute(cnn_, Fill("Select * from 商品分类 {where} Order by ClassCode",
                                  "where"_gap(TrimmedTextClause("Where ClassCode='{text}'", rClass))));
}

// Only a call with a product's id makes a valid statement; kept for compatibility.
RecordsetPtr CTables::rs商品资料(std::int32_t rpdID, const std::string& rClass, const std::string& rOrder) {
    return db::Query(cnn_, Fill("Select * from 商品设置 Where {ofProduct}{ofClass}{order}",
                                "ofProduct"_gap(IdClause(" pdID={id}", rpdID)),
                                "ofClass"_gap(TrimmedTextClause("And  ClassCode='{text}'", rClass)),
                                "order"_gap(TrimmedTextClause(" Order by {text}", rOrder))));
}

RecordsetPtr CTables::rs生产厂家() {
    return db::Query(cnn_, "Select Distinct 生产厂家 From 商品设置 Order by 生产厂家");
}

RecordsetPtr CTables::rs存放位置() {
    return db::Query(cnn_, "Select Distinct 存放位置 From 商品设置 Order by 存放位置");
}

// Asks about the warehouse alone, twice when its id is above 0; the product takes no part.
bool CTables::商品已被使用(InOut<std::int32_t> /*rpdID*/, InOut<std::int32_t> rdpID) {
    const std::int32_t warehouse = rdpID;
    const auto rows =
        db::Query(cnn_, Fill("Select pdID From 仓库余额表 Where dpID={warehouse}{again}", "warehouse"_gap(warehouse),
                             "again"_gap(IdClause(" And dpID={id}", warehouse))));
    return rows->RecordCount() >= 1;
}

Variant CTables::Get商品资料(std::int32_t rpdID, const std::string& rWhich) {
    const auto product = db::Query(cnn_, Fill("Select * From 商品设置 Where pdID={product}", "product"_gap(rpdID)));
    if (product->Eof()) {
        constexpr std::string_view kNumbers = "单价,税率,库存,数量";
        return kNumbers.find(rWhich) != kNumbers.npos ? Variant(std::int16_t{0}) : Variant("");
    }
    for (const Attribute& each : kAttributes)
        if (rWhich == each.name) return Read(product->Fields(each.field).Value(), each.reading);
    return "";
}

std::string CTables::Get商品分类名称(const std::string& rClassCode) {
    const auto row = db::Query(cnn_, Fill("Select * From 商品分类 Where ClassCode='{class}'", "class"_gap(rClassCode)));
    return row->Eof() ? "" : Text(row->Fields("ClassName").Value());
}

std::int16_t CTables::Get商品数量(const std::string& rClassCode) {
    return Trapped(std::int16_t{0}, [&] {
        const auto products = db::Query(cnn_, Fill("Select * from 商品设置{where}",
                                                   "where"_gap(TextClause(" Where ClassCode='{text}'", rClassCode))));
        return CInt(products->RecordCount());
    });
}

std::int32_t CTables::Get商品ID(const std::string& theName) {
    return Trapped(0, [&] {
        for (const char* column : {"商品条码", "输入简码", "商品编号", "商品名称"}) {
            const auto row = db::Query(cnn_, Fill("Select * From 商品设置 Where {column}='{name}'",
                                                  "column"_gap(column), "name"_gap(theName)));
            if (!row->Eof()) return CLng(row->Fields("pdID").Value());
        }
        return 0;
    });
}

// Ascending and cut to two rows: the price is that of the oldest lines before the date, not of the latest.
double CTables::Get客户单价(std::int32_t rksID, std::int32_t rpdID, Date BillDate) {
    const auto prices =
        db::Query(cnn_, Fill("SELECT TOP 2 R.单价, CDate(L.年份 & '-' & L.月份 & '-' & L.日子) AS 日期 "
                             "FROM (出库目录 AS L INNER JOIN 出库记录 AS R ON L.BillID = R.BillID) "
                             "INNER JOIN 客户资料 AS C ON L.ksID = C.KSID WHERE ((R.pdID={product}) "
                             "AND (C.KSID={customer}) AND CDate(L.年份 & '-' & L.月份 & '-' & L.日子)<'{date}') "
                             "ORDER BY CDate(L.年份 & '-' & L.月份 & '-' & L.日子)",
                             "product"_gap(rpdID), "customer"_gap(rksID), "date"_gap(BillDate)));
    for (; !prices->Eof(); prices->MoveNext()) {
        const Variant price = prices->Fields("单价").Value();
        if (!price.IsNull() && CDbl(price) != 0) return CDbl(price);
    }
    return 0;
}

}  // namespace kpTables
