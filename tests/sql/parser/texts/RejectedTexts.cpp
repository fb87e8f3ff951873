#include "texts/Texts.h"

namespace kpTables::sql::parse {

std::vector<RejectedText> RejectedTexts() {
    return {
        // A product list without an id: nothing guards the condition.
        {"Select * From 商品设置 Where ", "Syntax error at line 1, column 26 at the end: expected an expression"},
        {"Select * From 商品设置 Where And  ClassCode='01'",
         "Syntax error at line 1, column 26 near \"And\": expected an expression"},
        {"Select * From 商品设置 Where  Order by 商品编号",
         "Syntax error at line 1, column 27 near \"Order\": expected an expression"},
        // A product list of an unknown source.
        {"Select * From 商品设置 Where pdID in () Order by ClassCode,商品编号",
         "Syntax error at line 1, column 35 near \")\": expected a value or a query in the parentheses of IN"},
        // A name with a quote in it.
        {"Select * From 仓库设置 Where 仓库名称='一号'仓库'",
         "Syntax error at line 1, column 37 near \"'\": the text has no closing quote"},
        {"Update 操作员 Set 密码='a'b' Where ID=5",
         "Syntax error at line 1, column 23 near \"' Where ID=5\": the text has no closing quote"},
        // An audit without a date.
        {"Update 入库目录 Set 审核员='王芳',审核日期=## Where BillID=5",
         "Syntax error at line 1, column 31 near \"##\": expected a date between the # signs"},
        // A filter by an id that is Null.
        {"Select BillID From 入库目录 Where Lst.dpID= GROUP BY BillID",
         "Syntax error at line 1, column 41 near \"GROUP\": expected an expression"},
        // A packing value without an operator.
        {"Select billID From 入库记录 Where True  And 包装'箱'",
         "Syntax error at line 1, column 43 near \"'箱'\": expected the statement's end"},
        // The repair of an empty balance table, which has no year.
        {"Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (,3,5,2)",
         "Syntax error at line 1, column 45 near \",\": expected an expression"},
        // A share of the log that is no whole number.
        {"Select Top 66.6666666666667 * From Log Order by logDate DESC",
         "Syntax error at line 1, column 12 near \"66.6666666666667\": expected a whole number after TOP"},
        {"Select Top -2 * From Log Order by logDate DESC",
         "Syntax error at line 1, column 17 near \"From\": expected an expression"},
        // Work orders filtered by quantity: nothing stands between the conditions.
        {"Select Lst.BillID FROM 派遣目录 AS Lst Where (( Lst.司机='周勇'Sum(Rec.数量)>=5))ORDER BY Lst.年份",
         "Syntax error at line 1, column 56 near \"Sum\": expected ')'"},
        {"Select Lst.BillID FROM 派遣目录 AS Lst INNER JOIN 派遣记录 AS Rec ON Lst.BillID = Rec.BillID "
         "Sum(Rec.数量)>=5ORDER BY Lst.年份",
         "Syntax error at line 1, column 86 near \"Sum\": expected the statement's end"},
    };
}

}  // namespace kpTables::sql::parse
