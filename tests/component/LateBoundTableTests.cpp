// The late-bound table: every member with its parameters.
#include <gtest/gtest.h>

#include <set>

#include "kpTables/CTables.h"
#include "kpTables/LateBound.h"

namespace kpTables::test {
namespace {

using Kind = _CTables::MemberKind;

struct ExpectedMember {
    const char* name;
    Kind kind;
    const char* subsystem;
    const char* signature;
};

const char* const kFrame = "Component frame";
const char* const kMasters = "Master data";
const char* const kBills = "Bills";
const char* const kBalance = "Warehouse balance and month-end closing";
const char* const kReports = "Reports";
const char* const kOperators = "Operators and log";
const char* const kLayouts = "Grid layout and report history";
const char* const kHaulage = "Haulage dispatch and pay";

const ExpectedMember kMembers[] = {
    {"Cnn", Kind::PropertyGet, kFrame, "Cnn() As Connection"},
    {"Cnn", Kind::PropertySet, kFrame, "Cnn(value As Connection)"},
    {"Speciality", Kind::PropertyGet, kFrame, "Speciality() As String"},
    {"Speciality", Kind::PropertyLet, kFrame, "Speciality(value As String)"},
    {"isSQL", Kind::PropertyGet, kFrame, "isSQL() As Boolean"},
    {"isSQL", Kind::PropertyLet, kFrame, "isSQL(value As Boolean)"},

    {"Version", Kind::Method, kFrame, "Version() As String"},
    {"Update", Kind::Method, kFrame, "Update(ProcName As String, TableName As String, ID As Long) As Variant"},
    {"AllTrim", Kind::Method, kFrame, "AllTrim(rStr As String) As String"},
    {"CalcPrice", Kind::Method, kFrame, "CalcPrice(Account As Variant (in/out), Number As Variant (in/out)) As Double"},
    {"Get单据中文日期", Kind::Method, kFrame, "Get单据中文日期(rs As Object) As String"},

    {"Get_Option", Kind::Method, kFrame, "Get_Option(rItem As String) As String"},
    {"Update_Option", Kind::Method, kFrame, "Update_Option(rItem As String, rValue As Variant (in/out))"},
    {"Get_AccInfo", Kind::Method, kFrame, "Get_AccInfo(rWhich As String) As Variant"},
    {"Update_AccInfo", Kind::Method, kFrame, "Update_AccInfo(rWhich As String, rValue As Variant (in/out)) As Boolean"},
    {"Get_BuiltDate", Kind::Method, kFrame, "Get_BuiltDate() As Date"},
    {"Get_CurrentDate", Kind::Method, kFrame, "Get_CurrentDate() As Date"},
    {"Create_NewBook", Kind::Method, kFrame, "Create_NewBook() As Boolean"},
    {"CancCreateBook", Kind::Method, kFrame, "CancCreateBook() As Boolean"},
    {"SetDefaultSFK", Kind::Method, kFrame, "SetDefaultSFK() As Boolean"},
    {"ClearInputRecs", Kind::Method, kFrame, "ClearInputRecs() As Boolean"},
    {"ClearOutputRecs", Kind::Method, kFrame, "ClearOutputRecs() As Boolean"},
    {"ClearCostRecs", Kind::Method, kFrame, "ClearCostRecs() As Boolean"},
    {"SetBnCurrentDate", Kind::Method, kFrame,
     "SetBnCurrentDate(rYear As Integer, rMonth As Integer (in/out)) As Boolean"},

    {"rs厂商分类", Kind::Method, kMasters, "rs厂商分类(rID As Long (optional)) As Recordset"},
    {"rs厂商资料", Kind::Method, kMasters, "rs厂商资料(rID As Long (optional)) As Recordset"},
    {"rs客户分类", Kind::Method, kMasters, "rs客户分类(rID As Long (optional)) As Recordset"},
    {"rs客户资料", Kind::Method, kMasters, "rs客户资料(rID As Long (optional)) As Recordset"},
    {"rs项目分类", Kind::Method, kMasters, "rs项目分类(rID As Long (optional)) As Recordset"},
    {"rs项目资料", Kind::Method, kMasters, "rs项目资料(rID As Long (optional)) As Recordset"},
    {"rs部门分类", Kind::Method, kMasters, "rs部门分类(rID As Long (optional)) As Recordset"},
    {"rs雇员资料", Kind::Method, kMasters, "rs雇员资料(rID As Long (optional)) As Recordset"},
    {"rs仓库列表", Kind::Method, kMasters, "rs仓库列表(rMonth As Integer (optional)) As Recordset"},
    {"rs厂商列表", Kind::Method, kMasters, "rs厂商列表(rMonth As Integer (optional)) As Recordset"},
    {"rs客户列表", Kind::Method, kMasters, "rs客户列表(rMonth As Integer (optional)) As Recordset"},
    {"rs项目列表", Kind::Method, kMasters, "rs项目列表(rMonth As Integer (optional)) As Recordset"},
    {"Get厂商名称", Kind::Method, kMasters, "Get厂商名称(rksID As Long) As String"},
    {"Get客户名称", Kind::Method, kMasters, "Get客户名称(rksID As Long) As String"},
    {"Get项目名称", Kind::Method, kMasters, "Get项目名称(rpjID As Long) As String"},
    {"Get项目编号", Kind::Method, kMasters, "Get项目编号(rpjID As Long) As String"},
    {"Get仓库名称", Kind::Method, kMasters, "Get仓库名称(dpID As Long) As String"},
    {"Get厂商ID", Kind::Method, kMasters, "Get厂商ID(r厂商名称 As String) As Long"},
    {"Get客户ID", Kind::Method, kMasters, "Get客户ID(r客户名称 As String) As Long"},
    {"Get仓库ID", Kind::Method, kMasters, "Get仓库ID(DepotName As String) As Long"},
    {"Get仓库数量", Kind::Method, kMasters, "Get仓库数量() As Integer"},
    {"Get收付款方式数量", Kind::Method, kMasters, "Get收付款方式数量() As Integer"},
    {"Del_客户分类", Kind::Method, kMasters, "Del_客户分类(rClassID As Long) As Boolean"},
    {"Del_厂商分类", Kind::Method, kMasters, "Del_厂商分类(rClassID As Long) As Boolean"},
    {"Del_项目分类", Kind::Method, kMasters, "Del_项目分类(rClassID As Long) As Boolean"},

    {"rs商品分类", Kind::Method, kMasters, "rs商品分类(rClass As String (optional)) As Recordset"},
    {"rs商品资料", Kind::Method, kMasters,
     "rs商品资料(rpdID As Long (optional), rClass As String (optional), rOrder As String (optional)) As Recordset"},
    {"rs生产厂家", Kind::Method, kMasters, "rs生产厂家() As Recordset"},
    {"rs存放位置", Kind::Method, kMasters, "rs存放位置() As Recordset"},
    {"商品已被使用", Kind::Method, kMasters,
     "商品已被使用(rpdID As Long (in/out), rdpID As Long (in/out, optional)) As Boolean"},
    {"Get商品资料", Kind::Method, kMasters, "Get商品资料(rpdID As Long, rWhich As String) As Variant"},
    {"Get商品分类名称", Kind::Method, kMasters, "Get商品分类名称(rClassCode As String) As String"},
    {"Get商品数量", Kind::Method, kMasters, "Get商品数量(rClassCode As String (optional)) As Integer"},
    {"Get商品ID", Kind::Method, kMasters, "Get商品ID(theName As String) As Long"},
    {"Get客户单价", Kind::Method, kMasters, "Get客户单价(rksID As Long, rpdID As Long, BillDate As Date) As Double"},

    {"rs入库记录", Kind::Method, kBills, "rs入库记录(rdpID As Long (in/out), rpdID As Long (in/out)) As Recordset"},
    {"rs出库记录", Kind::Method, kBills, "rs出库记录(rdpID As Long (in/out), rpdID As Long (in/out)) As Recordset"},
    {"rs单位入库记录", Kind::Method, kBills, "rs单位入库记录(rksID As Long (in/out)) As Recordset"},
    {"rs单位出库记录", Kind::Method, kBills, "rs单位出库记录(rksID As Long (in/out)) As Recordset"},
    {"rs经手人", Kind::Method, kBills, "rs经手人(m_Which As String) As Recordset"},
    {"rs交接人", Kind::Method, kBills, "rs交接人(m_Which As String) As Recordset"},
    {"rs包装", Kind::Method, kBills, "rs包装(m_Which As String) As Recordset"},
    {"rs货位", Kind::Method, kBills, "rs货位(m_Which As String) As Recordset"},
    {"Get单据金额", Kind::Method, kBills, "Get单据金额(rBillID As Long, m_Which As String) As Currency"},
    {"Get单据数量", Kind::Method, kBills, "Get单据数量(rBillID As Long, m_Which As String) As Double"},
    {"BillAdulting", Kind::Method, kBills,
     "BillAdulting(rWhich As String (in/out), rBillID As Long (in/out), rAdultor As String (in/out), rAdultDate As "
     "Variant (in/out)) As Boolean"},
    {"Del_单据", Kind::Method, kBills, "Del_单据(BillID As Long, Which As String) As Boolean"},

    {"rs单据列表", Kind::Method, kBills,
     "rs单据列表(rWhich As Variant (in/out), r单据类型 As Variant (in/out), r起始日期 As Variant (in/out), r结束日期 "
     "As Variant (in/out), r起始编号 As Variant (in/out), r结束编号 As Variant (in/out), rdpID As Variant (in/out), "
     "rksID As Variant (in/out), rpjID As Long (in/out), r经手人 As Variant (in/out), r交接人 As Variant (in/out), "
     "r包装 As Variant (in/out), r包装Opr As Variant (in/out), r货位 As Variant (in/out), r货位Opr As Variant "
     "(in/out), r期限 As Variant (in/out), r期限Opr As Variant (in/out), r最小数量 As Variant (in/out), r最大数量 As "
     "Variant (in/out), r最小金额 As Variant (in/out), r最大金额 As Variant (in/out)) As Recordset"},
    {"Get_BillNum", Kind::Method, kBills,
     "Get_BillNum(rdpID As Long, rMonth As Integer, rBillType As String, rWhich As String (in/out)) As Integer"},
    {"GetBillCount", Kind::Method, kBills,
     "GetBillCount(rWhich As String, rKind As String (in/out), rBeginMonth As Integer (in/out), rStartDay As Integer "
     "(in/out), rEndMonth As Integer (in/out), rEndDay As Integer (in/out)) As String"},
    {"GetShiftID", Kind::Method, kBills, "GetShiftID(rBillID As Variant, rWhich As String (in/out)) As Long"},
    {"Get_FromBillID", Kind::Method, kBills, "Get_FromBillID(rBillID As Variant) As Long"},
    {"rsSql单据记录", Kind::Method, kBills,
     "rsSql单据记录(rWhich As String (in/out), r类型 As String (in/out), rdpID As Long (in/out), rksID As Long "
     "(in/out), rpjID As Long (in/out), rGroup As String (in/out), rArray As Variant() (in/out)) As Recordset"},
    {"rsSql查询记录", Kind::Method, kBills,
     "rsSql查询记录(rWhich As String (in/out), r类型 As String (in/out), rdpID As Long (in/out), rksID As Long "
     "(in/out), rpjID As Long (in/out), rArray As Variant() (in/out)) As Recordset"},
    {"Get单据列表", Kind::Method, kBills,
     "Get单据列表(rWhich As String (in/out), r类型 As String (in/out), rdpID As Long (in/out), rksID As Long (in/out), "
     "rpdID As Long (in/out), rArray As Variant() (in/out)) As String"},
    {"Get单据统计", Kind::Method, kBills,
     "Get单据统计(rWhich As String (in/out), r单据名称 As String (in/out), r单据类型 As String (in/out), rdpID As Long "
     "(in/out), rksID As Long (in/out), rpdID As Long (in/out), rArray As Variant() (in/out)) As Integer"},

    {"rs月份列表", Kind::Method, kBalance, "rs月份列表(rDESC As Boolean (optional)) As Recordset"},
    {"Del仓库余额", Kind::Method, kBalance, "Del仓库余额(rdpID As Long) As Boolean"},
    {"rs仓库余额表", Kind::Method, kBalance,
     "rs仓库余额表(rdpID As Long (optional), rMonth As Integer (optional)) As Recordset"},
    {"Del仓库余额表", Kind::Method, kBalance, "Del仓库余额表(rdpID As Long (optional), rMonth As Integer (optional))"},
    {"清理仓库余额表", Kind::Method, kBalance, "清理仓库余额表(rMonth As Integer (in/out), rdpID As Long (optional))"},
    {"商品已经入库", Kind::Method, kBalance,
     "商品已经入库(rpdID As Long (in/out), rdpID As Long (optional)) As Boolean"},
    {"rs仓库余额表期初", Kind::Method, kBalance,
     "rs仓库余额表期初(rMotnh As Integer (optional), rdpID As Long (optional), rInitial As Boolean (optional)) As "
     "Recordset"},
    {"rs余额记录", Kind::Method, kBalance,
     "rs余额记录(rdpID As Long (optional), rMonth As Integer (in/out, optional)) As Recordset"},
    {"CheckBnProduct", Kind::Method, kBalance, "CheckBnProduct(rMonth As Integer)"},
    {"Close_DepotBalance", Kind::Method, kBalance,
     "Close_DepotBalance(rdpID As Long, rMonth As Integer, rCostUsed As Boolean (in/out), rBookCurrentDate As Variant "
     "(in/out), rpgBar As Object (optional)) As Boolean"},
    {"UpdateDepotClosedFlag", Kind::Method, kBalance,
     "UpdateDepotClosedFlag(rdpID As Long (in/out), rDate As Date (in/out), rClosed As Boolean (in/out))"},
    {"isSaled", Kind::Method, kBalance, "isSaled(dpID As Long, Month As Integer) As Boolean"},

    {"Get上期库存", Kind::Method, kBalance,
     "Get上期库存(rdpID As Long, rpdID As Long, rMonth As Integer, What As String) As Double"},
    {"Get本期库存", Kind::Method, kBalance,
     "Get本期库存(rdpID As Long, rpdID As Long, rMonth As Integer, What As String, CostUsed As Boolean (optional)) As "
     "Double"},
    {"Get商品入库", Kind::Method, kBalance,
     "Get商品入库(rdpID As Long, rpdID As Long, rMonth As Integer, What As String, Which As String (optional), isTotal "
     "As Boolean (optional)) As Currency"},
    {"Get商品出库", Kind::Method, kBalance,
     "Get商品出库(rdpID As Long, rpdID As Long, rMonth As Integer, What As String, Which As String (optional), isTotal "
     "As Boolean (optional)) As Currency"},
    {"Get商品库存", Kind::Method, kBalance,
     "Get商品库存(rdpID As Long, rpdID As Long, rMonth As Integer, What As String, CostUsed As Boolean (optional)) As "
     "Double"},
    {"Get商品成本", Kind::Method, kBalance,
     "Get商品成本(rdpID As Long, rpdID As Long, rMonth As String, What As String, isTotal As Boolean (optional)) As "
     "Currency"},

    {"rs单据日期列表", Kind::Method, kReports, "rs单据日期列表() As Recordset"},
    {"rs商品列表", Kind::Method, kReports,
     "rs商品列表(rdpID As Long, rksID As Long, rBeginMonth As Integer, rEndMonth As Integer, rWhere As String, rNo1 As "
     "String (optional), rNo2 As String (optional)) As Recordset"},
    {"rs期初记录", Kind::Method, kReports, "rs期初记录(rdpID As Long, rpdID As Long) As Recordset"},
    {"rs成本记录", Kind::Method, kReports, "rs成本记录(rdpID As Long, rpdID As Long (in/out)) As Recordset"},
    {"rs商品汇总", Kind::Method, kReports,
     "rs商品汇总(rWhich As String, rBeginMonth As Integer, rEndMonth As Integer, rdpID As Long, rksID As Long, rType "
     "As String) As Recordset"},
    {"rs入库扩展列表", Kind::Method, kReports,
     "rs入库扩展列表(rWho As String (in/out), rMonth As Integer (in/out), rdpID As Long (in/out)) As Recordset"},
    {"rs出库扩展列表", Kind::Method, kReports,
     "rs出库扩展列表(rWho As String (in/out), rMonth As Integer (in/out), rdpID As Long (in/out)) As Recordset"},
    {"rs出库扩展合计", Kind::Method, kReports,
     "rs出库扩展合计(rWho As String (in/out), rMonth As Integer (in/out), rdpID As Long (in/out)) As Recordset"},
    {"rs成本汇总", Kind::Method, kReports,
     "rs成本汇总(rBeginMonth As Integer (in/out), rEndMonth As Integer (in/out), rdpID As Long (in/out)) As Recordset"},
    {"rs单位汇总", Kind::Method, kReports,
     "rs单位汇总(rBeginMonth As Integer (in/out), rEndMonth As Integer (in/out), rWhich As String (in/out)) As "
     "Recordset"},
    {"rs日报记录", Kind::Method, kReports,
     "rs日报记录(rdpID As Long (in/out), rksID As Long (in/out), rDate As Date (in/out), rWhich As String (in/out), "
     "rTotal As Boolean (in/out, optional)) As Recordset"},
    {"rs日报列表", Kind::Method, kReports,
     "rs日报列表(rMonth As Integer (in/out), rdpID As Long (in/out)) As Recordset"},
    {"rs项目汇总表", Kind::Method, kReports, "rs项目汇总表(rWhich As String (in/out, optional)) As Recordset"},

    {"rs操作员", Kind::Method, kOperators, "rs操作员(rID As Long (optional)) As Recordset"},
    {"操作员_Append", Kind::Method, kOperators, "操作员_Append(rName As String) As Long"},
    {"操作员_Update", Kind::Method, kOperators, "操作员_Update(rID As Long, rName As String) As Boolean"},
    {"操作权限_Update", Kind::Method, kOperators,
     "操作权限_Update(rID As Long, rRightName As String, rValue As Boolean (in/out)) As Boolean"},
    {"管理仓库_Update", Kind::Method, kOperators, "管理仓库_Update(rID As Long, rdpID As Long (in/out)) As Boolean"},
    {"操作员_Delete", Kind::Method, kOperators, "操作员_Delete(rID As Long) As Boolean"},
    {"操作权限_Clear", Kind::Method, kOperators, "操作权限_Clear(rID As Long) As Boolean"},
    {"GetPassword", Kind::Method, kOperators, "GetPassword(rName As String, rID As Long (optional)) As String"},
    {"Update_Password", Kind::Method, kOperators,
     "Update_Password(rName As String, rPassWord As String (in/out), rID As Long (optional)) As Boolean"},
    {"Clear_Password", Kind::Method, kOperators, "Clear_Password(rID As Long) As Boolean"},
    {"Get操作权限", Kind::Method, kOperators, "Get操作权限(rID As Long, rFieldName As String) As Boolean"},
    {"Get管理仓库", Kind::Method, kOperators, "Get管理仓库(rID As Long) As Long"},
    {"Get操作员", Kind::Method, kOperators, "Get操作员(rID As Long, rFieldName As String) As String"},
    {"AllowDelOperator", Kind::Method, kOperators, "AllowDelOperator(Opr As Long) As Boolean"},
    {"rsLog", Kind::Method, kOperators, "rsLog() As Recordset"},
    {"Delete_LogRecs", Kind::Method, kOperators, "Delete_LogRecs(rMaxRecs As Long) As Boolean"},

    {"Header", Kind::Method, kLayouts,
     "Header(rfg As Object (in/out), rTableName As String (in/out), rFlag As String (in/out, optional), rSetting As "
     "Boolean (optional), isSQL As Boolean (optional)) As Boolean"},
    {"rsHistory", Kind::Method, kLayouts, "rsHistory() As Recordset"},
    {"History_Del", Kind::Method, kLayouts, "History_Del(rID As Long) As Boolean"},
    {"GetHistorySetting", Kind::Method, kLayouts, "GetHistorySetting(rID As Long) As String"},
    {"History_Update", Kind::Method, kLayouts,
     "History_Update(rID As Long (in/out), rCaption As String (in/out), rSetting As String (in/out), rDate As Date "
     "(in/out)) As Long"},

    {"rs工作单列表", Kind::Method, kHaulage,
     "rs工作单列表(r起始日期 As Variant (in/out), r结束日期 As Variant (in/out), r起始编号 As Variant (in/out), "
     "r结束编号 As Variant (in/out), r车牌号 As Variant (in/out), r司机 As Variant (in/out), r跟车人 As Variant "
     "(in/out), r收货款 As Variant (in/out), r收货款Opr As Variant (in/out), r外用车 As Variant (in/out), r违章 As "
     "Variant (in/out), r厂商ID As Variant (in/out), r配送单号 As Variant (in/out), r配送单号Opr As Variant (in/out), "
     "r客户ID As Variant (in/out), r送货地点 As Variant (in/out), rpdID As Variant (in/out), r最小数量 As Variant "
     "(in/out), r最大数量 As Variant (in/out), r最小金额 As Variant (in/out), r最大金额 As Variant (in/out)) As "
     "Recordset"},
    {"rs工资表", Kind::Method, kHaulage,
     "rs工资表(rMonth1 As Integer, rMonth2 As Integer (in/out, optional), rCreate As Boolean (in/out, optional)) As "
     "Recordset"},
    {"Update工资表", Kind::Method, kHaulage,
     "Update工资表(rYear As Integer, rMonth As Integer, rfg As Object (in/out)) As Boolean"},
};

TEST(LateBoundTable, ListsEveryMemberWithItsParameters) {
    const auto members = _CTables::Members();
    ASSERT_EQ(members.size(), std::size(kMembers));
    for (std::size_t i = 0; i < members.size(); ++i) {
        SCOPED_TRACE(kMembers[i].name);
        EXPECT_EQ(members[i].name, kMembers[i].name);
        EXPECT_EQ(members[i].kind, kMembers[i].kind);
        EXPECT_EQ(members[i].subsystem, kMembers[i].subsystem);
        EXPECT_EQ(_CTables::Signature(members[i]), kMembers[i].signature);
        EXPECT_FALSE(members[i].answers.empty());
    }
}

TEST(LateBoundTable, NoMemberTwice) {
    std::set<std::pair<std::string_view, Kind>> seen;
    for (const auto& member : _CTables::Members()) EXPECT_TRUE(seen.emplace(member.name, member.kind).second);
}

TEST(LateBoundTable, FindsByNameAndKind) {
    for (const auto& member : _CTables::Members()) EXPECT_EQ(_CTables::Find(member.name, member.kind), &member);

    const auto* closing = _CTables::Find("close_depotbalance");
    ASSERT_NE(closing, nullptr);
    EXPECT_EQ(closing->name, "Close_DepotBalance");
    EXPECT_EQ(_CTables::Find("GET单据金额"), _CTables::Find("Get单据金额"));
    EXPECT_EQ(_CTables::Find("ISSQL", Kind::PropertyLet)->kind, Kind::PropertyLet);

    EXPECT_EQ(_CTables::Find("isSQL"), nullptr) << "a property is no method";
    EXPECT_EQ(_CTables::Find("Version", Kind::PropertyGet), nullptr);
    EXPECT_EQ(_CTables::Find("Cnn", Kind::PropertyLet), nullptr);
    EXPECT_EQ(_CTables::Find(""), nullptr);
    EXPECT_EQ(_CTables::Find("Version "), nullptr);
    EXPECT_EQ(_CTables::Find("Get_DateSql"), nullptr) << "private to the class";
    EXPECT_EQ(_CTables::Find("Get_NoSql"), nullptr);
    EXPECT_EQ(_CTables::Find("vDbl"), nullptr);
    EXPECT_EQ(_CTables::Find("vCur"), nullptr);
    EXPECT_EQ(_CTables::Find("StockFigure"), nullptr);
}

TEST(LateBoundTable, NamesTypes) {
    using Type = _CTables::ValueType;
    const std::pair<Type, const char*> names[] = {
        {Type::None, ""},
        {Type::Integer, "Integer"},
        {Type::Long, "Long"},
        {Type::Double, "Double"},
        {Type::Currency, "Currency"},
        {Type::Date, "Date"},
        {Type::String, "String"},
        {Type::Boolean, "Boolean"},
        {Type::Variant, "Variant"},
        {Type::Object, "Object"},
        {Type::Recordset, "Recordset"},
        {Type::Connection, "Connection"},
        {Type::VariantArray, "Variant()"},
    };
    for (const auto& [type, name] : names) EXPECT_EQ(_CTables::TypeText(type), name);
}

}  // namespace
}  // namespace kpTables::test
