-- The tables of an account book, in Jet's DDL. Every engine makes its book from this text.
-- A statement ends with a semicolon at the end of its line. Figures default to 0, so that a row entered with only its
-- keys counts in sums.

-- Warehouses and the closing state of each.
CREATE TABLE 仓库设置 (
    dpID COUNTER PRIMARY KEY,
    仓库名称 TEXT(255),
    结帐日期 DATETIME,
    结帐标志 YESNO DEFAULT 0
);
CREATE INDEX 仓库名称 ON 仓库设置 (仓库名称);

-- Suppliers and customers with their classes.
CREATE TABLE 厂商分类 (
    ClassID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    ClassName TEXT(255)
);
CREATE TABLE 厂商资料 (
    KSID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    企业名称 TEXT(255),
    单位名称 TEXT(255)
);
CREATE INDEX 单位名称 ON 厂商资料 (单位名称);
CREATE TABLE 客户分类 (
    ClassID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    ClassName TEXT(255)
);
CREATE TABLE 客户资料 (
    KSID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    企业名称 TEXT(255),
    单位名称 TEXT(255)
);
CREATE INDEX 单位名称 ON 客户资料 (单位名称);

-- Projects with their classes.
CREATE TABLE 项目分类 (
    ClassID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    ClassName TEXT(255)
);
CREATE TABLE 项目设置 (
    项目ID COUNTER PRIMARY KEY,
    项目编号 TEXT(255),
    项目名称 TEXT(255),
    工程名称 TEXT(255),
    工程性质 TEXT(255),
    ClassCode TEXT(255),
    ksID LONG DEFAULT 0
);

-- Departments and employees.
CREATE TABLE 部门分类 (
    ClassID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    ClassName TEXT(255)
);
CREATE TABLE 雇员资料 (
    雇员ID COUNTER PRIMARY KEY,
    ClassCode TEXT(255),
    姓名 TEXT(255)
);

-- Products with their classes.
CREATE TABLE 商品分类 (
    ClassCode TEXT(255) PRIMARY KEY,
    ClassName TEXT(255)
);
CREATE TABLE 商品设置 (
    pdID COUNTER PRIMARY KEY,
    商品名称 TEXT(255),
    商品编号 TEXT(255),
    KSID LONG DEFAULT 0,
    ClassCode TEXT(255),
    规格 TEXT(255),
    型号 TEXT(255),
    计量单位 TEXT(255),
    进位方法 TEXT(255),
    计价方法 TEXT(255),
    默认单价 DOUBLE DEFAULT 0,
    普通税率 DOUBLE DEFAULT 0,
    增值税率 DOUBLE DEFAULT 0,
    购进单价 DOUBLE DEFAULT 0,
    普购税率 DOUBLE DEFAULT 0,
    增购税率 DOUBLE DEFAULT 0,
    最低库存 DOUBLE DEFAULT 0,
    最高库存 DOUBLE DEFAULT 0,
    单位数量 DOUBLE DEFAULT 0,
    商品条码 TEXT(255),
    输入简码 TEXT(255),
    生产厂家 TEXT(255),
    存放地点 TEXT(255),
    存放位置 TEXT(255),
    备注 TEXT(255)
);
CREATE INDEX 商品条码 ON 商品设置 (商品条码);
CREATE INDEX 输入简码 ON 商品设置 (输入简码);
CREATE INDEX 商品编号 ON 商品设置 (商品编号);
CREATE INDEX 商品名称 ON 商品设置 (商品名称);
CREATE INDEX ClassCode ON 商品设置 (ClassCode);

