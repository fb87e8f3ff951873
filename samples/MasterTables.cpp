#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "Calendar.h"
#include "CsvFile.h"
#include "Tables.h"

namespace kpTables::sample {

namespace {

using std::filesystem::path;

/// The book's information and the options of the same names.
constexpr std::array<std::pair<const char*, const char*>, 15> kBook = {{{"帐簿名称", "2003年度库存帐"},
                                                                        {"单位名称", "杭州运河建材批发有限公司"},
                                                                        {"财务主管", "胡美娟"},
                                                                        {"法人代表", "沈国梁"},
                                                                        {"帐簿编号", "KC2003-01"},
                                                                        {"单位地址", "杭州市拱墅区石祥路建材市场8幢"},
                                                                        {"联系电话", "0571-88012630"},
                                                                        {"电子邮件", "zhangwu@yunhe-jiancai.example"},
                                                                        {"网络地址", "www.yunhe-jiancai.example"},
                                                                        {"工商登记号", "3301002006318"},
                                                                        {"税务登记号", "330105704215836"},
                                                                        {"企业代码", "70421583-6"},
                                                                        {"企业类型", "有限责任公司"},
                                                                        {"建帐日期", "2003年01月01日"},
                                                                        {"当前日期", "2003-1-1"}}};

void WriteClasses(const path& folder, const char* table, const std::vector<Class>& classes, bool withId) {
    if (!withId) {
        CsvFile file(folder, table, {"ClassCode", "ClassName"});
        for (const Class& each : classes) {
            file << each.code << each.name;
            file.EndRow();
        }
        file.Close();
        return;
    }
    CsvFile file(folder, table, {"ClassID", "ClassCode", "ClassName"});
    int id = 0;
    for (const Class& each : classes) {
        file << ++id << each.code << each.name;
        file.EndRow();
    }
    file.Close();
}

void WritePartners(const path& folder, const char* table, const std::vector<Partner>& partners) {
    CsvFile file(folder, table, {"KSID", "ClassCode", "企业名称", "单位名称"});
    for (const Partner& partner : partners) {
        file << partner.id << partner.classCode << partner.company << partner.unitName;
        file.EndRow();
    }
    file.Close();
}

void WriteDepots(const path& folder, const Firm& firm) {
    CsvFile file(folder, "仓库设置", {"dpID", "仓库名称", "结帐日期", "结帐标志"});
    for (const Depot& depot : firm.depots) {
        file << depot.id << depot.name << std::to_string(kYear - 1) + "-12-31" << 0;
        file.EndRow();
    }
    file.Close();
}

void WriteProjects(const path& folder, const Firm& firm) {
    CsvFile file(folder, "项目设置", {"项目ID", "项目编号", "项目名称", "工程名称", "工程性质", "ClassCode", "ksID"});
    for (const Project& project : firm.projects) {
        file << project.id << project.code << project.name << project.fullName << project.kind << project.classCode
             << project.customer;
        file.EndRow();
    }
    file.Close();
}

void WriteEmployees(const path& folder, const Firm& firm) {
    CsvFile file(folder, "雇员资料", {"雇员ID", "ClassCode", "姓名"});
    for (const Employee& employee : firm.employees) {
        file << employee.id << employee.classCode << employee.name;
        file.EndRow();
    }
    file.Close();
}

void WriteProducts(const path& folder, const Firm& firm) {
    CsvFile file(
        folder, "商品设置",
        {"pdID",     "商品名称", "商品编号", "KSID",     "ClassCode", "规格",     "型号",     "计量单位", "进位方法",
         "计价方法", "默认单价", "普通税率", "增值税率", "购进单价",  "普购税率", "增购税率", "最低库存", "最高库存",
         "单位数量", "商品条码", "输入简码", "生产厂家", "存放地点",  "存放位置", "备注"});
    for (const Product& product : firm.products) {
        const std::size_t home = static_cast<std::size_t>(product.homeDepot - 1);
        const std::size_t maker = static_cast<std::size_t>(product.supplier - 1);
        file << product.id << product.name << product.code << product.supplier << product.classCode
             << product.specification << product.model << product.unit
             << (product.step % kUnit == 0 ? "取整" : "四舍五入") << "加权平均" << MoneyText(product.salePrice) << "6"
             << "17" << MoneyText(product.purchasePrice) << "6"
             << "17" << QuantityText(product.typical) << QuantityText(product.typical * 11)
             << QuantityText(std::max(product.step, kUnit)) << product.barCode << product.inputCode
             << firm.suppliers[maker].company << firm.depots[home].name << product.slot << product.remark;
        file.EndRow();
    }
    file.Close();
}

struct Operator {
    const char* name;
    const char* password;
    int depot;
    const char* rights;  ///< one digit per right, in the table's order
};
constexpr std::array<Operator, 8> kOperators = {{{"系统操作员", "8801", 0, "1111111111111111"},
                                                 {"胡美娟", "hmj63", 0, "1111111111110101"},
                                                 {"蒋文彬", "jwb71", 0, "0001011100010000"},
                                                 {"童雅萍", "typ12", 1, "1110001110011000"},
                                                 {"朱琳", "zl0315", 3, "1110001110011000"},
                                                 {"潘洁", "pj2002", 2, "1110001110011000"},
                                                 {"王丽华", "wlh", 1, "0000001100000000"},
                                                 {"沈国梁", "sgl88", 0, "0001001100000000"}}};

void WriteOperators(const path& folder) {
    CsvFile file(folder, "操作员", {"ID",       "姓名",     "密码",     "dpID",     "入库处理", "出库处理", "成本处理",
                                    "单据审核", "单据删除", "月末结帐", "库存查询", "报表打印", "商品管理", "仓库管理",
                                    "项目管理", "凭证处理", "资产处理", "卡片打印", "资产折旧", "系统设置"});
    int id = 0;
    for (const Operator& each : kOperators) {
        file << ++id << each.name << each.password << each.depot;
        for (const char right : std::string_view(each.rights)) {
            file << (right == '1' ? "-1" : "0");
        }
        file.EndRow();
    }
    file.Close();
}

/// Every clerk's log entries on the morning of the last working day of each month.
void WriteLog(const path& folder) {
    constexpr std::array<const char*, 4> kActions = {"登录", "录入入库单", "录入出库单", "退出"};
    CsvFile file(folder, "Log", {"logID", "Operator", "logDate", "内容"});
    const Calendar calendar;
    int id = 0;
    for (int month = 1; month <= 12; ++month) {
        for (int clerk = 4; clerk <= 6; ++clerk) {
            for (std::size_t action = 0; action < kActions.size(); ++action) {
                const int minute = 3 + clerk * 7 + static_cast<int>(action);
                file << ++id << std::to_string(clerk)
                     << IsoText(calendar.WorkingDays(month).back()) + " " + Digits(8 + static_cast<int>(action), 2) +
                            ":" + Digits(minute, 2) + ":00"
                     << kActions[action];
                file.EndRow();
            }
        }
    }
    file.Close();
}

void WriteBook(const path& folder) {
    // The component writes a blank after an option's name and after its value; the sample does the same.
    CsvFile options(folder, "系统选项", {"Item", "Discription"});
    for (const auto& [item, value] : kBook) {
        options << std::string(item) + " " << std::string(value) + " ";
        options.EndRow();
    }
    options.Close();

    CsvFile info(folder, "AccInfo",
                 {"帐簿名称", "单位名称", "财务主管", "法人代表", "帐簿编号", "单位地址", "联系电话", "电子邮件",
                  "网络地址", "工商登记号", "税务登记号", "企业代码", "企业类型", "建帐日期", "当前日期"});
    for (const auto& [item, value] : kBook) {
        info << value;
    }
    info.EndRow();
    info.Close();

    CsvFile payments(folder, "收付款方式", {"收付款方式", "科目名称", "科目代码"});
    constexpr std::array<std::array<const char*, 3>, 6> kPayments = {{{" ", " ", " "},
                                                                      {"现金", "现金", "101"},
                                                                      {"转帐支票", "银行存款", "102"},
                                                                      {"电汇", "银行存款", "102"},
                                                                      {"银行承兑汇票", "应收票据", "112"},
                                                                      {"赊帐", "应收帐款", "113"}}};
    for (const auto& payment : kPayments) {
        payments << payment[0] << payment[1] << payment[2];
        payments.EndRow();
    }
    payments.Close();
}

}  // namespace

void WriteMasterTables(const path& folder, const Firm& firm) {
    WriteDepots(folder, firm);
    WriteClasses(folder, "厂商分类", firm.supplierClasses, true);
    WriteClasses(folder, "客户分类", firm.customerClasses, true);
    WriteClasses(folder, "项目分类", firm.projectClasses, true);
    WriteClasses(folder, "部门分类", firm.departments, true);
    WriteClasses(folder, "商品分类", firm.productClasses, false);
    WritePartners(folder, "厂商资料", firm.suppliers);
    WritePartners(folder, "客户资料", firm.customers);
    WriteProjects(folder, firm);
    WriteEmployees(folder, firm);
    WriteProducts(folder, firm);
    WriteOperators(folder);
    WriteLog(folder);
    WriteBook(folder);
}

}  // namespace kpTables::sample
