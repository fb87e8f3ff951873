#include "TestCatalog.h"

#include "sql/Names.h"

namespace kpTables::sql::test {

namespace {

std::vector<CatalogColumn> HeaderColumns() {
    return {{"BillID", Type::Long, true}, {"年份", Type::Short},   {"月份", Type::Short}, {"日子", Type::Short},
            {"单据编号", Type::Text},     {"dpID", Type::Long},    {"ksID", Type::Long},  {"pjID", Type::Long},
            {"审核员", Type::Text},       {"审核日期", Type::Date}};
}

std::vector<CatalogColumn> LineColumns() {
    return {{"BillID", Type::Long}, {"pdID", Type::Long},     {"单价", Type::Currency},
            {"数量", Type::Double}, {"金额", Type::Currency}, {"经手人", Type::Text}};
}

}  // namespace

TestCatalog::TestCatalog() {
    // T has a column or two of every type.
    tables_ = {
        {"T",
         {{"id", Type::Long, true},
          {"s", Type::Short},
          {"l", Type::Long},
          {"d", Type::Double},
          {"c", Type::Currency},
          {"c2", Type::Currency},
          {"b", Type::Boolean},
          {"b2", Type::Boolean},
          {"t", Type::Text},
          {"t2", Type::Text},
          {"at", Type::Date},
          {"at2", Type::Date},
          {"y", Type::Short},
          {"m", Type::Short},
          {"n", Type::Short}}},
        {"入库目录", HeaderColumns()},
        {"入库记录", LineColumns()},
        {"出库目录", HeaderColumns()},
        {"出库记录", LineColumns()},
        {"厂商资料", {{"KSID", Type::Long, true}, {"企业名称", Type::Text}}},
        {"仓库设置", {{"dpID", Type::Long, true}, {"仓库名称", Type::Text}, {"结帐标志", Type::Boolean}}},
        {"项目设置", {{"项目ID", Type::Long, true}, {"ClassCode", Type::Text}, {"项目名称", Type::Text}}},
        {"P",
         {{"id", Type::Long, true},
          {"pj", Type::Long},
          {"name", Type::Text},
          {"pj2", Type::Long, false, 0, true, "pj"}}},
        {"R", {{"id", Type::Long, true}, {"more", Type::Long, false, 0, true}}},
        {"Q", {{"id", Type::Long, true}, {"pj2", Type::Text, false, 5}}},
        {"Header", {{"Table", Type::Text}, {"Index", Type::Long}, {"Flag", Type::Text}}},
    };
}

const CatalogTable* TestCatalog::Find(std::string_view table) const {
    for (const auto& candidate : tables_)
        if (SameName(candidate.name, table)) return &candidate;
    return nullptr;
}

}  // namespace kpTables::sql::test
