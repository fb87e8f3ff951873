#include "kpbook/commands/ReportCharts.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/ReportStock.h"

namespace kpTables::kpbook::commands {

namespace {

using output::Chart;
using output::ChartSeries;

double FigureIn(const Recordset& rows, int column) {
    const Variant value = rows.GetValue(column);
    return IsNumeric(value) ? CDbl(value) : 0;
}

bool HasColumn(const Recordset& rows, std::string_view name) {
    for (int i = 0; i < rows.FieldCount(); ++i) {
        if (rows.FieldAt(i).name == name) return true;
    }
    return false;
}

/// Products that differ in their specification alone have one name.
std::string NameIn(Recordset& rows, const std::string& name) {
    std::string text = Text(rows.Fields(name).Value());
    if (HasColumn(rows, "规格")) {
        const std::string specification(Trim(Text(rows.Fields("规格").Value())));
        if (!specification.empty()) text += " " + specification;
    }
    return text;
}

/// The rows with the largest figures.
Chart Largest(Recordset& rows, const std::string& title, const std::string& name, const std::string& figure) {
    constexpr std::size_t kMost = 10;
    std::vector<std::pair<double, std::string>> figures;
    const int column = rows.FieldIndex(figure);
    for (; !rows.Eof(); rows.MoveNext()) figures.emplace_back(FigureIn(rows, column), NameIn(rows, name));
    std::ranges::stable_sort(figures, [](const auto& a, const auto& b) { return a.first > b.first; });
    Chart chart{title, Chart::Shape::Bars, {}, {{figure, {}}}};
    for (std::size_t i = 0; i < std::min(kMost, figures.size()); ++i) {
        chart.categories.push_back(figures[i].second);
        chart.series.front().values.push_back(figures[i].first);
    }
    return chart;
}

/// A category for each row.
Chart ByRow(Recordset& rows, const std::string& title, const std::string& category,
            const std::vector<std::string>& figures) {
    Chart chart{title, Chart::Shape::Columns, {}, {}};
    for (const auto& figure : figures) chart.series.push_back({figure, {}});
    for (; !rows.Eof(); rows.MoveNext()) {
        chart.categories.push_back(Text(rows.Fields(category).Value()));
        for (auto& series : chart.series) series.values.push_back(FigureIn(rows, rows.FieldIndex(series.name)));
    }
    return chart;
}

/// The bills of each date added up; of each month, where the dates are too many to be told apart.
Chart ByDate(Recordset& rows) {
    constexpr std::size_t kMostDates = 62;
    std::map<std::string, double> dates;
    std::map<std::string, double> months;
    const int date = rows.FieldIndex("日期");
    const int figure = rows.FieldIndex("除税金额");
    for (; !rows.Eof(); rows.MoveNext()) {
        const Variant value = rows.GetValue(date);
        if (value.IsNull()) continue;
        dates[Format(value, "MM-dd")] += FigureIn(rows, figure);
        months[Format(value, "yyyy-MM")] += FigureIn(rows, figure);
    }
    const bool byMonth = dates.size() > kMostDates;
    Chart chart{byMonth ? "每月除税金额" : "每日除税金额", Chart::Shape::Columns, {}, {{"除税金额", {}}}};
    for (const auto& [category, amount] : byMonth ? months : dates) {
        chart.categories.push_back(category);
        chart.series.front().values.push_back(amount);
    }
    return chart;
}

/// The months of the largest projects, and of all others together.
Chart ByProject(Recordset& rows) {
    constexpr std::size_t kMostProjects = 7;
    std::vector<int> months;
    Chart chart{"各项目逐月", Chart::Shape::Stacked, {}, {}};
    for (int i = 0; i < rows.FieldCount(); ++i) {
        if (!rows.FieldAt(i).name.ends_with("月")) continue;
        months.push_back(i);
        chart.categories.push_back(rows.FieldAt(i).name);
    }
    std::vector<std::pair<double, ChartSeries>> projects;
    for (; !rows.Eof(); rows.MoveNext()) {
        ChartSeries series{Text(rows.Fields("项目名称").Value()), {}};
        double sum = 0;
        for (const int month : months) {
            series.values.push_back(FigureIn(rows, month));
            sum += series.values.back();
        }
        projects.emplace_back(sum, std::move(series));
    }
    std::ranges::stable_sort(projects, [](const auto& a, const auto& b) { return a.first > b.first; });
    for (auto& [sum, series] : projects) {
        if (chart.series.size() < kMostProjects) {
            chart.series.push_back(std::move(series));
            continue;
        }
        if (chart.series.size() == kMostProjects) chart.series.push_back({"其他", std::vector<double>(months.size())});
        for (std::size_t i = 0; i < months.size(); ++i) chart.series.back().values[i] += series.values[i];
    }
    return chart;
}

}  // namespace

std::vector<Chart> ChartsOf(std::string_view report, Recordset& rows) {
    if (rows.RecordCount() == 0) return {};
    std::vector<Chart> charts;
    const auto add = [&](auto make) {
        rows.MoveFirst();
        charts.push_back(make());
    };
    if (report == "daily") {
        add([&] { return ByRow(rows, "每日入库和出库金额", "日子", {"入库金额", "出库金额"}); });
        add([&] { return ByRow(rows, "每日库存金额", "日子", {"库存金额"}); });
    } else if (report == "balance" || report == "stock") {
        add([&] { return Largest(rows, "库存金额最大的商品", "商品名称", "本期库存金额"); });
    } else if (report == "products" || report == "costs" || report == "day") {
        const char* amount = HasColumn(rows, "除税金额") ? "除税金额" : "金额";
        add([&] { return Largest(rows, std::string(amount) + "最大的商品", "商品名称", amount); });
    } else if (report == "partners") {
        const std::string partner = rows.FieldAt(0).name;
        add([&] { return Largest(rows, "价税合计最大的" + partner, partner, "价税合计"); });
    } else if (report == "bills") {
        add([&] { return ByDate(rows); });
    } else if (report == "projects") {
        add([&] { return ByProject(rows); });
    }
    rows.MoveFirst();
    return charts;
}

Chart StockValueChart(Workspace& workspace, bookkeeping::Valuation valuation) {
    std::map<std::int16_t, std::map<std::int32_t, double>> months;
    std::map<std::int32_t, std::string> warehouses;
    for (const auto& value : bookkeeping::StockValues(*workspace.connection, valuation)) {
        months[value.month][value.warehouse] = value.amount.ToDouble();
        auto& name = warehouses[value.warehouse];
        if (name.empty()) name = workspace.tables.Get仓库名称(value.warehouse);
    }
    Chart chart{"各仓库月末库存金额", Chart::Shape::Columns, {}, {}};
    for (const auto& [month, amounts] : months) chart.categories.push_back(std::to_string(month) + "月");
    for (const auto& [warehouse, name] : warehouses) {
        ChartSeries series{name, {}};
        for (const auto& [month, amounts] : months) {
            const auto found = amounts.find(warehouse);
            series.values.push_back(found == amounts.end() ? 0 : found->second);
        }
        chart.series.push_back(std::move(series));
    }
    return chart;
}

}  // namespace kpTables::kpbook::commands
