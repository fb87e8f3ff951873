CREATE TABLE 系统选项 (
    Item TEXT(255) PRIMARY KEY,
    Discription MEMO
)