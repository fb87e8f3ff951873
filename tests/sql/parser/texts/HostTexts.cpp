// Operators, the log, grid layouts and saved report settings.
#include "texts/Texts.h"

namespace kpTables::sql::parse {

std::vector<std::string> HostTexts() {
    return {
        "Select * From 操作员 Order By ID",
        "Select * From 操作员 Where ID=5",
        "Update 操作员 set 姓名='王芳' Where ID=5",
        "Update 操作员 Set 资产处理=True Where ID=5",
        "Update 操作员 Set 凭证处理=False Where ID=5",
        "Update 操作员 Set dpID=3 Where ID=5",
        "Delete From 操作员 Where ID=5",
        "Select * From 操作员 Where姓名='王芳'",
        "Update 操作员 Set 密码='secret' Where ID=5",
        "Update 操作员 Set 密码='secret' Where 姓名='王芳'",
        "Update 操作员 Set 密码='' Where ID=5",
        "Select * From Log Where Operator='5'",
        "Select * From Log Order by logDate DESC",
        "Select Top 200 * From Log Order by logDate DESC",
        "Delete From Log Where logID<1000",
        "Select * From Header Where TableName='商品' And Flag='Default'",
        "Select * From Header Where Table='商品' And Flag='Default'",
        "Delete From Header Where TableName='商品' And Flag='Default'",
        "Delete From Header Where Table='商品' And Flag='Default'",
        "Select * From History Order by rpID",
        "Delete From History Where rpID=5",
        "Select * From History Where rpID=5",
    };
}

}  // namespace kpTables::sql::parse
