#include "kpbook/commands/BalanceTexts.h"

#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"
#include "kpbook/output/Headings.h"

namespace kpTables::kpbook::commands {

namespace {

Variant NameOf(const std::map<std::int32_t, std::string>& names, std::optional<std::int32_t> id) {
    if (!id) return Variant::Null();
    const auto found = names.find(*id);
    return found == names.end() || found->second.empty() ? Variant(std::to_string(*id)) : Variant(found->second);
}

}  // namespace

MasterNames::MasterNames(Connection& book)
    : warehouses_(Read(book, "Select dpID,仓库名称 From 仓库设置")),
      products_(Read(book, "Select pdID,商品名称 From 商品设置")) {}

MasterNames::Names MasterNames::Read(Connection& book, const std::string& query) {
    Names names;
    for (const auto rows = book.Execute(query); !rows->Eof(); rows->MoveNext())
        names[CLng(rows->GetValue(0))] = Text(rows->GetValue(1));
    return names;
}

Variant MasterNames::Warehouse(std::optional<std::int32_t> id) const { return NameOf(warehouses_, id); }
Variant MasterNames::Product(std::optional<std::int32_t> id) const { return NameOf(products_, id); }

std::shared_ptr<MemoryRecordset> FigureTable(const char* first, const char* second, const char* third,
                                             OutputFormat format) {
    return std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"仓库", VarType::String},
                                                                    {"年份", VarType::Long},
                                                                    {"月份", VarType::Long},
                                                                    {"pdID", VarType::Long},
                                                                    {"商品", VarType::String},
                                                                    {output::Heading(first, format), VarType::String},
                                                                    {output::Heading(second, format), VarType::String},
                                                                    {output::Heading(third, format), VarType::String}});
}

std::string MonthLabel(const std::string& warehouse, std::int32_t year, std::int32_t month) {
    if (year == 0) return Message("{1} month {2}", warehouse, month);
    return warehouse + " " + std::to_string(year) + "-" + std::to_string(month);
}

}  // namespace kpTables::kpbook::commands
