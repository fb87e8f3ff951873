// Options, the book's period, a new book.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

std::vector<std::string> FrameTexts() {
    return {
        "Select * From 系统选项 Where Item='单位名称'",
        "Select Distinct top 1 年份,月份 From 仓库余额表 Order by 年份,月份",
        "Select Distinct Top 2 年份,月份 From 仓库余额表 Order by 年份,月份 DESC",
        "Select * From 收付款方式",
        "Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values (' ',' ',' ')",
        "Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values ('现金','现金','101')",
        "Delete from 入库目录",
        "Delete from 入库记录",
        "Delete from 出库目录",
        "Delete from 出库记录",
        "Delete from 成本目录",
        "Delete from 成本记录",
        "Update 仓库余额表 Set 年份=2005 ,月份=3",
        "Update 仓库余额表 Set 年份=2005 ,月份=-1",
    };
}

}  // namespace kpTables::sql::parse
