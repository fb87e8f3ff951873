// The late-bound table: one row a member.
#include <utility>
#include <vector>

#include "kpTables/LateBoundMember.h"

namespace kpTables {
namespace {

using namespace latebound;

constexpr std::string_view kFrame = "Component frame";
constexpr std::string_view kMasters = "Master data";
constexpr std::string_view kBills = "Bills";
constexpr std::string_view kBalance = "Warehouse balance and month-end closing";
constexpr std::string_view kReports = "Reports";
constexpr std::string_view kOperators = "Operators and log";
constexpr std::string_view kLayouts = "Grid layout and report history";
constexpr std::string_view kHaulage = "Haulage dispatch and pay";

std::vector<Member> Properties() {
    return {
        MakeMember<Getter<ConnectionPtr>(&CTables::Cnn)>("Cnn", MemberKind::PropertyGet, kFrame,
                                                         "The connection that every statement runs on"),
        MakeMember<Setter<ConnectionPtr>(&CTables::Cnn)>(
            "Cnn", MemberKind::PropertySet, kFrame, "Hands over the connection that every statement runs on", "value"),
        MakeMember<Getter<const std::string&>(&CTables::Speciality)>("Speciality", MemberKind::PropertyGet, kFrame,
                                                                     "A free text of the host's"),
        MakeMember<Setter<const std::string&>(&CTables::Speciality)>("Speciality", MemberKind::PropertyLet, kFrame,
                                                                     "Keeps a free text of the host's", "value"),
        MakeMember<Getter<bool>(&CTables::isSQL)>("isSQL", MemberKind::PropertyGet, kFrame,
                                                  "The dialect: True for SQL Server, False for Jet"),
        MakeMember<Setter<bool>(&CTables::isSQL)>("isSQL", MemberKind::PropertyLet, kFrame,
                                                  "Chooses the dialect: True for SQL Server, False for Jet", "value"),
    };
}

std::vector<Member> Frame() {
    return {
        Method<&CTables::Version>("Version", kFrame, "Major, minor and revision number with nothing between"),
        Method<&CTables::Update>("Update", kFrame, "Raises TableChanged to every listener", "ProcName", "TableName",
                                 "ID"),
        Method<&CTables::AllTrim>("AllTrim", kFrame, "Keeps \"-\", capital letters and Chinese characters", "rStr"),
        Method<&CTables::CalcPrice>("CalcPrice", kFrame, "Amount divided by quantity, 0 without a quantity", "Account",
                                    "Number"),
        Method<&CTables::Get单据中文日期>("Get单据中文日期", kFrame, "Month and day of a bill's row in Chinese", "rs"),
    };
}

std::vector<Member> Settings() {
    return {
        Method<&CTables::Get_Option>("Get_Option", kFrame, "The value of a setting", "rItem"),
        Method<&CTables::Update_Option>("Update_Option", kFrame, "Stores the value of a setting", "rItem", "rValue"),
        Method<&CTables::Get_AccInfo>("Get_AccInfo", kFrame, "One item of the account book information", "rWhich"),
        Method<&CTables::Update_AccInfo>("Update_AccInfo", kFrame,
                                         "Stores an item of the account book information; always False", "rWhich",
                                         "rValue"),
        Method<&CTables::Get_BuiltDate>("Get_BuiltDate", kFrame, "The date on which the book was set up"),
        Method<&CTables::Get_CurrentDate>("Get_CurrentDate", kFrame, "The book's current date"),
        Method<&CTables::Create_NewBook>("Create_NewBook", kFrame, "Gives a new book its name and its date"),
        Method<&CTables::CancCreateBook>("CancCreateBook", kFrame, "Blanks the current date; always False"),
        Method<&CTables::SetDefaultSFK>("SetDefaultSFK", kFrame, "Fills an empty table of payment methods"),
        Method<&CTables::ClearInputRecs>("ClearInputRecs", kFrame, "Deletes all inbound bills"),
        Method<&CTables::ClearOutputRecs>("ClearOutputRecs", kFrame, "Deletes all outbound bills"),
        Method<&CTables::ClearCostRecs>("ClearCostRecs", kFrame, "Deletes all cost bills"),
        Method<&CTables::SetBnCurrentDate>("SetBnCurrentDate", kFrame, "Moves every balance row to one year and month",
                                           "rYear", "rMonth"),
    };
}

std::vector<Member> References() {
    return {
        Method<&CTables::rs厂商分类>("rs厂商分类", kMasters, "One supplier class (0: all)", "rID?"),
        Method<&CTables::rs厂商资料>("rs厂商资料", kMasters, "One supplier (0: all)", "rID?"),
        Method<&CTables::rs客户分类>("rs客户分类", kMasters, "One customer class (0: all)", "rID?"),
        Method<&CTables::rs客户资料>("rs客户资料", kMasters, "One customer (0: all)", "rID?"),
        Method<&CTables::rs项目分类>("rs项目分类", kMasters, "One project class (0: all)", "rID?"),
        Method<&CTables::rs项目资料>("rs项目资料", kMasters, "One project (0: all)", "rID?"),
        Method<&CTables::rs部门分类>("rs部门分类", kMasters, "One department class (0: all)", "rID?"),
        Method<&CTables::rs雇员资料>("rs雇员资料", kMasters, "One employee (0: all)", "rID?"),
        Method<&CTables::rs仓库列表>("rs仓库列表", kMasters,
                                     "Ids of the warehouses with balance rows in a month (0: all warehouses)",
                                     "rMonth?"),
        Method<&CTables::rs厂商列表>("rs厂商列表", kMasters, "Suppliers with inbound bills in a month (0: all)",
                                     "rMonth?"),
        Method<&CTables::rs客户列表>("rs客户列表", kMasters, "Customers with outbound bills in a month (0: all)",
                                     "rMonth?"),
        Method<&CTables::rs项目列表>("rs项目列表", kMasters, "Projects with bills in a month (0: all)", "rMonth?"),
        Method<&CTables::Get厂商名称>("Get厂商名称", kMasters, "A supplier's company name", "rksID"),
        Method<&CTables::Get客户名称>("Get客户名称", kMasters, "A customer's company name", "rksID"),
        Method<&CTables::Get项目名称>("Get项目名称", kMasters, "A project's name", "rpjID"),
        Method<&CTables::Get项目编号>("Get项目编号", kMasters, "A project's number", "rpjID"),
        Method<&CTables::Get仓库名称>("Get仓库名称", kMasters, "A warehouse's name (0: all warehouses)", "dpID"),
        Method<&CTables::Get厂商ID>("Get厂商ID", kMasters, "The id of the supplier with a unit name, or 0",
                                    "r厂商名称"),
        Method<&CTables::Get客户ID>("Get客户ID", kMasters, "The id of the customer with a unit name, or 0",
                                    "r客户名称"),
        Method<&CTables::Get仓库ID>("Get仓库ID", kMasters, "The id of the warehouse with a name, or -1", "DepotName"),
        Method<&CTables::Get仓库数量>("Get仓库数量", kMasters, "How many warehouses there are"),
        Method<&CTables::Get收付款方式数量>("Get收付款方式数量", kMasters, "How many payment methods there are"),
        Method<&CTables::Del_客户分类>("Del_客户分类", kMasters, "Deletes a customer class", "rClassID"),
        Method<&CTables::Del_厂商分类>("Del_厂商分类", kMasters, "Deletes a supplier class", "rClassID"),
        Method<&CTables::Del_项目分类>("Del_项目分类", kMasters, "Deletes a project class", "rClassID"),
    };
}

std::vector<Member> Products() {
    return {
        Method<&CTables::rs商品分类>("rs商品分类", kMasters, "The product class with a code (blank: all)", "rClass?"),
        Method<&CTables::rs商品资料>("rs商品资料", kMasters, "A product, if wanted only when it is of a class",
                                     "rpdID?", "rClass?", "rOrder?"),
        Method<&CTables::rs生产厂家>("rs生产厂家", kMasters, "Distinct manufacturers of products"),
        Method<&CTables::rs存放位置>("rs存放位置", kMasters, "Distinct storage places of products"),
        Method<&CTables::商品已被使用>("商品已被使用", kMasters,
                                       "Whether a warehouse has balance rows, whatever the product", "rpdID", "rdpID?"),
        Method<&CTables::Get商品资料>("Get商品资料", kMasters, "One attribute of a product", "rpdID", "rWhich"),
        Method<&CTables::Get商品分类名称>("Get商品分类名称", kMasters, "The name of a product class", "rClassCode"),
        Method<&CTables::Get商品数量>("Get商品数量", kMasters, "How many products a class has (empty: all products)",
                                      "rClassCode?"),
        Method<&CTables::Get商品ID>("Get商品ID", kMasters,
                                    "The id of the product with a bar code, input code, product code or name, or 0",
                                    "theName"),
        Method<&CTables::Get客户单价>("Get客户单价", kMasters,
                                      "The first price on a customer's two oldest lines of a product before a date",
                                      "rksID", "rpdID", "BillDate"),
    };
}

std::vector<Member> Bills() {
    return {
        Method<&CTables::rs入库记录>("rs入库记录", kBills, "Inbound lines of a warehouse and a product (0: all)",
                                     "rdpID", "rpdID"),
        Method<&CTables::rs出库记录>("rs出库记录", kBills, "Outbound lines of a warehouse and a product (0: all)",
                                     "rdpID", "rpdID"),
        Method<&CTables::rs单位入库记录>("rs单位入库记录", kBills, "Inbound lines of a supplier (0: all)", "rksID"),
        Method<&CTables::rs单位出库记录>("rs单位出库记录", kBills, "Outbound lines of a customer (0: all)", "rksID"),
        Method<&CTables::rs经手人>("rs经手人", kBills, "Distinct handlers of bill lines", "m_Which"),
        Method<&CTables::rs交接人>("rs交接人", kBills, "Distinct counterparts of bill lines", "m_Which"),
        Method<&CTables::rs包装>("rs包装", kBills, "Distinct packings of bill lines", "m_Which"),
        Method<&CTables::rs货位>("rs货位", kBills, "Distinct storage slots of bill lines", "m_Which"),
        Method<&CTables::Get单据金额>("Get单据金额", kBills, "Net amount of one bill", "rBillID", "m_Which"),
        Method<&CTables::Get单据数量>("Get单据数量", kBills, "Quantity of one bill", "rBillID", "m_Which"),
        Method<&CTables::BillAdulting>("BillAdulting", kBills, "Stamps auditor and audit date on a bill", "rWhich",
                                       "rBillID", "rAdultor", "rAdultDate"),
        Method<&CTables::Del_单据>("Del_单据", kBills, "Deletes a bill's header and lines; always False", "BillID",
                                   "Which"),
    };
}

std::vector<Member> BillQueries() {
    return {
        Method<&CTables::rs单据列表>("rs单据列表", kBills, "Bills of a direction with the sums of their lines",
                                     "rWhich", "r单据类型", "r起始日期", "r结束日期", "r起始编号", "r结束编号", "rdpID",
                                     "rksID", "rpjID", "r经手人", "r交接人", "r包装", "r包装Opr", "r货位", "r货位Opr",
                                     "r期限", "r期限Opr", "r最小数量", "r最大数量", "r最小金额", "r最大金额"),
        Method<&CTables::Get_BillNum>("Get_BillNum", kBills, "How many bills a month has", "rdpID", "rMonth",
                                      "rBillType", "rWhich"),
        Method<&CTables::GetBillCount>("GetBillCount", kBills, "How many bills a span of months and days has, as text",
                                       "rWhich", "rKind", "rBeginMonth", "rStartDay", "rEndMonth", "rEndDay"),
        Method<&CTables::GetShiftID>("GetShiftID", kBills, "The other half of a transfer, or 0", "rBillID", "rWhich"),
        Method<&CTables::Get_FromBillID>("Get_FromBillID", kBills, "The outbound half of an inbound transfer, or 0",
                                         "rBillID"),
        Method<&CTables::rsSql单据记录>("rsSql单据记录", kBills, "Products on the matching lines with their sums",
                                        "rWhich", "r类型", "rdpID", "rksID", "rpjID", "rGroup", "rArray"),
        Method<&CTables::rsSql查询记录>("rsSql查询记录", kBills,
                                        "The matching lines with product, project and customer", "rWhich", "r类型",
                                        "rdpID", "rksID", "rpjID", "rArray"),
        Method<&CTables::Get单据列表>("Get单据列表", kBills, "Numbers of the bills with a product, joined by \";\"",
                                      "rWhich", "r类型", "rdpID", "rksID", "rpdID", "rArray"),
        Method<&CTables::Get单据统计>("Get单据统计", kBills, "How many bills match", "rWhich", "r单据名称", "r单据类型",
                                      "rdpID", "rksID", "rpdID", "rArray"),
    };
}

std::vector<Member> Balance() {
    return {
        Method<&CTables::rs月份列表>("rs月份列表", kBalance, "Years and months that have balance rows", "rDESC?"),
        Method<&CTables::Del仓库余额>("Del仓库余额", kBalance, "Deletes a warehouse's balance rows; always False",
                                      "rdpID"),
        Method<&CTables::rs仓库余额表>("rs仓库余额表", kBalance,
                                       "Balance rows of a warehouse and a month (0: all), editable", "rdpID?",
                                       "rMonth?"),
        Method<&CTables::Del仓库余额表>("Del仓库余额表", kBalance,
                                        "Deletes the balance rows of a warehouse and a month (0: all)", "rdpID?",
                                        "rMonth?"),
        Method<&CTables::清理仓库余额表>("清理仓库余额表", kBalance,
                                         "Deletes the balance rows of the months before one", "rMonth", "rdpID?"),
        Method<&CTables::商品已经入库>("商品已经入库", kBalance, "Asks for a product's inbound lines; always False",
                                       "rpdID", "rdpID?"),
        Method<&CTables::rs仓库余额表期初>("rs仓库余额表期初", kBalance, "Opening quantities and amounts per product",
                                           "rMotnh?", "rdpID?", "rInitial?"),
        Method<&CTables::rs余额记录>("rs余额记录", kBalance, "Balance figures per product of a month (0: the first)",
                                     "rdpID?", "rMonth?"),
        Method<&CTables::CheckBnProduct>("CheckBnProduct", kBalance,
                                         "Finds products without a balance row and, when told to, adds the rows",
                                         "rMonth"),
        Method<&CTables::Close_DepotBalance>("Close_DepotBalance", kBalance, "Closes a warehouse's month", "rdpID",
                                             "rMonth", "rCostUsed", "rBookCurrentDate", "rpgBar?"),
        Method<&CTables::UpdateDepotClosedFlag>("UpdateDepotClosedFlag", kBalance,
                                                "Writes a warehouse's closing date and closed flag", "rdpID", "rDate",
                                                "rClosed"),
        Method<&CTables::isSaled>("isSaled", kBalance, "Whether a warehouse sold anything in a month", "dpID", "Month"),
    };
}

std::vector<Member> StockFigures() {
    return {
        Method<&CTables::Get上期库存>("Get上期库存", kBalance, "Opening figure of a product in a warehouse and a month",
                                      "rdpID", "rpdID", "rMonth", "What"),
        Method<&CTables::Get本期库存>("Get本期库存", kBalance, "Quantity or amount in stock at a month's end", "rdpID",
                                      "rpdID", "rMonth", "What", "CostUsed?"),
        Method<&CTables::Get商品入库>("Get商品入库", kBalance, "Inbound figure of a month or of the year up to it",
                                      "rdpID", "rpdID", "rMonth", "What", "Which?", "isTotal?"),
        Method<&CTables::Get商品出库>("Get商品出库", kBalance, "Outbound figure of a month or of the year up to it",
                                      "rdpID", "rpdID", "rMonth", "What", "Which?", "isTotal?"),
        Method<&CTables::Get商品库存>("Get商品库存", kBalance,
                                      "Quantity, amount or unit price in stock at a month's end", "rdpID", "rpdID",
                                      "rMonth", "What", "CostUsed?"),
        Method<&CTables::Get商品成本>("Get商品成本", kBalance,
                                      "Figure of the cost bills of a month or of the year up to it", "rdpID", "rpdID",
                                      "rMonth", "What", "isTotal?"),
    };
}

std::vector<Member> Reports() {
    return {
        Method<&CTables::rs单据日期列表>("rs单据日期列表", kReports, "Distinct dates of all bills"),
        Method<&CTables::rs商品列表>("rs商品列表", kReports, "Products that occur in a source", "rdpID", "rksID",
                                     "rBeginMonth", "rEndMonth", "rWhere", "rNo1?", "rNo2?"),
        Method<&CTables::rs期初记录>("rs期初记录", kReports, "A product's balance figures per year and month", "rdpID",
                                     "rpdID"),
        Method<&CTables::rs成本记录>("rs成本记录", kReports, "Cost bills of a product with their lines", "rdpID",
                                     "rpdID"),
        Method<&CTables::rs商品汇总>("rs商品汇总", kReports, "Sums per product of a bill family", "rWhich",
                                     "rBeginMonth", "rEndMonth", "rdpID", "rksID", "rType"),
        Method<&CTables::rs入库扩展列表>("rs入库扩展列表", kReports,
                                         "Distinct values of a free-text column of inbound lines", "rWho", "rMonth",
                                         "rdpID"),
        Method<&CTables::rs出库扩展列表>("rs出库扩展列表", kReports,
                                         "Distinct values of a free-text column of all outbound lines", "rWho",
                                         "rMonth", "rdpID"),
        Method<&CTables::rs出库扩展合计>("rs出库扩展合计", kReports,
                                         "Outbound sums per product and value of a free-text column", "rWho", "rMonth",
                                         "rdpID"),
        Method<&CTables::rs成本汇总>("rs成本汇总", kReports, "Cost sums per product", "rBeginMonth", "rEndMonth",
                                     "rdpID"),
        Method<&CTables::rs单位汇总>("rs单位汇总", kReports, "Sums per supplier or customer", "rBeginMonth",
                                     "rEndMonth", "rWhich"),
        Method<&CTables::rs日报记录>("rs日报记录", kReports, "Sums per product of a day, or of its month before it",
                                     "rdpID", "rksID", "rDate", "rWhich", "rTotal?"),
        Method<&CTables::rs日报列表>("rs日报列表", kReports, "Stock and movements per day of a month", "rMonth",
                                     "rdpID"),
        Method<&CTables::rs项目汇总表>("rs项目汇总表", kReports, "Outbound goods per project and month", "rWhich?"),
    };
}

std::vector<Member> Operators() {
    return {
        Method<&CTables::rs操作员>("rs操作员", kOperators, "One operator (0: all)", "rID?"),
        Method<&CTables::操作员_Append>("操作员_Append", kOperators, "Adds an operator; answers the id", "rName"),
        Method<&CTables::操作员_Update>("操作员_Update", kOperators, "Gives an operator another name", "rID", "rName"),
        Method<&CTables::操作权限_Update>("操作权限_Update", kOperators, "Grants or takes away a right", "rID",
                                          "rRightName", "rValue"),
        Method<&CTables::管理仓库_Update>("管理仓库_Update", kOperators, "Sets the warehouse that an operator manages",
                                          "rID", "rdpID"),
        Method<&CTables::操作员_Delete>("操作员_Delete", kOperators, "Deletes an operator", "rID"),
        Method<&CTables::操作权限_Clear>("操作权限_Clear", kOperators, "Takes away all rights of an operator", "rID"),
        Method<&CTables::GetPassword>("GetPassword", kOperators, "The password of an operator, by id or name", "rName",
                                      "rID?"),
        Method<&CTables::Update_Password>("Update_Password", kOperators,
                                          "Sets the password of an operator, by id or name", "rName", "rPassWord",
                                          "rID?"),
        Method<&CTables::Clear_Password>("Clear_Password", kOperators, "Empties an operator's password", "rID"),
        Method<&CTables::Get操作权限>("Get操作权限", kOperators, "Whether an operator has a right", "rID",
                                      "rFieldName"),
        Method<&CTables::Get管理仓库>("Get管理仓库", kOperators, "The warehouse that an operator manages", "rID"),
        Method<&CTables::Get操作员>("Get操作员", kOperators, "One column of an operator as text", "rID", "rFieldName"),
        Method<&CTables::AllowDelOperator>("AllowDelOperator", kOperators, "Whether an operator has no log entries",
                                           "Opr"),
        Method<&CTables::rsLog>("rsLog", kOperators, "The log, newest first"),
        Method<&CTables::Delete_LogRecs>("Delete_LogRecs", kOperators, "Deletes the log entries below the newest",
                                         "rMaxRecs"),
    };
}

std::vector<Member> Layouts() {
    return {
        Method<&CTables::Header>("Header", kLayouts, "Applies or saves a grid's column layout; always False", "rfg",
                                 "rTableName", "rFlag?", "rSetting?", "isSQL?"),
        Method<&CTables::rsHistory>("rsHistory", kLayouts, "Saved report settings"),
        Method<&CTables::History_Del>("History_Del", kLayouts, "Deletes a saved report setting", "rID"),
        Method<&CTables::GetHistorySetting>("GetHistorySetting", kLayouts, "The text of a saved report setting", "rID"),
        Method<&CTables::History_Update>("History_Update", kLayouts, "Changes a saved report setting (0: adds one)",
                                         "rID", "rCaption", "rSetting", "rDate"),
    };
}

std::vector<Member> Haulage() {
    return {
        Method<&CTables::rs工作单列表>("rs工作单列表", kHaulage, "Deliveries of the work orders that meet the filters",
                                       "r起始日期", "r结束日期", "r起始编号", "r结束编号", "r车牌号", "r司机",
                                       "r跟车人", "r收货款", "r收货款Opr", "r外用车", "r违章", "r厂商ID", "r配送单号",
                                       "r配送单号Opr", "r客户ID", "r送货地点", "rpdID", "r最小数量", "r最大数量",
                                       "r最小金额", "r最大金额"),
        Method<&CTables::rs工资表>("rs工资表", kHaulage, "The drivers' pay: a new sheet, a saved month or sums",
                                   "rMonth1", "rMonth2?", "rCreate?"),
        Method<&CTables::Update工资表>("Update工资表", kHaulage, "Replaces a saved month by the rows of a grid",
                                       "rYear", "rMonth", "rfg"),
    };
}

// The order of the members is part of the interface: subsystem by subsystem.
std::vector<Member> MakeTable() {
    std::vector<Member> table;
    for (const auto part : {Properties, Frame, Settings, References, Products, Bills, BillQueries, Balance,
                            StockFigures, Reports, Operators, Layouts, Haulage})
        for (Member& member : part()) table.push_back(std::move(member));
    return table;
}

}  // namespace

std::span<const _CTables::Member> _CTables::Members() {
    static const std::vector<Member> table = MakeTable();
    return table;
}

}  // namespace kpTables
