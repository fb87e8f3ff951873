// Reference lists and lookups: warehouses, suppliers, customers, projects, departments, employees and their classes.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// The row with an id, or for an id below 1 the whole table in order.
RecordsetPtr ById(const ConnectionPtr& cnn, std::string_view table, std::string_view key, std::int32_t id,
                  std::string_view order = "ClassCode") {
    if (id < 1)
        return db::Query(cnn, Fill("Select * From {table} Order by {order}", "table"_gap(table), "order"_gap(order)));
    return db::Query(cnn,
                     Fill("Select * From {table} Where {key}={id}", "table"_gap(table), "key"_gap(key), "id"_gap(id)));
}

/// The field of a query's first row as text, or "" when there is no row; Null is "".
std::string TextOf(const ConnectionPtr& cnn, const std::string& select, std::string_view field) {
    const auto row = db::Query(cnn, select);
    return row->RecordCount() > 0 ? Text(row->Fields(field).Value()) : "";
}

/// The id in a query's first row, or absent when there is no row.
std::int32_t IdOf(const ConnectionPtr& cnn, const std::string& select, std::string_view field, std::int32_t absent) {
    const auto row = db::Query(cnn, select);
    return row->RecordCount() > 0 ? CLng(row->Fields(field).Value()) : absent;
}

/// A count as a 16-bit number; error 6 above 32767.
std::int16_t CountOf(const ConnectionPtr& cnn, std::string_view select) {
    return CInt(db::Query(cnn, select)->RecordCount());
}

bool DeleteClass(const ConnectionPtr& cnn, std::string_view table, std::int32_t id) {
    return Done(
        [&] { db::Execute(cnn, Fill("Delete From {table} Where ClassID={id}", "table"_gap(table), "id"_gap(id))); });
}

/// Partners with a bill in the month; only month 0 means all of them.
RecordsetPtr PartnersOfMonth(const ConnectionPtr& cnn, std::string_view table, std::string_view headers,
                             std::int16_t month) {
    if (month == 0) return db::Query(cnn, Fill("Select * From {table} Order by ksID", "table"_gap(table)));
    return db::Query(cnn, Fill("Select * From {table} Where ksID in (Select ksID From {headers} Where 月份={month}) "
                               "Order by ClassCode,ksID",
                               "table"_gap(table), "headers"_gap(headers), "month"_gap(month)));
}

}  // namespace

RecordsetPtr CTables::rs厂商分类(std::int32_t rID) { return ById(cnn_, "厂商分类", "ClassID", rID); }
RecordsetPtr CTables::rs厂商资料(std::int32_t rID) { return ById(cnn_, "厂商资料", "ksID", rID); }
RecordsetPtr CTables::rs客户分类(std::int32_t rID) { return ById(cnn_, "客户分类", "ClassID", rID); }
RecordsetPtr CTables::rs客户资料(std::int32_t rID) { return ById(cnn_, "客户资料", "ksID", rID); }
RecordsetPtr CTables::rs项目分类(std::int32_t rID) { return ById(cnn_, "项目分类", "ClassID", rID); }
RecordsetPtr CTables::rs项目资料(std::int32_t rID) {
    return ById(cnn_, "项目设置", "项目ID", rID, "ClassCode,项目编号");
}
RecordsetPtr CTables::rs部门分类(std::int32_t rID) { return ById(cnn_, "部门分类", "ClassID", rID); }
RecordsetPtr CTables::rs雇员资料(std::int32_t rID) { return ById(cnn_, "雇员资料", "雇员ID", rID); }

// Unlike in the other lists of a month, any month below 1 means all, and the cache size stays as it is; kept for
// compatibility.
RecordsetPtr CTables::rs仓库列表(std::int16_t rMonth) {
    if (rMonth < 1) return db::Execute(cnn_, "Select * From 仓库设置 order by dpID");
    return db::Execute(
        cnn_, Fill("Select Distinct dpID From 仓库余额表 Where 月份={month} Order by dpID", "month"_gap(rMonth)));
}

RecordsetPtr CTables::rs厂商列表(std::int16_t rMonth) { return PartnersOfMonth(cnn_, "厂商资料", "入库目录", rMonth); }
RecordsetPtr CTables::rs客户列表(std::int16_t rMonth) { return PartnersOfMonth(cnn_, "客户资料", "出库目录", rMonth); }

RecordsetPtr CTables::rs项目列表(std::int16_t rMonth) {
    if (rMonth == 0) return db::Query(cnn_, "Select * From 项目设置 Order by 项目ID");
    return db::Query(cnn_,
                     Fill("Select * From 项目设置 Where (项目ID in (Select 项目ID From 入库目录 Where 月份={month})) "
                          "or (项目ID in (Select 项目ID From 出库目录 Where 月份={month})) Order by ClassCode,ksID",
                          "month"_gap(rMonth)));
}

std::string CTables::Get厂商名称(std::int32_t rksID) {
    return TextOf(cnn_, Fill("Select * From 厂商资料 Where ksID={id}", "id"_gap(rksID)), "企业名称");
}
std::string CTables::Get客户名称(std::int32_t rksID) {
    return TextOf(cnn_, Fill("Select * From 客户资料 Where ksID={id}", "id"_gap(rksID)), "企业名称");
}
std::string CTables::Get项目名称(std::int32_t rpjID) {
    return TextOf(cnn_, Fill("Select * From 项目设置 Where 项目ID={id}", "id"_gap(rpjID)), "项目名称");
}
std::string CTables::Get项目编号(std::int32_t rpjID) {
    return TextOf(cnn_, Fill("Select * From 项目设置 Where 项目ID={id}", "id"_gap(rpjID)), "项目编号");
}
std::string CTables::Get仓库名称(std::int32_t dpID) {
    if (dpID == 0) return "全部仓库";
    return TextOf(cnn_, Fill("Select 仓库名称 From 仓库设置 Where dpID={id}", "id"_gap(dpID)), "仓库名称");
}

// The full-width sign of equality belongs to these two texts.
std::int32_t CTables::Get厂商ID(const std::string& r厂商名称) {
    return IdOf(cnn_, Fill("Select * From 厂商资料 Where 单位名称＝'{name}'", "name"_gap(r厂商名称)), "KSID", 0);
}
std::int32_t CTables::Get客户ID(const std::string& r客户名称) {
    return IdOf(cnn_, Fill("Select * From 客户资料 Where 单位名称＝'{name}'", "name"_gap(r客户名称)), "KSID", 0);
}
std::int32_t CTables::Get仓库ID(const std::string& DepotName) {
    if (DepotName == "全部仓库" || DepotName == "全部") return 0;
    return IdOf(cnn_, Fill("Select * From 仓库设置 Where 仓库名称='{name}'", "name"_gap(DepotName)), "dpID", -1);
}

std::int16_t CTables::Get仓库数量() { return CountOf(cnn_, "Select * from 仓库设置"); }
std::int16_t CTables::Get收付款方式数量() {
    return Trapped(std::int16_t{0}, [&] { return CountOf(cnn_, "Select * From 收付款方式"); });
}

bool CTables::Del_客户分类(std::int32_t rClassID) { return DeleteClass(cnn_, "客户分类", rClassID); }
bool CTables::Del_厂商分类(std::int32_t rClassID) { return DeleteClass(cnn_, "厂商分类", rClassID); }
bool CTables::Del_项目分类(std::int32_t rClassID) { return DeleteClass(cnn_, "项目分类", rClassID); }

}  // namespace kpTables
