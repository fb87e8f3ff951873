CREATE TABLE 出库目录 (
    BillID COUNTER PRIMARY KEY,
    年份 SHORT,
    月份 SHORT,
    日型 TEXT(255),
    类型 TEXT(2505),
    单据编号 AS (pjID)
)