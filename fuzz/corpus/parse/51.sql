CREATE TABLE 销售汇总记录 (
    ListID LONG
)