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

// The order of the members is part of the interface: subsystem by subsystem.
std::vector<Member> MakeTable() {
    std::vector<Member> table;
    for (const auto part : {Properties, Frame, Settings, References, Products, Bills, Balance, StockFigures})
        for (Member& member : part()) table.push_back(std::move(member));
    return table;
}

}  // namespace

std::span<const _CTables::Member> _CTables::Members() {
    static const std::vector<Member> table = MakeTable();
    return table;
}

}  // namespace kpTables
