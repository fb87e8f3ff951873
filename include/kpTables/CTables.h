// The component: the data layer of a small-business inventory accounting application.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Grid.h"
#include "kpTables/Host.h"
#include "kpTables/InOut.h"

namespace kpTables {

/// The component's events. The name is the system's own, although C++ reserves such names.
struct __CTables {
    virtual ~__CTables() = default;
    /// Raised by CTables::Update only, with its arguments unchanged.
    virtual void TableChanged(const std::string& ProcName, const std::string& TableName, std::int32_t ID) = 0;
};

/// Composes SQL texts, runs them on the host's connection and answers with recordsets (rs...), single values (Get...)
/// or success flags. Its only state is its three properties: every call goes to the database. One thread at a time.
///
/// Unless a method says that it traps errors, a failure is raised to the caller: a DatabaseError from the connection,
/// error 91 while Cnn is not set. Texts are put between quotes as they are, so a value with a quote in it breaks the
/// statement. A recordset result has a CacheSize of 200, but for rs仓库列表, rs商品分类, rs日报列表, rs项目汇总表 and
/// the lists of operators, log and saved reports, which leave it alone.
///
/// The kind selector (rWhich, m_Which, Which) is "入库" (inbound), "出库" (outbound) or "成本" (cost).
class CTables {
public:
    /// host shows message boxes and tells the date; by default no message box and the system's clock.
    explicit CTables(std::shared_ptr<Host> host = nullptr);
    ~CTables();
    CTables(const CTables&) = delete;
    CTables& operator=(const CTables&) = delete;

    // Properties

    /// The open connection that every statement runs on; the host's, never opened, closed or reconfigured here.
    ConnectionPtr Cnn() const;
    void Cnn(ConnectionPtr value);
    /// A free text for the host; not used here.
    const std::string& Speciality() const;
    void Speciality(const std::string& value);
    /// The dialect: true for SQL Server, false (at first) for Jet. Takes effect with the next call.
    bool isSQL() const;
    void isSQL(bool value);

    // Events

    /// Adds a listener, called in the order of registration, and returns its cookie. It must outlive its registration.
    std::int32_t Advise(__CTables& listener);
    /// Removes a listener; it may do so while it is being called. Error 5 for a cookie that is not in use.
    void Unadvise(std::int32_t cookie);

    // Component frame

    /// Major, minor and revision number joined without a separator: 1.0.0.110 is "10110".
    std::string Version() const;
    /// Raises TableChanged to every listener; answers Empty.
    Variant Update(const std::string& ProcName, const std::string& TableName, std::int32_t ID);

    // Value helpers

    /// Keeps "-", capital letters A to Z and double-byte characters of code page 936. Error 6 beyond 32767 characters.
    std::string AllTrim(const std::string& rStr) const;
    /// Account / Number, unrounded; 0 when either is not numeric or Number is not above 0. Changes neither.
    double CalcPrice(InOut<Variant> Account, InOut<Variant> Number) const;
    /// Month and day of a bill's row as "03月07日". Error 91 without a row, 3265 when it lacks 月份 or 日子.
    std::string Get单据中文日期(Recordset* rs) const;

    // System options

    /// The value of a setting, trimmed; "" when there is none or no connection. Traps errors: "" after one.
    std::string Get_Option(const std::string& rItem);
    /// Stores a setting's value as text, adding the setting when it is missing; does nothing for an empty name. Traps
    /// errors: shows the description of one in a message box.
    void Update_Option(const std::string& rItem, InOut<Variant> rValue);

    // Account book information

    /// One item: a text, 建帐日期 as a Date, 当前日期 as the stored text (0 when it is no date), or a number derived
    /// from the two dates: 建帐月份, 帐簿年份, 当前月份. "" for any other name.
    Variant Get_AccInfo(const std::string& rWhich);
    /// Stores an item as a setting, then in the row of AccInfo, where every error is skipped. Always answers false.
    bool Update_AccInfo(const std::string& rWhich, InOut<Variant> rValue);
    /// The date on which the book was set up. One that is missing or before 2000 is made from the earliest balance row,
    /// or else from today, and stored. Traps errors: the date reached so far, or the zero date.
    Date Get_BuiltDate();
    /// The book's current date, corrected and stored when balance rows of two months or more require it. Traps errors:
    /// the date reached so far, or the zero date.
    Date Get_CurrentDate();

