#include "bookkeeping/MasterTables.h"

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kWarehouseNames[] = {"仓库名称"};
constexpr const char* kPartnerNames[] = {"单位名称", "企业名称"};
// In the order of Get商品ID.
constexpr const char* kProductNames[] = {"商品条码", "输入简码", "商品编号", "商品名称"};
constexpr const char* kProjectNames[] = {"项目编号", "项目名称"};
constexpr const char* kEmployeeNames[] = {"姓名"};
constexpr const char* kPaymentNames[] = {"收付款方式"};
constexpr const char* kClassNames[] = {"ClassCode", "ClassName"};

// In the order of MasterKind.
constexpr MasterTable kTables[] = {
    {MasterKind::Warehouse, "warehouse", "warehouses", "仓库设置", "dpID", "", "仓库名称", kWarehouseNames},
    {MasterKind::Supplier, "supplier", "suppliers", "厂商资料", "KSID", "", "企业名称", kPartnerNames},
    {MasterKind::Customer, "customer", "customers", "客户资料", "KSID", "", "企业名称", kPartnerNames},
    {MasterKind::Product, "product", "products", "商品设置", "pdID", "商品编号", "商品名称", kProductNames},
    {MasterKind::Project, "project", "projects", "项目设置", "项目ID", "项目编号", "项目名称", kProjectNames},
    {MasterKind::Employee, "employee", "employees", "雇员资料", "雇员ID", "", "姓名", kEmployeeNames},
    {MasterKind::Payment, "payment method", "payment methods", "收付款方式", "", "", "收付款方式", kPaymentNames},
    {MasterKind::SupplierClass, "supplier class", "supplier classes", "厂商分类", "ClassID", "ClassCode", "ClassName",
     kClassNames},
    {MasterKind::CustomerClass, "customer class", "customer classes", "客户分类", "ClassID", "ClassCode", "ClassName",
     kClassNames},
    {MasterKind::ProjectClass, "project class", "project classes", "项目分类", "ClassID", "ClassCode", "ClassName",
     kClassNames},
    {MasterKind::DepartmentClass, "department", "departments", "部门分类", "ClassID", "ClassCode", "ClassName",
     kClassNames},
    {MasterKind::ProductClass, "product class", "product classes", "商品分类", "", "ClassCode", "ClassName",
     kClassNames},
};

}  // namespace

const MasterTable& TableOf(MasterKind kind) { return kTables[static_cast<std::size_t>(kind)]; }

}  // namespace kpTables::bookkeeping
