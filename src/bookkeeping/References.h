// Where rows of a book refer to master rows.
#pragma once

#include "kpTables/bookkeeping/Masters.h"

namespace kpTables::bookkeeping {

/// What a column keeps of the master row.
enum class ReferenceBy {
    Id,
    IdOrNone,  ///< Null and 0 stand for none
    Code,      ///< of a class; "" stands for none
    Name,
};

/// A column whose values mean master rows.
struct Reference {
    const char* table;
    const char* column;
    MasterKind master;
    ReferenceBy by;
    bool checked;  ///< a value without a master row is a finding of CheckBook
};

inline constexpr Reference kReferences[] = {
    {"仓库余额表", "dpID", MasterKind::Warehouse, ReferenceBy::Id, true},
    {"仓库余额表", "pdID", MasterKind::Product, ReferenceBy::Id, true},
    {"入库目录", "dpID", MasterKind::Warehouse, ReferenceBy::Id, true},
    {"出库目录", "dpID", MasterKind::Warehouse, ReferenceBy::Id, true},
    {"成本目录", "dpID", MasterKind::Warehouse, ReferenceBy::Id, true},
    {"入库记录", "dpID", MasterKind::Warehouse, ReferenceBy::Id, true},
    {"出库记录", "dpID", MasterKind::Warehouse, ReferenceBy::Id, true},
    {"入库记录", "pdID", MasterKind::Product, ReferenceBy::Id, true},
    {"出库记录", "pdID", MasterKind::Product, ReferenceBy::Id, true},
    {"成本记录", "pdID", MasterKind::Product, ReferenceBy::Id, true},
    {"入库目录", "ksID", MasterKind::Supplier, ReferenceBy::IdOrNone, true},
    {"出库目录", "ksID", MasterKind::Customer, ReferenceBy::IdOrNone, true},
    {"入库目录", "pjID", MasterKind::Project, ReferenceBy::IdOrNone, true},
    {"出库目录", "pjID", MasterKind::Project, ReferenceBy::IdOrNone, true},
    {"商品设置", "KSID", MasterKind::Supplier, ReferenceBy::IdOrNone, true},
    {"项目设置", "ksID", MasterKind::Customer, ReferenceBy::IdOrNone, true},
    {"入库记录", "仓库", MasterKind::Warehouse, ReferenceBy::IdOrNone, false},
    {"出库记录", "仓库", MasterKind::Warehouse, ReferenceBy::IdOrNone, false},
    {"仓库盘点表", "dpID", MasterKind::Warehouse, ReferenceBy::IdOrNone, false},
    {"销售汇总目录", "dpID", MasterKind::Warehouse, ReferenceBy::IdOrNone, false},
    {"操作员", "dpID", MasterKind::Warehouse, ReferenceBy::IdOrNone, false},
    {"仓库盘点表", "pdID", MasterKind::Product, ReferenceBy::IdOrNone, false},
    {"派遣记录", "pdID", MasterKind::Product, ReferenceBy::IdOrNone, false},
    {"派遣记录", "厂商ID", MasterKind::Supplier, ReferenceBy::IdOrNone, false},
    {"派遣记录", "客户ID", MasterKind::Customer, ReferenceBy::IdOrNone, false},
    {"派遣目录", "部门ID", MasterKind::DepartmentClass, ReferenceBy::IdOrNone, false},
    {"厂商资料", "ClassCode", MasterKind::SupplierClass, ReferenceBy::Code, false},
    {"客户资料", "ClassCode", MasterKind::CustomerClass, ReferenceBy::Code, false},
    {"项目设置", "ClassCode", MasterKind::ProjectClass, ReferenceBy::Code, false},
    {"雇员资料", "ClassCode", MasterKind::DepartmentClass, ReferenceBy::Code, false},
    {"商品设置", "ClassCode", MasterKind::ProductClass, ReferenceBy::Code, false},
    {"入库记录", "经手人", MasterKind::Employee, ReferenceBy::Name, false},
    {"出库记录", "经手人", MasterKind::Employee, ReferenceBy::Name, false},
    {"派遣目录", "司机", MasterKind::Employee, ReferenceBy::Name, false},
    {"派遣目录", "跟车人", MasterKind::Employee, ReferenceBy::Name, false},
    {"工资表", "姓名", MasterKind::Employee, ReferenceBy::Name, false},
};

}  // namespace kpTables::bookkeeping