    // Account book creation and clearing

    /// Gives a new book its name, its company's name and today as the date on which it was set up.
    bool Create_NewBook();
    /// Blanks the current date, so that it is derived again when next read. Always answers false.
    bool CancCreateBook();
    /// Puts a blank payment method and cash into an empty table of payment methods. Traps errors: false after one.
    bool SetDefaultSFK();
    /// Deletes all inbound bills, headers first.
    bool ClearInputRecs();
    /// Deletes all outbound bills, headers first.
    bool ClearOutputRecs();
    /// Deletes all cost bills, headers first. Traps errors: false after one.
    bool ClearCostRecs();
    /// Moves every row of the balance table to one year and month.
    bool SetBnCurrentDate(std::int16_t rYear, InOut<std::int16_t> rMonth);

    // Reference lists and lookups

    /// One supplier class, or all by class code for an id below 1.
    RecordsetPtr rs厂商分类(std::int32_t rID = 0);
    /// One supplier, or all by class code for an id below 1.
    RecordsetPtr rs厂商资料(std::int32_t rID = 0);
    /// One customer class, or all by class code for an id below 1.
    RecordsetPtr rs客户分类(std::int32_t rID = 0);
    /// One customer, or all by class code for an id below 1.
    RecordsetPtr rs客户资料(std::int32_t rID = 0);
    /// One project class, or all by class code for an id below 1.
    RecordsetPtr rs项目分类(std::int32_t rID = 0);
    /// One project, or all by class code and project number for an id below 1.
    RecordsetPtr rs项目资料(std::int32_t rID = 0);
    /// One department class, or all by class code for an id below 1.
    RecordsetPtr rs部门分类(std::int32_t rID = 0);
    /// One employee, or all by class code for an id below 1.
    RecordsetPtr rs雇员资料(std::int32_t rID = 0);
    /// Ids of the warehouses with balance rows in a month, or for a month below 1 all warehouses.
    RecordsetPtr rs仓库列表(std::int16_t rMonth = 0);
    /// Suppliers with inbound bills in a month, or for month 0 all.
    RecordsetPtr rs厂商列表(std::int16_t rMonth = 0);
    /// Customers with outbound bills in a month, or for month 0 all.
    RecordsetPtr rs客户列表(std::int16_t rMonth = 0);
    /// Projects with bills in a month, or for month 0 all.
    RecordsetPtr rs项目列表(std::int16_t rMonth = 0);
    /// A supplier's company name; "" when there is none.
    std::string Get厂商名称(std::int32_t rksID);
    /// A customer's company name; "" when there is none.
    std::string Get客户名称(std::int32_t rksID);
    /// A project's name; "" when there is none.
    std::string Get项目名称(std::int32_t rpjID);
    /// A project's number; "" when there is none.
    std::string Get项目编号(std::int32_t rpjID);
    /// A warehouse's name; "" when there is none, "全部仓库" for id 0.
    std::string Get仓库名称(std::int32_t dpID);
    /// The id of the supplier with a unit name; 0 when there is none.
    std::int32_t Get厂商ID(const std::string& r厂商名称);
    /// The id of the customer with a unit name; 0 when there is none.
    std::int32_t Get客户ID(const std::string& r客户名称);
    /// The id of the warehouse with a name; -1 when there is none, 0 for "全部仓库" and "全部".
    std::int32_t Get仓库ID(const std::string& DepotName);
    /// How many warehouses there are; error 6 above 32767.
    std::int16_t Get仓库数量();
    /// How many payment methods there are. Traps errors: 0 after one.
    std::int16_t Get收付款方式数量();
    /// Deletes a customer class, used or not. Traps errors: false after one.
    bool Del_客户分类(std::int32_t rClassID);
    /// Deletes a supplier class, used or not. Traps errors: false after one.
    bool Del_厂商分类(std::int32_t rClassID);
    /// Deletes a project class, used or not. Traps errors: false after one.
    bool Del_项目分类(std::int32_t rClassID);

    // Product catalogue