-- Inbound and outbound bills: a header and any number of lines, joined by BillID. The lines' 仓库 and the headers' 编号 and
-- BillType are what some of the host's lists filter and sort by; 项目ID is what the list of a month's projects calls
-- pjID. The lines' index on BillID includes the warehouse, as the bill list sums a bill's lines by warehouse.
-- The headers' index on dpID alone yields a warehouse's bills in BillID order, in which the bill list groups them; the
-- one with the month yields them by month.
CREATE TABLE 入库目录 (
    BillID COUNTER PRIMARY KEY,
    年份 SHORT,
    月份 SHORT,
    日子 SHORT,
    单据类型 TEXT(255),
    类型 TEXT(255),
    单据编号 TEXT(255),
    编号 TEXT(255),
    BillType TEXT(255),
    dpID LONG,
    ksID LONG DEFAULT 0,
    pjID LONG DEFAULT 0,
    录入员 TEXT(255),
    录入日期 DATETIME,
    审核员 TEXT(255),
    审核日期 DATETIME,
    说明 TEXT(255),
    项目ID LONG AS (pjID)
);
CREATE INDEX 仓库月份 ON 入库目录 (dpID, 月份);
CREATE INDEX dpID ON 入库目录 (dpID);
CREATE INDEX 日期 ON 入库目录 (年份, 月份, 日子);
CREATE INDEX 月份单据 ON 入库目录 (月份, 单据类型, 单据编号);
CREATE INDEX 单据编号 ON 入库目录 (单据编号);
CREATE INDEX ksID ON 入库目录 (ksID);
CREATE TABLE 入库记录 (
    BillID LONG,
    pdID LONG,
    dpID LONG,
    单价 CURRENCY DEFAULT 0,
    数量 DOUBLE DEFAULT 0,
    金额 CURRENCY DEFAULT 0,
    税额 CURRENCY DEFAULT 0,
    除税单价 CURRENCY DEFAULT 0,
    除税金额 CURRENCY DEFAULT 0,
    经手人 TEXT(255),
    交接人 TEXT(255),
    包装 TEXT(255),
    货位 TEXT(255),
    期限 DOUBLE DEFAULT 0,
    仓库 LONG DEFAULT 0
);
CREATE INDEX BillID ON 入库记录 (BillID, dpID);
CREATE INDEX pdID ON 入库记录 (pdID);
CREATE TABLE 出库目录 (
    BillID COUNTER PRIMARY KEY,
    年份 SHORT,
    月份 SHORT,
    日子 SHORT,
    单据类型 TEXT(255),
    类型 TEXT(255),
    单据编号 TEXT(255),
    编号 TEXT(255),
    BillType TEXT(255),
    dpID LONG,
    ksID LONG DEFAULT 0,
    pjID LONG DEFAULT 0,
    录入员 TEXT(255),
    录入日期 DATETIME,
    审核员 TEXT(255),
    审核日期 DATETIME,
    说明 TEXT(255),
    项目ID LONG AS (pjID)
);
CREATE INDEX 仓库月份 ON 出库目录 (dpID, 月份);
CREATE INDEX dpID ON 出库目录 (dpID);
CREATE INDEX 日期 ON 出库目录 (年份, 月份, 日子);
CREATE INDEX 月份单据 ON 出库目录 (月份, 单据类型, 单据编号);
CREATE INDEX 单据编号 ON 出库目录 (单据编号);
CREATE INDEX ksID ON 出库目录 (ksID);
CREATE TABLE 出库记录 (
    BillID LONG,
    pdID LONG,
    dpID LONG,
    单价 CURRENCY DEFAULT 0,
    数量 DOUBLE DEFAULT 0,
    金额 CURRENCY DEFAULT 0,
    税额 CURRENCY DEFAULT 0,
    除税单价 CURRENCY DEFAULT 0,
    除税金额 CURRENCY DEFAULT 0,
    经手人 TEXT(255),
    交接人 TEXT(255),
    包装 TEXT(255),
    货位 TEXT(255),
    期限 DOUBLE DEFAULT 0,
    仓库 LONG DEFAULT 0
);
CREATE INDEX BillID ON 出库记录 (BillID, dpID);
CREATE INDEX pdID ON 出库记录 (pdID);

