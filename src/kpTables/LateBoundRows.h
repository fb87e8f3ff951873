// The rows of the late-bound table: every member once, for whatever is made of it.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "kpTables/CTables.h"
#include "kpTables/LateBound.h"

namespace kpTables::latebound {

using MemberKind = _CTables::MemberKind;

// A property's accessors are overloads, chosen by type: Getter<bool>(&CTables::isSQL).
template <class T>
using Getter = T (CTables::*)() const;
template <class T>
using Setter = void (CTables::*)(T);

// Make has the type Row, and makes one: Method<function>(name, answers, parameters...), Accessor<function>(name, kind,
// answers, parameters...), SetSubsystem(row, name).

// A row for a method: its name, what it answers, and its parameters' names, ending in "?" where one is optional, in "'"
// where its text is pasted into statements, and in "*" where it is a secret.
#define METHOD(name, ...) (Make::template Method<&CTables::name>(#name, __VA_ARGS__))

template <class Make>
std::vector<typename Make::Row> Properties() {
    return {
        Make::template Accessor<Getter<ConnectionPtr>(&CTables::Cnn)>("Cnn", MemberKind::PropertyGet,
                                                                      "The connection that every statement runs on"),
        Make::template Accessor<Setter<ConnectionPtr>(&CTables::Cnn)>(
            "Cnn", MemberKind::PropertySet, "Hands over the connection that every statement runs on", "value"),
        Make::template Accessor<Getter<const std::string&>(&CTables::Speciality)>("Speciality", MemberKind::PropertyGet,
                                                                                  "A free text of the host's"),
        Make::template Accessor<Setter<const std::string&>(&CTables::Speciality)>(
            "Speciality", MemberKind::PropertyLet, "Keeps a free text of the host's", "value"),
        Make::template Accessor<Getter<bool>(&CTables::isSQL)>("isSQL", MemberKind::PropertyGet,
                                                               "The dialect: True for SQL Server, False for Jet"),
        Make::template Accessor<Setter<bool>(&CTables::isSQL)>(
            "isSQL", MemberKind::PropertyLet, "Chooses the dialect: True for SQL Server, False for Jet", "value"),
    };
}

template <class Make>
std::vector<typename Make::Row> Frame() {
    return {
        METHOD(Version, "Major, minor and revision number with nothing between"),
        METHOD(Update, "Raises TableChanged to every listener", "ProcName", "TableName", "ID"),
        METHOD(AllTrim, "Keeps \"-\", capital letters and Chinese characters", "rStr"),
        METHOD(CalcPrice, "Amount divided by quantity, 0 without a quantity", "Account", "Number"),
        METHOD(Get单据中文日期, "Month and day of a bill's row in Chinese", "rs"),
    };
}

template <class Make>
std::vector<typename Make::Row> Settings() {
    return {
        METHOD(Get_Option, "The value of a setting", "rItem'"),
        METHOD(Update_Option, "Stores the value of a setting", "rItem", "rValue"),
        METHOD(Get_AccInfo, "One item of the account book information", "rWhich"),
        METHOD(Update_AccInfo, "Stores an item of the account book information; always False", "rWhich", "rValue"),
        METHOD(Get_BuiltDate, "The date on which the book was set up"),
        METHOD(Get_CurrentDate, "The book's current date"),
        METHOD(Create_NewBook, "Gives a new book its name and its date"),
        METHOD(CancCreateBook, "Blanks the current date; always False"),
        METHOD(SetDefaultSFK, "Fills an empty table of payment methods"),
        METHOD(ClearInputRecs, "Deletes all inbound bills"),
        METHOD(ClearOutputRecs, "Deletes all outbound bills"),
        METHOD(ClearCostRecs, "Deletes all cost bills"),
        METHOD(SetBnCurrentDate, "Moves every balance row to one year and month", "rYear", "rMonth"),
    };
}

template <class Make>
std::vector<typename Make::Row> References() {
    return {
        METHOD(rs厂商分类, "One supplier class (0: all)", "rID?"),
        METHOD(rs厂商资料, "One supplier (0: all)", "rID?"),
        METHOD(rs客户分类, "One customer class (0: all)", "rID?"),
        METHOD(rs客户资料, "One customer (0: all)", "rID?"),
        METHOD(rs项目分类, "One project class (0: all)", "rID?"),
        METHOD(rs项目资料, "One project (0: all)", "rID?"),
        METHOD(rs部门分类, "One department class (0: all)", "rID?"),
        METHOD(rs雇员资料, "One employee (0: all)", "rID?"),
        METHOD(rs仓库列表, "Ids of the warehouses with balance rows in a month (0: all warehouses)", "rMonth?"),
        METHOD(rs厂商列表, "Suppliers with inbound bills in a month (0: all)", "rMonth?"),
        METHOD(rs客户列表, "Customers with outbound bills in a month (0: all)", "rMonth?"),
        METHOD(rs项目列表, "Projects with bills in a month (0: all)", "rMonth?"),
        METHOD(Get厂商名称, "A supplier's company name", "rksID"),
        METHOD(Get客户名称, "A customer's company name", "rksID"),
        METHOD(Get项目名称, "A project's name", "rpjID"),
        METHOD(Get项目编号, "A project's number", "rpjID"),
        METHOD(Get仓库名称, "A warehouse's name (0: all warehouses)", "dpID"),
        METHOD(Get厂商ID, "The id of the supplier with a unit name, or 0", "r厂商名称'"),
        METHOD(Get客户ID, "The id of the customer with a unit name, or 0", "r客户名称'"),
        METHOD(Get仓库ID, "The id of the warehouse with a name, or -1", "DepotName'"),
        METHOD(Get仓库数量, "How many warehouses there are"),
        METHOD(Get收付款方式数量, "How many payment methods there are"),
        METHOD(Del_客户分类, "Deletes a customer class", "rClassID"),
        METHOD(Del_厂商分类, "Deletes a supplier class", "rClassID"),
        METHOD(Del_项目分类, "Deletes a project class", "rClassID"),
    };
}

template <class Make>
std::vector<typename Make::Row> Products() {
    return {
        METHOD(rs商品分类, "The product class with a code (blank: all)", "rClass?'"),
        METHOD(rs商品资料, "A product, if wanted only when it is of a class", "rpdID?", "rClass?'", "rOrder?'"),
        METHOD(rs生产厂家, "Distinct manufacturers of products"),
        METHOD(rs存放位置, "Distinct storage places of products"),
        METHOD(商品已被使用, "Whether a warehouse has balance rows, whatever the product", "rpdID", "rdpID?"),
        METHOD(Get商品资料, "One attribute of a product", "rpdID", "rWhich"),
        METHOD(Get商品分类名称, "The name of a product class", "rClassCode'"),
        METHOD(Get商品数量, "How many products a class has (empty: all products)", "rClassCode?'"),
        METHOD(Get商品ID, "The id of the product with a bar code, input code, product code or name, or 0", "theName'"),
        METHOD(Get客户单价, "The first price on a customer's two oldest lines of a product before a date", "rksID",
               "rpdID", "BillDate"),
    };
}

template <class Make>
std::vector<typename Make::Row> Bills() {
    return {
        METHOD(rs入库记录, "Inbound lines of a warehouse and a product (0: all)", "rdpID", "rpdID"),
        METHOD(rs出库记录, "Outbound lines of a warehouse and a product (0: all)", "rdpID", "rpdID"),
        METHOD(rs单位入库记录, "Inbound lines of a supplier (0: all)", "rksID"),
        METHOD(rs单位出库记录, "Outbound lines of a customer (0: all)", "rksID"),
        METHOD(rs经手人, "Distinct handlers of bill lines", "m_Which"),
        METHOD(rs交接人, "Distinct counterparts of bill lines", "m_Which"),
        METHOD(rs包装, "Distinct packings of bill lines", "m_Which"),
        METHOD(rs货位, "Distinct storage slots of bill lines", "m_Which"),
        METHOD(Get单据金额, "Net amount of one bill", "rBillID", "m_Which'"),
        METHOD(Get单据数量, "Quantity of one bill", "rBillID", "m_Which"),
        METHOD(BillAdulting, "Stamps auditor and audit date on a bill", "rWhich", "rBillID", "rAdultor'",
               "rAdultDate'"),
        METHOD(Del_单据, "Deletes a bill's header and lines; always False", "BillID", "Which"),
    };
}

template <class Make>
std::vector<typename Make::Row> BillQueries() {
    return {
        METHOD(rs单据列表, "Bills of a direction with the sums of their lines", "rWhich", "r单据类型'", "r起始日期",
               "r结束日期", "r起始编号'", "r结束编号'", "rdpID", "rksID", "rpjID", "r经手人'", "r交接人'", "r包装'",
               "r包装Opr", "r货位", "r货位Opr", "r期限", "r期限Opr", "r最小数量", "r最大数量", "r最小金额",
               "r最大金额"),
        METHOD(Get_BillNum, "How many bills a month has", "rdpID", "rMonth", "rBillType'", "rWhich'"),
        METHOD(GetBillCount, "How many bills a span of months and days has, as text", "rWhich'", "rKind'",
               "rBeginMonth", "rStartDay", "rEndMonth", "rEndDay"),
        METHOD(GetShiftID, "The other half of a transfer, or 0", "rBillID'", "rWhich"),
        METHOD(Get_FromBillID, "The outbound half of an inbound transfer, or 0", "rBillID'"),
        METHOD(rsSql单据记录, "Products on the matching lines with their sums", "rWhich'", "r类型'", "rdpID", "rksID",
               "rpjID", "rGroup'", "rArray'"),
        METHOD(rsSql查询记录, "The matching lines with product, project and customer", "rWhich'", "r类型'", "rdpID",
               "rksID", "rpjID", "rArray'"),
        METHOD(Get单据列表, "Numbers of the bills with a product, joined by \";\"", "rWhich'", "r类型", "rdpID",
               "rksID", "rpdID", "rArray'"),
        METHOD(Get单据统计, "How many bills match", "rWhich'", "r单据名称'", "r单据类型'", "rdpID", "rksID", "rpdID",
               "rArray'"),
    };
}

template <class Make>
std::vector<typename Make::Row> Balance() {
    return {
        METHOD(rs月份列表, "Years and months that have balance rows", "rDESC?"),
        METHOD(Del仓库余额, "Deletes a warehouse's balance rows; always False", "rdpID"),
        METHOD(rs仓库余额表, "Balance rows of a warehouse and a month (0: all), editable", "rdpID?", "rMonth?"),
        METHOD(Del仓库余额表, "Deletes the balance rows of a warehouse and a month (0: all)", "rdpID?", "rMonth?"),
        METHOD(清理仓库余额表, "Deletes the balance rows of the months before one", "rMonth", "rdpID?"),
        METHOD(商品已经入库, "Asks for a product's inbound lines; always False", "rpdID", "rdpID?"),
        METHOD(rs仓库余额表期初, "Opening quantities and amounts per product", "rMotnh?", "rdpID?", "rInitial?"),
        METHOD(rs余额记录, "Balance figures per product of a month (0: the first)", "rdpID?", "rMonth?"),
        METHOD(CheckBnProduct, "Finds products without a balance row and, when told to, adds the rows", "rMonth"),
        METHOD(Close_DepotBalance, "Closes a warehouse's month", "rdpID", "rMonth", "rCostUsed", "rBookCurrentDate",
               "rpgBar?"),
        METHOD(UpdateDepotClosedFlag, "Writes a warehouse's closing date and closed flag", "rdpID", "rDate", "rClosed"),
        METHOD(isSaled, "Whether a warehouse sold anything in a month", "dpID", "Month"),
    };
}

template <class Make>
std::vector<typename Make::Row> StockFigures() {
    return {
        METHOD(Get上期库存, "Opening figure of a product in a warehouse and a month", "rdpID", "rpdID", "rMonth",
               "What"),
        METHOD(Get本期库存, "Quantity or amount in stock at a month's end", "rdpID", "rpdID", "rMonth", "What",
               "CostUsed?"),
        METHOD(Get商品入库, "Inbound figure of a month or of the year up to it", "rdpID", "rpdID", "rMonth", "What",
               "Which?", "isTotal?"),
        METHOD(Get商品出库, "Outbound figure of a month or of the year up to it", "rdpID", "rpdID", "rMonth", "What",
               "Which?", "isTotal?"),
        METHOD(Get商品库存, "Quantity, amount or unit price in stock at a month's end", "rdpID", "rpdID", "rMonth",
               "What", "CostUsed?"),
        METHOD(Get商品成本, "Figure of the cost bills of a month or of the year up to it", "rdpID", "rpdID", "rMonth",
               "What", "isTotal?"),
    };
}

template <class Make>
std::vector<typename Make::Row> Reports() {
    return {
        METHOD(rs单据日期列表, "Distinct dates of all bills"),
        METHOD(rs商品列表, "Products that occur in a source", "rdpID", "rksID", "rBeginMonth", "rEndMonth", "rWhere",
               "rNo1?'", "rNo2?'"),
        METHOD(rs期初记录, "A product's balance figures per year and month", "rdpID", "rpdID"),
        METHOD(rs成本记录, "Cost bills of a product with their lines", "rdpID", "rpdID"),
        METHOD(rs商品汇总, "Sums per product of a bill family", "rWhich'", "rBeginMonth", "rEndMonth", "rdpID", "rksID",
               "rType"),
        METHOD(rs入库扩展列表, "Distinct values of a free-text column of inbound lines", "rWho", "rMonth", "rdpID"),
        METHOD(rs出库扩展列表, "Distinct values of a free-text column of all outbound lines", "rWho", "rMonth",
               "rdpID"),
        METHOD(rs出库扩展合计, "Outbound sums per product and value of a free-text column", "rWho", "rMonth", "rdpID"),
        METHOD(rs成本汇总, "Cost sums per product", "rBeginMonth", "rEndMonth", "rdpID"),
        METHOD(rs单位汇总, "Sums per supplier or customer", "rBeginMonth", "rEndMonth", "rWhich"),
        METHOD(rs日报记录, "Sums per product of a day, or of its month before it", "rdpID", "rksID", "rDate", "rWhich",
               "rTotal?"),
        METHOD(rs日报列表, "Stock and movements per day of a month", "rMonth", "rdpID"),
        METHOD(rs项目汇总表, "Outbound goods per project and month", "rWhich?"),
    };
}

template <class Make>
std::vector<typename Make::Row> Operators() {
    return {
        METHOD(rs操作员, "One operator (0: all)", "rID?"),
        METHOD(操作员_Append, "Adds an operator; answers the id", "rName"),
        METHOD(操作员_Update, "Gives an operator another name", "rID", "rName'"),
        METHOD(操作权限_Update, "Grants or takes away a right", "rID", "rRightName'", "rValue"),
        METHOD(管理仓库_Update, "Sets the warehouse that an operator manages", "rID", "rdpID"),
        METHOD(操作员_Delete, "Deletes an operator", "rID"),
        METHOD(操作权限_Clear, "Takes away all rights of an operator", "rID"),
        METHOD(GetPassword, "The password of an operator, by id or name", "rName'", "rID?"),
        METHOD(Update_Password, "Sets the password of an operator, by id or name", "rName'", "rPassWord'*", "rID?"),
        METHOD(Clear_Password, "Empties an operator's password", "rID"),
        METHOD(Get操作权限, "Whether an operator has a right", "rID", "rFieldName"),
        METHOD(Get管理仓库, "The warehouse that an operator manages", "rID"),
        METHOD(Get操作员, "One column of an operator as text", "rID", "rFieldName"),
        METHOD(AllowDelOperator, "Whether an operator has no log entries", "Opr"),
        METHOD(rsLog, "The log, newest first"),
        METHOD(Delete_LogRecs, "Deletes the log entries below the newest", "rMaxRecs"),
    };
}

template <class Make>
std::vector<typename Make::Row> Layouts() {
    return {
        METHOD(Header, "Applies or saves a grid's column layout; always False", "rfg", "rTableName'", "rFlag?'",
               "rSetting?", "isSQL?"),
        METHOD(rsHistory, "Saved report settings"),
        METHOD(History_Del, "Deletes a saved report setting", "rID"),
        METHOD(GetHistorySetting, "The text of a saved report setting", "rID"),
        METHOD(History_Update, "Changes a saved report setting (0: adds one)", "rID", "rCaption", "rSetting", "rDate"),
    };
}

template <class Make>
std::vector<typename Make::Row> Haulage() {
    return {
        METHOD(rs工作单列表, "Deliveries of the work orders that meet the filters", "r起始日期", "r结束日期",
               "r起始编号'", "r结束编号'", "r车牌号'", "r司机'", "r跟车人'", "r收货款", "r收货款Opr'", "r外用车",
               "r违章", "r厂商ID", "r配送单号'", "r配送单号Opr'", "r客户ID", "r送货地点'", "rpdID", "r最小数量",
               "r最大数量", "r最小金额", "r最大金额"),
        METHOD(rs工资表, "The drivers' pay: a new sheet, a saved month or sums", "rMonth1", "rMonth2?", "rCreate?"),
        METHOD(Update工资表, "Replaces a saved month by the rows of a grid", "rYear", "rMonth", "rfg"),
    };
}

#undef METHOD

/// Every row, subsystem by subsystem. The order of the members is part of the interface.
template <class Make>
std::vector<typename Make::Row> AllRows() {
    using Row = typename Make::Row;
    const struct {
        std::string_view name;
        std::vector<std::vector<Row> (*)()> parts;
    } subsystems[] = {
        {"Component frame", {&Properties<Make>, &Frame<Make>, &Settings<Make>}},
        {"Master data", {&References<Make>, &Products<Make>}},
        {"Bills", {&Bills<Make>, &BillQueries<Make>}},
        {"Warehouse balance and month-end closing", {&Balance<Make>, &StockFigures<Make>}},
        {"Reports", {&Reports<Make>}},
        {"Operators and log", {&Operators<Make>}},
        {"Grid layout and report history", {&Layouts<Make>}},
        {"Haulage dispatch and pay", {&Haulage<Make>}},
    };
    std::vector<Row> rows;
    for (const auto& subsystem : subsystems)
        for (const auto part : subsystem.parts)
            for (Row& row : part()) {
                Make::SetSubsystem(row, subsystem.name);
                rows.push_back(std::move(row));
            }
    return rows;
}

}  // namespace kpTables::latebound
