#include "kpbook/commands/ReportLayouts.h"

#include <algorithm>

#include "kpTables/Convert.h"
#include "kpTables/Date.h"

namespace kpTables::kpbook::commands {

namespace {

// Columns that several reports share.

const ReportColumn kSpecification{.heading = "规格", .column = "规格", .leftOutEmpty = true};
const ReportColumn kModel{.heading = "型号", .column = "型号", .leftOutEmpty = true};
const ReportColumn kUnit{.heading = "计量单位", .column = "计量单位", .leftOutEmpty = true};

/// A product without a row among the products is named by its id.
Variant ProductName(const ReportRow& row) {
    const Variant name = row.At("商品名称");
    return Text(name).empty() ? Variant(row.names.ProductOf(row.At("pdID")).name) : name;
}

ReportColumn ProductClassColumn() {
    return {.heading = "类别",
            .worked = [](const ReportRow& row) { return Variant(row.names.ProductClass(row.At("ClassCode"))); },
            .leftOutEmpty = true};
}

/// Number, name and unit of a product, where the method's rows have them.
std::vector<ReportColumn> ProductColumns() {
    return {{.heading = "商品编号", .column = "商品编号", .leftOutEmpty = true},
            {.heading = "商品名称", .worked = ProductName},
            kSpecification,
            kModel,
            kUnit};
}

const ReportNames::Product& LookedUp(const ReportRow& row) { return row.names.ProductOf(row.At("pdID")); }

/// The same, where the rows have the product's id alone.
std::vector<ReportColumn> LookedUpProductColumns() {
    return {{.heading = "商品编号",
             .worked = [](const ReportRow& row) { return Variant(LookedUp(row).number); },
             .leftOutEmpty = true},
            {.heading = "商品名称", .worked = [](const ReportRow& row) { return Variant(LookedUp(row).name); }},
            {.heading = "规格",
             .worked = [](const ReportRow& row) { return Variant(LookedUp(row).specification); },
             .leftOutEmpty = true},
            {.heading = "型号",
             .worked = [](const ReportRow& row) { return Variant(LookedUp(row).model); },
             .leftOutEmpty = true},
            {.heading = "计量单位",
             .worked = [](const ReportRow& row) { return Variant(LookedUp(row).unit); },
             .leftOutEmpty = true}};
}

void Append(std::vector<ReportColumn>& columns, std::vector<ReportColumn> more) {
    columns.insert(columns.end(), more.begin(), more.end());
}

ReportColumn AverageColumn(const std::string& heading, Variant (*worked)(const ReportRow& row)) {
    return {.heading = heading, .worked = worked, .type = VarType::Double};
}

Variant SumOf(const ReportRow& row, const char* left, const char* right) {
    const auto money = [&](const char* column) {
        const Variant value = row.At(column);
        return value.IsNull() ? Currency() : CCur(value);
    };
    return money(left) + money(right);
}

Variant BillDate(const ReportRow& row) {
    const Variant year = row.At("年份");
    const Variant month = row.At("月份");
    const Variant day = row.At("日子");
    if (year.IsNull() || month.IsNull() || day.IsNull()) return Variant::Null();
    return Date::FromYearMonthDay(CLng(year), CLng(month), CLng(day));
}

const char* PartnerWord(const ReportFilters& filters) { return filters.direction == "入库" ? "供应商" : "客户"; }

/// A partner without a row is named by its id.
Variant PartnerName(const ReportRow& row) {
    const Variant name = row.At("企业名称");
    if (!Text(name).empty()) return name;
    const std::string word = row.isInbound ? "供应商" : "客户";
    const Variant id = row.At("ksID");
    if (id.IsNull() || CLng(id) == 0) return "(无" + word + ")";
    return "(" + word + " " + Text(id) + ")";
}

Variant PartnerClassName(const ReportRow& row) { return row.names.PartnerClass(row.isInbound, row.At("ClassCode")); }

Variant ProjectName(const ReportRow& row) {
    const Variant name = row.At("项目名称");
    if (!Text(name).empty()) return name;
    const Variant id = row.At("pjID");
    if (id.IsNull() || CLng(id) == 0) return "(无项目)";
    return "(项目 " + Text(id) + ")";
}

}  // namespace

ReportLayout BillsLayout(const Recordset&, const ReportFilters& filters) {
    const ReportColumn date{.heading = "日期", .worked = BillDate, .type = VarType::Date};
    return {.shown = {date,
                      {.heading = "单据编号", .column = "单据编号"},
                      {.heading = "单据类型", .column = "单据类型"},
                      {.heading = "类型", .column = "类型", .leftOutEmpty = true},
                      {.heading = "仓库", .column = "仓库名称"},
                      {.heading = PartnerWord(filters), .column = "企业名称", .leftOutEmpty = true},
                      {.heading = "项目", .column = "项目名称", .leftOutEmpty = true},
                      {.heading = "数量", .column = "数量"},
                      {.heading = "除税金额", .column = "金额"},
                      {.heading = "税额", .column = "税额"},
                      {.heading = "价税合计", .column = "合计"},
                      {.heading = "录入员", .column = "录入员", .leftOutEmpty = true},
                      {.heading = "审核员", .column = "审核员", .leftOutEmpty = true},
                      {.heading = "说明", .column = "说明", .leftOutEmpty = true}},
            .added = {date},
            .totalled = {"数量", "除税金额", "金额", "税额", "价税合计", "合计"}};
}

ReportLayout BalanceLayout(const Recordset&, const ReportFilters&) {
    const auto price =
        AverageColumn("库存均价", [](const ReportRow& row) { return row.Average("本期库存金额", "本期库存数量"); });
    ReportLayout layout{
        .shown = ProductColumns(),
        .added = {ProductClassColumn(), price},
        .totalled = {"上期库存金额", "本期入库金额", "累计入库金额", "本期出库金额", "累计出库金额", "本期库存金额"}};
    for (const char* stock : {"上期库存", "本期入库", "本期出库", "本期库存"}) {
        for (const char* figure : {"数量", "金额"}) {
            const std::string name = std::string(stock) + figure;
            layout.shown.push_back({.heading = name, .column = name});
        }
    }
    layout.shown.push_back(price);
    return layout;
}

ReportLayout ProductsLayout(const Recordset&, const ReportFilters& filters) {
    if (filters.direction == "成本") {
        const auto price = AverageColumn("均价", [](const ReportRow& row) { return row.Average("金额", "数量"); });
        ReportLayout costs{.shown = ProductColumns(), .added = {price, ProductClassColumn()}, .totalled = {"金额"}};
        Append(costs.shown, {ProductClassColumn(),
                             {.heading = "数量", .column = "数量"},
                             price,
                             {.heading = "金额", .column = "金额"}});
        return costs;
    }
    const auto netPrice = AverageColumn("除税均价", [](const ReportRow& row) { return row.Average("金额", "数量"); });
    const auto price = AverageColumn("均价", [](const ReportRow& row) {
        return Variant(row.tables.CalcPrice(SumOf(row, "金额", "税额"), row.At("数量")));
    });
    const ReportColumn gross{.heading = "价税合计",
                             .worked = [](const ReportRow& row) { return SumOf(row, "金额", "税额"); },
                             .type = VarType::Currency};
    ReportLayout layout{.shown = ProductColumns(),
                        .replaced = {{"除税单价", netPrice}, {"合计", gross}},
                        .added = {price, ProductClassColumn()},
                        .totalled = {"除税金额", "金额", "税额", "价税合计"}};
    Append(layout.shown, {ProductClassColumn(),
                          {.heading = "数量", .column = "数量"},
                          netPrice,
                          {.heading = "除税金额", .column = "金额"},
                          {.heading = "税额", .column = "税额"},
                          price,
                          gross});
    return layout;
}

ReportLayout PartnersLayout(const Recordset&, const ReportFilters& filters) {
    const ReportColumn partner{.heading = PartnerWord(filters), .worked = PartnerName};
    const ReportColumn className{.heading = "类别", .worked = PartnerClassName, .leftOutEmpty = true};
    const auto netPrice =
        AverageColumn("除税均价", [](const ReportRow& row) { return row.Average("除税金额", "数量"); });
    const auto price = AverageColumn("均价", [](const ReportRow& row) { return row.Average("金额", "数量"); });
    ReportColumn named = partner;
    named.heading = "企业名称";
    return {.shown = {partner,
                      className,
                      {.heading = "数量", .column = "数量"},
                      netPrice,
                      {.heading = "除税金额", .column = "除税金额"},
                      {.heading = "税额", .column = "税额"},
                      price,
                      {.heading = "价税合计", .column = "金额"}},
            .replaced = {{"单价", price}, {"企业名称", named}},
            .added = {className},
            .totalled = {"数量", "除税金额", "金额", "税额", "价税合计"}};
}

ReportLayout CostsLayout(const Recordset&, const ReportFilters&) {
    const auto price = AverageColumn("均价", [](const ReportRow& row) { return row.Average("金额", "数量"); });
    const ReportColumn className{
        .heading = "类别",
        .worked =
            [](const ReportRow& row) {
                return Variant(row.names.ProductClass(row.names.ProductOf(row.At("pdID")).classCode));
            },
        .leftOutEmpty = true};
    ReportLayout layout{.shown = LookedUpProductColumns(), .added = {price}, .totalled = {"金额"}};
    Append(layout.added, LookedUpProductColumns());
    layout.added.push_back(className);
    Append(layout.shown,
           {className, {.heading = "数量", .column = "数量"}, price, {.heading = "金额", .column = "金额"}});
    return layout;
}

ReportLayout DailyLayout(const Recordset& rows, const ReportFilters&) {
    ReportLayout layout{.totalled = {"入库数量", "入库金额", "出库数量", "出库金额"}};
    for (int i = 0; i < rows.FieldCount(); ++i) layout.shown.push_back({rows.FieldAt(i).name, rows.FieldAt(i).name});
    return layout;
}

ReportLayout DayLayout(const Recordset&, const ReportFilters&) {
    const auto netPrice = AverageColumn("除税均价", [](const ReportRow& row) { return row.Average("金额", "数量"); });
    ReportLayout layout{.shown = ProductColumns(),
                        .added = {netPrice, ProductClassColumn()},
                        .totalled = {"除税金额", "金额", "税额", "价税合计", "合计"}};
    Append(layout.shown, {ProductClassColumn(),
                          {.heading = "数量", .column = "数量"},
                          netPrice,
                          {.heading = "除税金额", .column = "金额"},
                          {.heading = "税额", .column = "税额"},
                          {.heading = "价税合计", .column = "合计"}});
    return layout;
}

std::vector<std::pair<std::string, int>> MonthColumns(const Recordset& rows) {
    static const std::vector<std::string> words = {"一", "二", "三", "四", "五",   "六",
                                                   "七", "八", "九", "十", "十一", "十二"};
    std::vector<std::pair<std::string, int>> months;
    for (int i = 0; i < rows.FieldCount(); ++i) {
        const auto& name = rows.FieldAt(i).name;
        for (int month = 1; month <= kLastMonth; ++month) {
            if (name == words[static_cast<std::size_t>(month - 1)] || name == std::to_string(month)) {
                months.emplace_back(name, month);
            }
        }
    }
    return months;
}

ReportLayout ProjectsLayout(const Recordset& rows, const ReportFilters& filters) {
    const ReportColumn project{.heading = "项目名称", .worked = ProjectName};
    const ReportColumn className{
        .heading = "类别",
        .worked = [](const ReportRow& row) { return Variant(row.names.ProjectClass(row.At("ClassCode"))); },
        .leftOutEmpty = true};
    ReportLayout layout{.shown = {{.heading = "项目编号", .column = "项目编号", .leftOutEmpty = true},
                                  project,
                                  className,
                                  {.heading = "工程名称", .column = "工程名称", .leftOutEmpty = true},
                                  {.heading = "工程性质", .column = "工程性质", .leftOutEmpty = true}},
                        .replaced = {{"项目名称", project}},
                        .added = {className},
                        .totalled = {"合计", "月合计", "数量合计", "金额合计"}};
    for (const auto& [column, month] : MonthColumns(rows)) {
        const std::string heading = std::to_string(month) + "月";
        layout.shown.push_back({.heading = heading, .column = column});
        layout.totalled.insert(layout.totalled.end(), {heading, column});
    }
    layout.shown.push_back({.heading = "数量合计", .column = "合计"});
    // Only Jet's text has a total of the amounts, which stand in the months then.
    if (filters.measure == "金额" && std::ranges::any_of(MonthColumns(rows), [](const auto& column) {
            return column.first == std::to_string(column.second);
        })) {
        layout.shown.push_back({.heading = "金额合计", .column = "月合计"});
    }
    return layout;
}

ReportLayout StockLayout() {
    ReportLayout layout{.shown = LookedUpProductColumns(),
                        .totalled = {"上期库存金额", "本期入库金额", "本期出库金额", "本期库存金额"}};
    for (const char* stock : {"上期库存", "本期入库", "本期出库", "本期库存"}) {
        for (const char* figure : {"数量", "金额"}) {
            const std::string name = std::string(stock) + figure;
            layout.shown.push_back({.heading = name, .column = name});
        }
    }
    layout.shown.push_back({.heading = "库存均价", .column = "本期库存单价"});
    return layout;
}

ReportLayout PayrollLayout(const Recordset& rows) {
    ReportLayout layout;
    for (int i = 0; i < rows.FieldCount(); ++i) {
        const auto& field = rows.FieldAt(i);
        layout.shown.push_back({.heading = field.name, .column = field.name, .leftOutEmpty = field.name != "姓名"});
        if (field.type == VarType::Currency) layout.totalled.push_back(field.name);
    }
    return layout;
}

}  // namespace kpTables::kpbook::commands