-- Cost bills.
CREATE TABLE 成本目录 (
    CostID COUNTER PRIMARY KEY,
    年份 SHORT,
    月份 SHORT,
    日子 SHORT,
    dpID LONG
);
CREATE INDEX 仓库月份 ON 成本目录 (dpID, 月份);
CREATE TABLE 成本记录 (
    CostID LONG,
    pdID LONG,
    单价 CURRENCY DEFAULT 0,
    数量 DOUBLE DEFAULT 0,
    金额 CURRENCY DEFAULT 0
);
CREATE INDEX CostID ON 成本记录 (CostID);

-- The monthly balance of every product in every warehouse. Its keys are not unique: closing a month twice adds the next
-- month's rows twice unless they were removed before.
CREATE TABLE 仓库余额表 (
    年份 SHORT,
    月份 SHORT,
    pdID LONG,
    dpID LONG,
    上期库存单价 DOUBLE DEFAULT 0,
    上期库存数量 DOUBLE DEFAULT 0,
    上期库存金额 CURRENCY DEFAULT 0,
    本期入库单价 DOUBLE DEFAULT 0,
    本期入库数量 DOUBLE DEFAULT 0,
    本期入库金额 CURRENCY DEFAULT 0,
    累计入库数量 DOUBLE DEFAULT 0,
    累计入库金额 CURRENCY DEFAULT 0,
    本期出库单价 DOUBLE DEFAULT 0,
    本期出库数量 DOUBLE DEFAULT 0,
    本期出库金额 CURRENCY DEFAULT 0,
    累计出库数量 DOUBLE DEFAULT 0,
    累计出库金额 CURRENCY DEFAULT 0,
    本期库存单价 DOUBLE DEFAULT 0,
    本期库存数量 DOUBLE DEFAULT 0,
    本期库存金额 CURRENCY DEFAULT 0,
    备注 TEXT(255)
);
CREATE INDEX 仓库月份 ON 仓库余额表 (dpID, 月份);
CREATE INDEX 年份月份 ON 仓库余额表 (年份, 月份);
CREATE INDEX pdID ON 仓库余额表 (pdID, dpID, 月份);

-- Stocktaking.
CREATE TABLE 仓库盘点表 (
    pdID LONG,
    月份 SHORT,
    dpID LONG
);
CREATE INDEX 仓库月份 ON 仓库盘点表 (dpID, 月份);

-- Sales summaries entered instead of outbound bills.
CREATE TABLE 销售汇总目录 (
    ID COUNTER PRIMARY KEY,
    月份 SHORT,
    dpID LONG
);
CREATE TABLE 销售汇总记录 (
    ListID LONG
);
CREATE INDEX ListID ON 销售汇总记录 (ListID);

-- Payment methods, options and the book's own information.
CREATE TABLE 收付款方式 (
    收付款方式 TEXT(255),
    科目名称 TEXT(255),
    科目代码 TEXT(255)
);
CREATE TABLE 系统选项 (
    Item TEXT(255) PRIMARY KEY,
    Discription MEMO
);
CREATE TABLE AccInfo (
    帐簿名称 TEXT(255),
    单位名称 TEXT(255),
    财务主管 TEXT(255),
    法人代表 TEXT(255),
    帐簿编号 TEXT(255),
    单位地址 TEXT(255),
    联系电话 TEXT(255),
    电子邮件 TEXT(255),
    网络地址 TEXT(255),
    工商登记号 TEXT(255),
    税务登记号 TEXT(255),
    企业代码 TEXT(255),
    企业类型 TEXT(255),
    建帐日期 TEXT(255),
    当前日期 TEXT(255)
);

-- Operators with one flag per right, from position 4 on, and their log.
CREATE TABLE 操作员 (
    ID COUNTER PRIMARY KEY,
    姓名 TEXT(255),
    密码 TEXT(255),
    dpID LONG DEFAULT 0,
    入库处理 YESNO DEFAULT 0,
    出库处理 YESNO DEFAULT 0,
    成本处理 YESNO DEFAULT 0,
    单据审核 YESNO DEFAULT 0,
    单据删除 YESNO DEFAULT 0,
    月末结帐 YESNO DEFAULT 0,
    库存查询 YESNO DEFAULT 0,
    报表打印 YESNO DEFAULT 0,
    商品管理 YESNO DEFAULT 0,
    仓库管理 YESNO DEFAULT 0,
    项目管理 YESNO DEFAULT 0,
    凭证处理 YESNO DEFAULT 0,
    资产处理 YESNO DEFAULT 0,
    卡片打印 YESNO DEFAULT 0,
    资产折旧 YESNO DEFAULT 0,
    系统设置 YESNO DEFAULT 0
);
CREATE INDEX 姓名 ON 操作员 (姓名);
CREATE TABLE Log (
    logID COUNTER PRIMARY KEY,
    Operator TEXT(255),
    logDate DATETIME,
    内容 TEXT(255)
);
CREATE INDEX Operator ON Log (Operator);
CREATE INDEX logDate ON Log (logDate);

