#include "kpbook/commands/Reports.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "kpTables/MemoryRecordset.h"
#include "kpTables/Quoted.h"
#include "kpTables/bookkeeping/BookYear.h"
#include "kpTables/bookkeeping/ReportBalance.h"
#include "kpTables/bookkeeping/ReportDays.h"
#include "kpTables/text/Message.h"
#include "kpbook/commands/ReportLayouts.h"

namespace kpTables::kpbook::commands {

namespace {

template <class T>
Variant OrEmpty(const std::optional<T>& value) {
    return value ? Variant(*value) : Variant();
}

RecordsetPtr Bills(CTables& tables, ReportFilters& f) {
    const Variant ignored;
    auto from = f.from;
    auto to = f.to;
    // A book without a year has no bills either.
    const auto year = f.month > 0 ? bookkeeping::BookYear(*tables.Cnn()) : 0;
    if (year > 0) {
        from = Date::FromYearMonthDay(year, f.month, 1);
        to = Date::FromYearMonthDay(year, f.month + 1, 0);
    }
    return tables.rs单据列表(Variant(f.direction), Variant(Quoted(f.type)), OrEmpty(from), OrEmpty(to),
                             Variant(Quoted(f.fromNumber)), Variant(Quoted(f.toNumber)), OrEmpty(f.warehouse),
                             OrEmpty(f.partner), f.project.value_or(0), Variant(Quoted(f.handler)),
                             Variant(Quoted(f.counterpart)), Variant(Quoted(f.packing)), ignored, ignored, ignored,
                             ignored, ignored, OrEmpty(f.minQuantity), OrEmpty(f.maxQuantity), OrEmpty(f.minAmount),
                             OrEmpty(f.maxAmount));
}

RecordsetPtr Balance(CTables& tables, ReportFilters& f) {
    constexpr std::int16_t kAnyMonth = 1;
    auto rows = tables.rs余额记录(f.warehouse.value_or(0), f.month);
    // Without balance rows the method sends no statement, but the report needs its columns.
    return rows ? rows : tables.rs余额记录(f.warehouse.value_or(0), kAnyMonth);
}

RecordsetPtr ValuedBalance(CTables& tables, ReportFilters& f, bookkeeping::Valuation valuation) {
    return bookkeeping::BalanceAt(tables, f.warehouse.value_or(0), f.month, valuation);
}

RecordsetPtr Products(CTables& tables, ReportFilters& f) {
    return tables.rs商品汇总(f.direction, f.fromMonth, f.toMonth, f.warehouse.value_or(0), f.partner.value_or(0),
                             f.type);
}

RecordsetPtr Partners(CTables& tables, ReportFilters& f) {
    return tables.rs单位汇总(f.fromMonth, f.toMonth, std::string(f.direction == "入库" ? "厂商" : "客户"));
}

RecordsetPtr Costs(CTables& tables, ReportFilters& f) {
    return tables.rs成本汇总(f.fromMonth, f.toMonth, f.warehouse.value_or(0));
}

RecordsetPtr Daily(CTables& tables, ReportFilters& f) { return tables.rs日报列表(f.month, f.warehouse.value_or(0)); }

/// The figures in the method's columns.
RecordsetPtr ValuedDaily(CTables& tables, ReportFilters& f, bookkeeping::Valuation valuation) {
    std::vector<FieldInfo> fields = {{"日子", VarType::Long}};
    for (const char* name :
         {"期初数量", "期初金额", "入库数量", "入库金额", "出库数量", "出库金额", "库存数量", "库存金额"}) {
        fields.push_back({name, VarType::Double});
    }
    auto rows = std::make_shared<MemoryRecordset>(std::move(fields));
    for (const auto& day : bookkeeping::DailyFigures(tables, f.month, f.warehouse.value_or(0), valuation)) {
        rows->AddNew();
        int column = 0;
        for (const Variant& value : {Variant(day.day), Variant(day.openingQuantity), Variant(day.openingAmount),
                                     Variant(day.inQuantity), Variant(day.inAmount), Variant(day.outQuantity),
                                     Variant(day.outAmount), Variant(day.quantity), Variant(day.amount)}) {
            rows->SetValue(column++, value);
        }
        rows->Update();
    }
    if (rows->RecordCount() > 0) rows->MoveFirst();
    return rows;
}

RecordsetPtr Day(CTables& tables, ReportFilters& f) {
    return tables.rs日报记录(f.warehouse.value_or(0), f.partner.value_or(0), f.date.value_or(Date()), f.direction,
                             f.before);
}

std::string_view DayInSql(const ReportFilters& f) {
    return f.direction == "入库"
               ? Translated("in SQL Server's dialect these are outbound figures, whatever the direction")
               : "";
}

RecordsetPtr Projects(CTables& tables, ReportFilters& f) { return tables.rs项目汇总表(f.measure); }

std::string_view ProjectsInSql(const ReportFilters& f) {
    return f.measure == "金额" ? Translated("in SQL Server's dialect the months are quantities, whatever the measure")
                               : "";
}

bool Takes(const ReportKind& kind, std::string_view option) {
    return std::ranges::find(kind.filters, option, &ReportFilter::Option) != kind.filters.end();
}

bool IsGiven(const std::vector<std::string>& given, std::string_view option) {
    return std::ranges::find(given, option) != given.end();
}

std::string ValueFault(const ReportKind& kind, const std::vector<std::string>& given, const ReportFilters& filters) {
    const bool isCost = filters.direction == "成本";
    if (kind.name == "bills" && IsGiven(given, "--month") && (filters.from || filters.to))
        return Message("takes --month, or --from and --to");
    if (kind.name != "products") return isCost ? Message("knows the directions in and out") : "";
    if (isCost && (IsGiven(given, "--partner") || IsGiven(given, "--type"))) {
        return Message("takes no --partner and no --type for cost bills");
    }
    if (IsGiven(given, "--type") && filters.type != "购进" && filters.type != "调拨") {
        return Message("knows the types 购进 and 调拨");
    }
    return "";
}

constexpr ReportFilter kDirection{"--direction in|out", true};

ReportKind BillsKind() {
    return {"bills",
            "rs单据列表",
            Translatable("Bills of a direction with the sums of their lines"),
            {kDirection,
             {"--from DATE"},
             {"--to DATE"},
             {"--month M"},
             {"--from-number N"},
             {"--to-number N"},
             {"--warehouse D"},
             {"--partner K"},
             {"--project P"},
             {"--type T"},
             {"--handler TEXT"},
             {"--counterpart TEXT"},
             {"--packing TEXT"},
             {"--min-quantity Q"},
             {"--max-quantity Q"},
             {"--min-amount A"},
             {"--max-amount A"}},
            {"数量", "金额", "税额", "合计"},
            Bills,
            [](const ReportFilters& f) { return f.direction + "单列表"; },
            BillsLayout};
}

ReportKind BalanceKind() {
    return {"balance",
            "rs余额记录",
            Translatable("Balance figures per product of a month, the first one without --month"),
            {{"--month M"}, {"--warehouse D"}},
            {"上期库存金额", "本期入库金额", "累计入库金额", "本期出库金额", "累计出库金额", "本期库存金额"},
            Balance,
            [](const ReportFilters&) { return std::string("库存余额表"); },
            BalanceLayout,
            ValuedBalance};
}

ReportKind ProductsKind() {
    return {"products",
            "rs商品汇总",
            Translatable("Sums per product of inbound, outbound or cost bills"),
            {{"--direction in|out|cost", true},
             {"--from-month M"},
             {"--to-month M"},
             {"--warehouse D"},
             {"--partner K"},
             {"--type 购进|调拨"}},
            {"金额", "税额", "合计"},
            Products,
            [](const ReportFilters& f) { return "商品" + f.direction + "汇总"; },
            ProductsLayout};
}

ReportKind PartnersKind() {
    return {"partners",
            "rs单位汇总",
            Translatable("Sums per supplier (in) or per customer (out)"),
            {kDirection, {"--from-month M"}, {"--to-month M"}},
            {"数量", "除税金额", "金额", "税额"},
            Partners,
            [](const ReportFilters& f) { return std::string(f.direction == "入库" ? "供应商" : "客户") + "汇总"; },
            PartnersLayout};
}

ReportKind CostsKind() {
    return {"costs",
            "rs成本汇总",
            Translatable("Sums per product of the cost bills"),
            {{"--from-month M"}, {"--to-month M"}, {"--warehouse D"}},
            {"金额"},
            Costs,
            [](const ReportFilters&) { return std::string("成本汇总"); },
            CostsLayout};
}

ReportKind DailyKind() {
    return {"daily",
            "rs日报列表",
            Translatable("Opening stock, movements and closing stock per day of a month"),
            {{"--month M", true}, {"--warehouse D"}},
            {"入库数量", "入库金额", "出库数量", "出库金额"},
            Daily,
            [](const ReportFilters&) { return std::string("库存日报表"); },
            DailyLayout,
            ValuedDaily};
}

ReportKind DayKind() {
    return {"day",
            "rs日报记录",
            Translatable("Sums per product of a day or, with --before, of its month up to the day before"),
            {{"--date DATE", true}, kDirection, {"--before"}, {"--warehouse D"}, {"--partner K"}},
            {"金额", "税额", "合计"},
            Day,
            [](const ReportFilters& f) { return "商品" + f.direction + "日报"; },
            DayLayout,
            nullptr,
            DayInSql};
}

ReportKind ProjectsKind() {
    return {"projects",
            "rs项目汇总表",
            Translatable("Outbound goods per project, a column a month; quantities without --measure"),
            {{"--measure amount|quantity"}},
            {"合计", "月合计", "1",  "2",  "3",  "4",  "5",  "6",  "7",  "8",  "9",  "10",   "11",
             "12",   "一",     "二", "三", "四", "五", "六", "七", "八", "九", "十", "十一", "十二"},
            Projects,
            [](const ReportFilters& f) { return "项目汇总表（" + (f.measure.empty() ? "数量" : f.measure) + "）"; },
            ProjectsLayout,
            nullptr,
            ProjectsInSql};
}

}  // namespace

const std::vector<ReportKind>& ReportKinds() {
    static const std::vector<ReportKind> kinds = {BillsKind(), BalanceKind(), ProductsKind(), PartnersKind(),
                                                  CostsKind(), DailyKind(),   DayKind(),      ProjectsKind()};
    return kinds;
}

const ReportKind* FindReport(std::string_view name) {
    const auto found = std::ranges::find(ReportKinds(), name, &ReportKind::name);
    return found == ReportKinds().end() ? nullptr : &*found;
}

std::string FilterList(const ReportKind& kind) {
    std::string list;
    for (const auto& filter : kind.filters) {
        if (!list.empty()) list += ", ";
        list += filter.form;
        if (filter.required) list += Message(" (required)");
    }
    return list;
}

std::string UsageFault(const ReportKind& kind, const std::vector<std::string>& given, const ReportFilters& filters) {
    std::string fault;
    for (const auto& filter : kind.filters) {
        if (filter.required && !IsGiven(given, filter.Option())) fault = Message("needs {1}", filter.Option());
    }
    for (const auto& option : given) {
        if (!Takes(kind, option)) fault = Message("takes no {1}", option);
    }
    if (fault.empty()) fault = ValueFault(kind, given, filters);
    if (fault.empty()) return fault;
    return Message("report {1} {2}; its filters: {3}", kind.name, fault, FilterList(kind));
}

}  // namespace kpTables::kpbook::commands