    /// The product class with a code, or for a blank code all, by code.
    RecordsetPtr rs商品分类(const std::string& rClass = "");
    /// A product, if wanted only when it is of a class. A call with an id below 1 sends a statement that is not valid.
    RecordsetPtr rs商品资料(std::int32_t rpdID = 0, const std::string& rClass = "", const std::string& rOrder = "");
    /// Distinct manufacturers of products, sorted.
    RecordsetPtr rs生产厂家();
    /// Distinct storage places of products, sorted.
    RecordsetPtr rs存放位置();
    /// Whether warehouse rdpID has balance rows, whatever the product.
    bool 商品已被使用(InOut<std::int32_t> rpdID, InOut<std::int32_t> rdpID = {});
    /// One attribute of a product: texts trimmed but for 商品条码 and 分类代码”, numbers as stored with 0 for Null.
    /// Without the product 0 for a piece of "单价,税率,库存,数量"; otherwise, and for an unknown name, "".
    Variant Get商品资料(std::int32_t rpdID, const std::string& rWhich);
    /// The name of a product class; "" when there is none.
    std::string Get商品分类名称(const std::string& rClassCode);
    /// How many products there are, of one class or (empty) of all. Traps errors: 0 after one, and above 32767.
    std::int16_t Get商品数量(const std::string& rClassCode = "");
    /// The id of the product with a bar code, or else an input code, a product code or a name; 0 when there is none.
    /// Traps errors: 0 after one.
    std::int32_t Get商品ID(const std::string& theName);
    /// The first price other than 0 on a customer's two oldest lines of a product before a date; 0 without one.
    double Get客户单价(std::int32_t rksID, std::int32_t rpdID, Date BillDate);

    // Bills

