-- Stocktaking.
CREATE TABLE 仓库盘点表 (
    pdID LONG,
    月份 SHORT,
    dpID LONG
)