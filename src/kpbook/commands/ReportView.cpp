#include "kpbook/commands/ReportView.h"

#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/BookYear.h"
#include "kpTables/bookkeeping/Masters.h"
#include "kpTables/bookkeeping/ReportMonths.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/commands/ReportCharts.h"
#include "kpbook/commands/ReportLayouts.h"
#include "kpbook/commands/ReportNotes.h"
#include "kpbook/commands/Reports.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::MasterKind;

std::string MonthsText(const ReportFilters& filters) {
    const auto name = [](std::int16_t month) { return std::to_string(month) + "月"; };
    if (filters.month > 0) return name(filters.month);
    if (filters.fromMonth > 0 && filters.toMonth > 0) {
        return filters.fromMonth == filters.toMonth ? name(filters.toMonth)
                                                    : name(filters.fromMonth) + "至" + name(filters.toMonth);
    }
    if (filters.fromMonth > 0) return name(filters.fromMonth) + "起";
    return filters.toMonth > 0 ? "至" + name(filters.toMonth) : "";
}

std::string DaysText(const ReportFilters& filters) {
    if (filters.date) return filters.date->ToIso() + (filters.before ? "之前（当月）" : "");
    if (filters.from && filters.to) return filters.from->ToIso() + " 至 " + filters.to->ToIso();
    if (filters.from) return filters.from->ToIso() + " 起";
    return filters.to ? "至 " + filters.to->ToIso() : "";
}

void AddWords(std::string& heading, const std::string& words) {
    if (!words.empty()) heading += "  " + words;
}

std::string HeadingOf(ReportDesk& desk, const ReportKind& kind, const ReportFilters& filters) {
    std::string heading = kind.title(filters);
    auto& tables = desk.workspace.tables;
    if (const auto months = MonthsText(filters); !months.empty()) AddWords(heading, desk.YearText() + months);
    AddWords(heading, DaysText(filters));
    if (kind.valued || filters.warehouse) AddWords(heading, tables.Get仓库名称(filters.warehouse.value_or(0)));
    if (filters.partner) {
        AddWords(heading, filters.direction == "入库" ? tables.Get厂商名称(*filters.partner)
                                                      : tables.Get客户名称(*filters.partner));
    }
    if (filters.project) AddWords(heading, tables.Get项目名称(*filters.project));
    AddWords(heading, filters.type);
    if (kind.valued) AddWords(heading, ValuationText(desk.Valuation()));
    return heading;
}

bool IsWholeNumber(const std::string& text) {
    const auto begin = text.starts_with('-') ? 1U : 0U;
    return text.size() > begin && text.find_first_not_of("0123456789", begin) == text.npos;
}

void Resolve(Workspace& workspace, MasterKind kind, const std::string& what, const std::string& text,
             std::optional<std::int32_t>& id) {
    if (text.empty()) return;
    try {
        id = bookkeeping::MasterId(workspace.connection, kind, text);
    } catch (const DatabaseError&) {
        throw;
    } catch (const Error& error) {
        throw CommandError(IsWholeNumber(text) ? Message("the book has no {1} {2}", what, text) : error.Description());
    }
}

/// A warehouse that is not named is the one that the operator manages.
void ResolveWarehouse(Workspace& workspace, const std::string& text, std::optional<std::int32_t>& id) {
    if (text.empty() || text == "全部" || text == "全部仓库") {
        id = workspace.WarehouseOf(text);
    } else {
        Resolve(workspace, MasterKind::Warehouse, Translated("warehouse"), text, id);
    }
}

}  // namespace

ReportDesk::ReportDesk(Workspace& opened, const Showing& showing, const GlobalOptions& global)
    : workspace(opened),
      names(opened.tables),
      isForPrograms(global.format == OutputFormat::Csv || global.format == OutputFormat::Json),
      columns(isForPrograms || showing.wide ? Columns::All : Columns::Shown),
      hasCharts(showing.chart || global.format == OutputFormat::Html),
      atCost(showing.atCost) {}

bookkeeping::Valuation ReportDesk::Valuation() {
    using bookkeeping::Valuation;
    if (!valuation_) {
        valuation_ = !atCost   ? bookkeeping::ValuationOf(workspace.tables)
                     : *atCost ? Valuation::CostBills
                               : Valuation::OutboundBills;
    }
    return *valuation_;
}

const std::string& ReportDesk::YearText() {
    if (!year_) {
        const auto year = bookkeeping::BookYear(*workspace.connection);
        year_ = year > 0 ? std::to_string(year) + "年" : "";
    }
    return *year_;
}

output::View ViewOf(ReportDesk& desk, const ReportKind& kind, ReportFilters& filters) {
    auto& tables = desk.workspace.tables;
    const auto rows = kind.valued ? kind.valued(tables, filters, desk.Valuation()) : kind.run(tables, filters);
    if (!rows) throw CommandError(Message("{1} returned no recordset", kind.method));
    output::View view;
    if (!desk.isForPrograms) view.title = HeadingOf(desk, kind, filters);
    if (kind.valued && filters.month > 0) {
        view.notes = MonthNotes(
            desk.workspace, filters.month, filters.warehouse,
            kind.name == "balance" ? "余额表还没有本月的入库和出库，库存表 (kpbook stock) 有" : "数字来自已录入的单据");
    }
    const auto layout = kind.layout(*rows, filters);
    const bool isInbound = filters.direction == "入库";
    auto laidOut = LayOut(*rows, layout, desk.columns, tables, desk.names, isInbound);
    if (desk.hasCharts) {
        if (kind.name == "balance") view.charts.push_back(StockValueChart(desk.workspace, desk.Valuation()));
        auto shown = laidOut.rows;
        if (desk.columns == Columns::All) {
            if (rows->RecordCount() > 0) rows->MoveFirst();
            shown = LayOut(*rows, layout, Columns::Shown, tables, desk.names, isInbound).rows;
        }
        for (auto& chart : ChartsOf(kind.name, *shown)) view.charts.push_back(std::move(chart));
    }
    view.rows = laidOut.rows;
    view.presentation = std::move(laidOut.presentation);
    return view;
}

void ResolveNames(Workspace& workspace, ReportFilters& filters) {
    const bool isInbound = filters.direction == "入库";
    ResolveWarehouse(workspace, filters.warehouseText, filters.warehouse);
    Resolve(workspace, isInbound ? MasterKind::Supplier : MasterKind::Customer, isInbound ? "supplier" : "customer",
            filters.partnerText, filters.partner);
    Resolve(workspace, MasterKind::Project, "project", filters.projectText, filters.project);
}

void ResolveNames(Workspace& workspace, StockOptions& options) {
    ResolveWarehouse(workspace, options.warehouseText, options.warehouse);
    Resolve(workspace, MasterKind::Product, "product", options.productText, options.product);
}

}  // namespace kpTables::kpbook::commands