    /// Inbound lines of a warehouse and a product with header, warehouse and supplier; an id below 1 means all.
    RecordsetPtr rs入库记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rpdID);
    /// Outbound lines of a warehouse and a product with header, warehouse and customer; an id below 1 means all.
    RecordsetPtr rs出库记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rpdID);
    /// Inbound lines of a supplier with header, warehouse and product; an id below 1 means all.
    RecordsetPtr rs单位入库记录(InOut<std::int32_t> rksID);
    /// Outbound lines of a customer with header, warehouse and product; an id below 1 means all.
    RecordsetPtr rs单位出库记录(InOut<std::int32_t> rksID);
    /// Distinct handlers of inbound lines ("入库") or else of outbound lines, sorted.
    RecordsetPtr rs经手人(const std::string& m_Which);
    /// Distinct counterparts of inbound lines ("入库") or else of outbound lines, sorted.
    RecordsetPtr rs交接人(const std::string& m_Which);
    /// Distinct packings of inbound lines ("入库") or else of outbound lines, sorted.
    RecordsetPtr rs包装(const std::string& m_Which);
    /// Distinct storage slots of inbound lines ("入库") or else of outbound lines, sorted.
    RecordsetPtr rs货位(const std::string& m_Which);
    /// Net amount of one bill from the line table m_Which names; 0 without lines or when the count is unknown.
    Currency Get单据金额(std::int32_t rBillID, const std::string& m_Which);
    /// Quantity of one inbound bill ("入库") or else outbound bill; 0 without lines or when the count is unknown.
    double Get单据数量(std::int32_t rBillID, const std::string& m_Which);
    /// Stamps auditor and audit date (in Jet's form) on an inbound or outbound bill. Traps errors: false after one. Any
    /// other rWhich changes nothing and answers true.
    bool BillAdulting(InOut<std::string> rWhich, InOut<std::int32_t> rBillID, InOut<std::string> rAdultor,
                      InOut<Variant> rAdultDate);
    /// Deletes an inbound or outbound bill's header, then its lines. Always answers false.
    bool Del_单据(std::int32_t BillID, const std::string& Which);

    // Finding bills. Arguments that cannot be put into a text (an array that is too short, a text compared with a
    // number) give no recordset, "" or 0 without an error.

    /// Bills of a direction ("入库", or else outbound) with the sums of their lines, one row for each warehouse that
    /// the lines lie in; a bill without lines has Null sums. A filter that is Empty, "" for a text or 0 for an id or a
    /// bound is ignored. r包装Opr, r货位, r货位Opr, r期限 and r期限Opr have no effect.
    RecordsetPtr rs单据列表(InOut<Variant> rWhich, InOut<Variant> r单据类型, InOut<Variant> r起始日期,
                            InOut<Variant> r结束日期, InOut<Variant> r起始编号, InOut<Variant> r结束编号,
                            InOut<Variant> rdpID, InOut<Variant> rksID, InOut<std::int32_t> rpjID,
                            InOut<Variant> r经手人, InOut<Variant> r交接人, InOut<Variant> r包装,
                            InOut<Variant> r包装Opr, InOut<Variant> r货位, InOut<Variant> r货位Opr,
                            InOut<Variant> r期限, InOut<Variant> r期限Opr, InOut<Variant> r最小数量,
                            InOut<Variant> r最大数量, InOut<Variant> r最小金额, InOut<Variant> r最大金额);
    /// How many bills a month has, of one warehouse (0: all) and one bill kind (empty: all). Error 6 above 32767.
    std::int16_t Get_BillNum(std::int32_t rdpID, std::int16_t rMonth, const std::string& rBillType,
                             InOut<std::string> rWhich);
    /// How many bills a span of months and days has, as "12 张" or "(无)". Months and days are bounded separately; an
    /// end month or day other than 0 excludes every bill.
    std::string GetBillCount(const std::string& rWhich, InOut<std::string> rKind, InOut<std::int16_t> rBeginMonth,
                             InOut<std::int16_t> rStartDay, InOut<std::int16_t> rEndMonth, InOut<std::int16_t> rEndDay);
    /// The bill of the other direction with a bill's month, kind and number: the other half of a transfer; 0 without
    /// one. Traps errors: 0 after one.
    std::int32_t GetShiftID(const Variant& rBillID, InOut<std::string> rWhich);
    /// The outbound bill with an inbound bill's month, kind and number; 0 without one.
    std::int32_t Get_FromBillID(const Variant& rBillID);

    // Ad-hoc queries. rArray has twelve elements, from its lower bound on: first and last date, lowest and highest bill
    // number, handler, counterpart, and three pairs of a value and a comparison operator for packing, storage slot and
    // term. Ids below 1 and empty texts are ignored.

    /// Products on the matching lines with their sums, by rGroup (a line's column, 项目名称 or 项目编号) when it is
    /// given.
    RecordsetPtr rsSql单据记录(InOut<std::string> rWhich, InOut<std::string> r类型, InOut<std::int32_t> rdpID,
                               InOut<std::int32_t> rksID, InOut<std::int32_t> rpjID, InOut<std::string> rGroup,
                               InOut<std::shared_ptr<VariantArray>> rArray);
    /// The matching lines with product, project and customer.
    RecordsetPtr rsSql查询记录(InOut<std::string> rWhich, InOut<std::string> r类型, InOut<std::int32_t> rdpID,
                               InOut<std::int32_t> rksID, InOut<std::int32_t> rpjID,
                               InOut<std::shared_ptr<VariantArray>> rArray);
    /// Numbers of the bills with a product, joined by ";"; "" without a product. r类型 and the bill numbers of rArray
    /// have no effect. "(无名称)" counts as not given.
    std::string Get单据列表(InOut<std::string> rWhich, InOut<std::string> r类型, InOut<std::int32_t> rdpID,
                            InOut<std::int32_t> rksID, InOut<std::int32_t> rpdID,
                            InOut<std::shared_ptr<VariantArray>> rArray);
    /// How many bills match. The bill numbers of rArray have no effect. "(无名称)" counts as not given. Error 6 above
    /// 32767.
    std::int16_t Get单据统计(InOut<std::string> rWhich, InOut<std::string> r单据名称, InOut<std::string> r单据类型,
                             InOut<std::int32_t> rdpID, InOut<std::int32_t> rksID, InOut<std::int32_t> rpdID,
                             InOut<std::shared_ptr<VariantArray>> rArray);

    // Warehouse balance and month-end closing

    /// Years and months that have balance rows; rDESC puts the months in descending order.
    RecordsetPtr rs月份列表(bool rDESC = false);
    /// Deletes all balance rows of a warehouse. Traps errors and always answers false.
    bool Del仓库余额(std::int32_t rdpID);
    /// Balance rows of a warehouse and a month, editable; 0 means all.
    RecordsetPtr rs仓库余额表(std::int32_t rdpID = 0, std::int16_t rMonth = 0);
    /// Deletes the balance rows of a warehouse and a month; 0 means all, so that both 0 empty the table.
    void Del仓库余额表(std::int32_t rdpID = 0, std::int16_t rMonth = 0);
    /// Deletes the balance rows of every month before rMonth, of one warehouse or (0) of all.
    void 清理仓库余额表(InOut<std::int16_t> rMonth, std::int32_t rdpID = 0);
    /// Asks for inbound lines of a product, but answers false whatever it finds.
    bool 商品已经入库(InOut<std::int32_t> rpdID, std::int32_t rdpID = 0);
    /// Opening quantities and amounts per product: with rInitial of all months, otherwise of month rMotnh, 0 included.
    RecordsetPtr rs仓库余额表期初(std::int16_t rMotnh = 0, std::int32_t rdpID = 0, bool rInitial = false);
    /// Balance figures per product for a month, of one warehouse or (0) of all. Month 0 becomes the first month of the
    /// table; while there is none, nothing is run and the answer is null.
    RecordsetPtr rs余额记录(std::int32_t rdpID = 0, InOut<std::int16_t> rMonth = {});
    /// Finds products with bill lines but no balance row up to rMonth (0: in any month) and, when the host's message
    /// box is answered with yes, adds rows for them; first for the inbound lines, then for the outbound ones.
    void CheckBnProduct(std::int16_t rMonth);

    /// Closes a warehouse's month: fills its balance rows from the bills (outbound amounts from cost bills when
    /// rCostUsed) and adds the next month's rows, with rBookCurrentDate as their note. True when done or when there was
    /// nothing to close. Traps errors: false after one, what was written stays and the bar stays visible.
    bool Close_DepotBalance(std::int32_t rdpID, std::int16_t rMonth, InOut<bool> rCostUsed,
                            InOut<Variant> rBookCurrentDate, ProgressBar* rpgBar = nullptr);
    /// Writes a warehouse's closing date and closed flag.
    void UpdateDepotClosedFlag(InOut<std::int32_t> rdpID, InOut<Date> rDate, InOut<bool> rClosed);
    /// Whether a warehouse has outbound lines, or else sales summary lines, in a month. A statement that fails counts
    /// as one without rows.
    bool isSaled(std::int32_t dpID, std::int16_t Month);

    // Per-product stock figures. What names the figure: "数量", "金额" (net), "税额", "合计" (gross) or "单价". An id
    // or a month below 1 means all. All but Get商品库存 trap errors: 0 after one.

    /// Opening quantity or amount from the balance table; any other What means the unit price.
    double Get上期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What);
    /// Quantity or amount in stock at a month's end, the outbound amount taken from the cost bills when CostUsed; 0 for
    /// month 0 and for any other What.
    double Get本期库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                       bool CostUsed = false);
    /// A figure of the inbound lines of a month or, with isTotal, of the year up to it. Which picks the bill kind:
    /// "直接", "购进", "调拨", or any other text for all.
    Currency Get商品入库(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                         const std::string& Which = "", bool isTotal = false);
    /// As Get商品入库, for the outbound lines.
    Currency Get商品出库(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                         const std::string& Which = "", bool isTotal = false);
    /// As Get本期库存, month 0 being all months, and the unit price: error 11 when the quantity is 0.
    double Get商品库存(std::int32_t rdpID, std::int32_t rpdID, std::int16_t rMonth, const std::string& What,
                       bool CostUsed = false);
    /// Quantity or amount of the cost bills of a month or, with isTotal, of the year up to it; any other What means the
    /// unit price. Without a product the figure is the first product's.
    Currency Get商品成本(std::int32_t rdpID, std::int32_t rpdID, const std::string& rMonth, const std::string& What,
                         bool isTotal = false);

    // Reports. Months run from rBeginMonth to rEndMonth; one below 1 leaves that side open.

    /// Distinct dates of all bills, column 日期, ascending.
    RecordsetPtr rs单据日期列表();
    /// Products that occur in a source, by class and code: rWhere is "盘点", "仓库", "入库", "出库" or "成本". Any
    /// other sends a statement that is not valid.
    RecordsetPtr rs商品列表(std::int32_t rdpID, std::int32_t rksID, std::int16_t rBeginMonth, std::int16_t rEndMonth,
                            const std::string& rWhere, const std::string& rNo1 = "", const std::string& rNo2 = "");
    /// A product's balance figures per year and month, of one warehouse or (0) of all.
    RecordsetPtr rs期初记录(std::int32_t rdpID, std::int32_t rpdID);
    /// Cost bills of a product with their lines, of one warehouse or (0) of all.
    RecordsetPtr rs成本记录(std::int32_t rdpID, InOut<std::int32_t> rpdID);
    /// Sums per product of a bill family ("入库", "出库", "成本"); rType "购进" or "调拨" picks bill kinds.
    RecordsetPtr rs商品汇总(const std::string& rWhich, std::int16_t rBeginMonth, std::int16_t rEndMonth,
                            std::int32_t rdpID, std::int32_t rksID, const std::string& rType);
    /// Distinct values of a free-text column (经手人, 交接人, 包装 or 货位) of a month's inbound lines; null for
    /// another.
    RecordsetPtr rs入库扩展列表(InOut<std::string> rWho, InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID);
    /// Distinct values of such a column of all outbound lines, of any month and warehouse; null for another.
    RecordsetPtr rs出库扩展列表(InOut<std::string> rWho, InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID);
    /// Outbound quantity and net amount per product and value of such a column in a month, 0 included; null for
    /// another.
    RecordsetPtr rs出库扩展合计(InOut<std::string> rWho, InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID);
    /// Cost sums per product; a negative month leaves both sides open.
    RecordsetPtr rs成本汇总(InOut<std::int16_t> rBeginMonth, InOut<std::int16_t> rEndMonth, InOut<std::int32_t> rdpID);
    /// Sums per supplier ("厂商") or else per customer; a negative month leaves both sides open.
    RecordsetPtr rs单位汇总(InOut<std::int16_t> rBeginMonth, InOut<std::int16_t> rEndMonth, InOut<std::string> rWhich);
    /// Sums per product of a bill family on a day or, with rTotal, in its month before it; ids below 1 mean all.
    /// Inbound for a rWhich within "入库、购进、调入", but always outbound in SQL Server's dialect.
    RecordsetPtr rs日报记录(InOut<std::int32_t> rdpID, InOut<std::int32_t> rksID, InOut<Date> rDate,
                            InOut<std::string> rWhich, InOut<bool> rTotal = {});
    /// Opening stock, movements and closing stock per day of a month that has any; days with outbound movements alone
    /// come last. A recordset of its own, bound to no table; amounts are Doubles in it.
    RecordsetPtr rs日报列表(InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID);
    /// Outbound goods per project, a column a month. rWhich is the measure of Jet's months: "金额"; anything else
    /// becomes "数量". SQL Server's twelve months are always quantities.
    RecordsetPtr rs项目汇总表(InOut<std::string> rWhich = {});

    // Operators and log. Unless noted, errors are trapped: false, "" or 0 after one. The rights 发货单位, 收货单位 and
    // 部件管理 are kept in the columns 资产处理, 卡片打印 and 资产折旧; any other right names its column.

    /// One operator, or for an id below 1 all, by id; an empty table first gets the operator 系统操作员. Traps nothing.
    RecordsetPtr rs操作员(std::int32_t rID = 0);
    /// Adds an operator without a password, with the right 凭证处理 alone; answers its id. Traps nothing.
    std::int32_t 操作员_Append(const std::string& rName);
    /// Gives an operator another name.
    bool 操作员_Update(std::int32_t rID, const std::string& rName);
    /// Grants or revokes a right.
    bool 操作权限_Update(std::int32_t rID, const std::string& rRightName, InOut<bool> rValue);
    /// Sets the warehouse that an operator manages.
    bool 管理仓库_Update(std::int32_t rID, InOut<std::int32_t> rdpID);
    /// Deletes an operator.
    bool 操作员_Delete(std::int32_t rID);
    /// Revokes all rights of an operator.
    bool 操作权限_Clear(std::int32_t rID);
    /// The password of an operator by id or, for an id below 1, by name; "" when there is none.
    std::string GetPassword(const std::string& rName, std::int32_t rID = 0);
    /// Sets the password of an operator by id or, for an id below 1, by name.
    bool Update_Password(const std::string& rName, InOut<std::string> rPassWord, std::int32_t rID = 0);
    /// Empties an operator's password.
    bool Clear_Password(std::int32_t rID);
    /// Whether an operator has a right.
    bool Get操作权限(std::int32_t rID, const std::string& rFieldName);
    /// The warehouse that an operator manages.
    std::int32_t Get管理仓库(std::int32_t rID);
    /// One column of an operator as trimmed text.
    std::string Get操作员(std::int32_t rID, const std::string& rFieldName);
    /// Whether an operator has no log entries, and so may be deleted. Traps nothing.
    bool AllowDelOperator(std::int32_t Opr);
    /// The log, newest first. Traps nothing.
    RecordsetPtr rsLog();
    /// Deletes every log entry with an id below the newest entry's. rMaxRecs * 2 / 3 must be a whole number above 0,
    /// and has no other effect.
    bool Delete_LogRecs(std::int32_t rMaxRecs);

    // Grid layout and report history

    /// Applies a saved column layout to a grid or, with rSetting, saves the grid's. An empty rFlag becomes "Default".
    /// isSQL says how the table Header names its first columns: TableName and ColIndex, or else Table and Index. Always
    /// answers false.
    bool Header(InOut<GridPtr> rfg, InOut<std::string> rTableName, InOut<std::string> rFlag = {}, bool rSetting = false,
                bool isSQL = false);
    /// Saved report settings, by id.
    RecordsetPtr rsHistory();
    /// Deletes a saved report setting. Traps errors: false after one.
    bool History_Del(std::int32_t rID);
    /// The text of a saved report setting, trimmed; "" when there is none.
    std::string GetHistorySetting(std::int32_t rID);
    /// Changes a saved report setting or, for id 0, adds one and writes its id to rID. Answers -1; traps errors: 0
    /// after one.
    std::int32_t History_Update(InOut<std::int32_t> rID, InOut<std::string> rCaption, InOut<std::string> rSetting,
                                InOut<Date> rDate);

    // Haulage

    /// Deliveries of the work orders that meet the filters; what is Empty, "" or 0 is ignored, rpdID has no effect. A
    /// bound on quantity or amount sends a statement that is not valid. Null when the text cannot be composed.
    RecordsetPtr rs工作单列表(InOut<Variant> r起始日期, InOut<Variant> r结束日期, InOut<Variant> r起始编号,
                              InOut<Variant> r结束编号, InOut<Variant> r车牌号, InOut<Variant> r司机,
                              InOut<Variant> r跟车人, InOut<Variant> r收货款, InOut<Variant> r收货款Opr,
                              InOut<Variant> r外用车, InOut<Variant> r违章, InOut<Variant> r厂商ID,
                              InOut<Variant> r配送单号, InOut<Variant> r配送单号Opr, InOut<Variant> r客户ID,
                              InOut<Variant> r送货地点, InOut<Variant> rpdID, InOut<Variant> r最小数量,
                              InOut<Variant> r最大数量, InOut<Variant> r最小金额, InOut<Variant> r最大金额);
    /// The drivers' pay: with rCreate a new sheet from a month's work orders, for month 0 the sums of the months up to
    /// rMonth2, for a month below 0 (or without rMonth2) of all, otherwise the saved month.
    RecordsetPtr rs工资表(std::int16_t rMonth1, InOut<std::int16_t> rMonth2 = {}, InOut<bool> rCreate = {});
    /// Replaces a saved month, whatever its year, by the rows of a grid but for the last one. The keys of the grid's
    /// columns are the table's column names, but "实发" for 实发工资.
    bool Update工资表(std::int16_t rYear, std::int16_t rMonth, InOut<GridPtr> rfg);

private:
    struct Listener {
        std::int32_t cookie;
        __CTables* sink;
    };

    Currency StockFigure(std::int32_t warehouse, std::int32_t product, std::int16_t month, const std::string& what,
                         bool costUsed);
    void RepairBalanceRows(const std::string& kind, const std::string& missing, std::int16_t month);

    ConnectionPtr cnn_;
    std::string speciality_;
    bool isSQL_ = false;
    std::shared_ptr<Host> host_;
    std::vector<Listener> listeners_;
    std::int32_t lastCookie_ = 0;
};

}  // namespace kpTables
