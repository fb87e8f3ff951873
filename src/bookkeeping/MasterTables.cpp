#include "bookkeeping/MasterTables.h"

#include "kpTables/text/Message.h"

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
    {MasterKind::Warehouse, Translatable("warehouse"), Translatable("warehouses"), "仓库设置", "dpID", "", "仓库名称",
     kWarehouseNames},
    {MasterKind::Supplier, Translatable("supplier"), Translatable("suppliers"), "厂商资料", "KSID", "", "企业名称",
     kPartnerNames},
    {MasterKind::Customer, Translatable("customer"), Translatable("customers"), "客户资料", "KSID", "", "企业名称",
     kPartnerNames},
    {MasterKind::Product, Translatable("product"), Translatable("products"), "商品设置", "pdID", "商品编号", "商品名称",
     kProductNames},
    {MasterKind::Project, Translatable("project"), Translatable("projects"), "项目设置", "项目ID", "项目编号",
     "项目名称", kProjectNames},
    {MasterKind::Employee, Translatable("employee"), Translatable("employees"), "雇员资料", "雇员ID", "", "姓名",
     kEmployeeNames},
    {MasterKind::Payment, Translatable("payment method"), Translatable("payment methods"), "收付款方式", "", "",
     "收付款方式", kPaymentNames},
    {MasterKind::SupplierClass, Translatable("supplier class"), Translatable("supplier classes"), "厂商分类", "ClassID",
     "ClassCode", "ClassName", kClassNames},
    {MasterKind::CustomerClass, Translatable("customer class"), Translatable("customer classes"), "客户分类", "ClassID",
     "ClassCode", "ClassName", kClassNames},
    {MasterKind::ProjectClass, Translatable("project class"), Translatable("project classes"), "项目分类", "ClassID",
     "ClassCode", "ClassName", kClassNames},
    {MasterKind::DepartmentClass, Translatable("department"), Translatable("departments"), "部门分类", "ClassID",
     "ClassCode", "ClassName", kClassNames},
    {MasterKind::ProductClass, Translatable("product class"), Translatable("product classes"), "商品分类", "",
     "ClassCode", "ClassName", kClassNames},
};

}  // namespace

const MasterTable& TableOf(MasterKind kind) { return kTables[static_cast<std::size_t>(kind)]; }

}  // namespace kpTables::bookkeeping