-- Saved column layouts of the host's grids and saved report settings.
CREATE TABLE Header (
    [Table] TEXT(255),
    [Index] LONG,
    Flag TEXT(255),
    colkey TEXT(255),
    Header TEXT(255),
    Hidden YESNO DEFAULT 0,
    Width DOUBLE DEFAULT 0
);
CREATE INDEX TableFlag ON Header ([Table], Flag);
CREATE TABLE History (
    rpID COUNTER PRIMARY KEY,
    Caption TEXT(255),
    setting MEMO,
    rptDate DATETIME
);

-- Haulage: work orders, their deliveries and the drivers' monthly pay.
CREATE TABLE 派遣目录 (
    BillID COUNTER PRIMARY KEY,
    年份 SHORT,
    月份 SHORT,
    日子 SHORT,
    单据编号 TEXT(255),
    录入员 TEXT(255),
    录入日期 DATETIME,
    车牌号 TEXT(255),
    司机 TEXT(255),
    跟车人 TEXT(255),
    货款 CURRENCY DEFAULT 0,
    外用车 YESNO DEFAULT 0,
    违章 YESNO DEFAULT 0,
    部门ID LONG DEFAULT 0,
    说明 TEXT(255),
    审核员 TEXT(255),
    审核日期 DATETIME
);
CREATE INDEX 日期 ON 派遣目录 (年份, 月份, 日子);
CREATE TABLE 派遣记录 (
    BillID LONG,
    pdID LONG,
    厂商ID LONG,
    客户ID LONG,
    配送单号 TEXT(255),
    送货地点 TEXT(255),
    数量 DOUBLE DEFAULT 0,
    金额 CURRENCY DEFAULT 0
);
CREATE INDEX BillID ON 派遣记录 (BillID);
CREATE TABLE 工资表 (
    年份 SHORT,
    月份 SHORT,
    姓名 TEXT(255),
    总收入 CURRENCY DEFAULT 0,
    油费 CURRENCY DEFAULT 0,
    外加油费 CURRENCY DEFAULT 0,
    过路费 CURRENCY DEFAULT 0,
    装卸费 CURRENCY DEFAULT 0,
    折旧 CURRENCY DEFAULT 0,
    保险 CURRENCY DEFAULT 0,
    利润 CURRENCY DEFAULT 0,
    税金 CURRENCY DEFAULT 0,
    养路费 CURRENCY DEFAULT 0,
    装卸工资 CURRENCY DEFAULT 0,
    费用1 CURRENCY DEFAULT 0,
    费用2 CURRENCY DEFAULT 0,
    费用3 CURRENCY DEFAULT 0,
    总费用 CURRENCY DEFAULT 0,
    其它1 CURRENCY DEFAULT 0,
    其它2 CURRENCY DEFAULT 0,
    其它3 CURRENCY DEFAULT 0,
    应付 CURRENCY DEFAULT 0,
    所得税 CURRENCY DEFAULT 0,
    电话费 CURRENCY DEFAULT 0,
    扣款1 CURRENCY DEFAULT 0,
    扣款2 CURRENCY DEFAULT 0,
    扣款3 CURRENCY DEFAULT 0,
    实发工资 CURRENCY DEFAULT 0,
    Flag TEXT(255),
    备注 TEXT(255)
);
CREATE INDEX 月份 ON 工资表 (月份);
