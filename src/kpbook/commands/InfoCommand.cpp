#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/ClosedMonths.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/Headings.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

constexpr const char* kTextItems[] = {"帐簿名称",   "单位名称", "财务主管", "法人代表", "帐簿编号",
                                      "单位地址",   "联系电话", "电子邮件", "网络地址", "工商登记号",
                                      "税务登记号", "企业代码", "企业类型"};

/// Get_AccInfo would store a date that is missing, so the dates are read as plain settings.
class BookInfo {
public:
    BookInfo(const InfoOptions& options, const GlobalOptions& global)
        : workspace_(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read),
          format_(global.format),
          forPeople_(global.format == OutputFormat::Table || global.format == OutputFormat::Markdown) {}

    std::vector<output::Section> Sections() {
        return {{output::Heading("information", format_), Information()},
                {output::Heading("tables", format_), Tables()},
                {output::Heading("balance months", format_),
                 workspace_.connection->Execute(
                     "Select 年份,月份,Count(*) As 行数 From 仓库余额表 Group by 年份,月份 Order by 年份,月份")},
                {output::Heading("warehouses", format_), Warehouses()}};
    }

private:
    RecordsetPtr Information() {
        auto rows = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{
            {output::Heading("item", format_), VarType::String}, {output::Heading("value", format_), VarType::String}});
        for (const char* item : kTextItems) {
            if (const auto value = Option(item); !value.empty()) Add(*rows, item, value);
        }
        const auto built = DateOption(*rows, "建帐日期");
        const auto current = DateOption(*rows, "当前日期");
        Add(*rows, "建帐月份", built ? Variant(std::to_string(built->Month())) : Variant::Null());
        Add(*rows, "帐簿年份", current ? Variant(std::to_string(current->Year())) : Variant::Null());
        Add(*rows, "当前月份", current ? Variant(std::to_string(current->Month())) : Variant::Null());
        rows->MoveFirst();
        return rows;
    }

    /// Get_Option returns "" after an error, which must not look like a missing setting.
    std::string Option(const std::string& item) {
        std::string value = workspace_.tables.Get_Option(item);
        const auto incidents = workspace_.TakeIncidents();
        if (incidents.empty()) return value;
        const auto& [statement, error] = incidents.front();
        throw DatabaseError(error.Number(), error.Description(), statement);
    }

    std::optional<Date> DateOption(Recordset& rows, const std::string& item) {
        const auto value = Option(item);
        const auto date = Date::Parse(value);
        Add(rows, item, date ? Variant(date->ToIso()) : value.empty() ? Variant::Null() : Variant(value));
        if (!date && !value.empty()) TellLine(Message("{1}: {2} is no date", item, value));
        return date;
    }

    void Add(Recordset& rows, const std::string& item, const Variant& value) const {
        rows.AddNew();
        rows.SetValue(0, item);
        rows.SetValue(1, value.IsNull() && forPeople_ ? Variant(Message("(not set)")) : value);
        rows.Update();
    }

    /// With the last month that is closed, by the rule that closing goes by.
    RecordsetPtr Warehouses() {
        auto rows = std::make_shared<MemoryRecordset>(
            std::vector<FieldInfo>{{"dpID", VarType::Long},
                                   {"仓库名称", VarType::String},
                                   {"结帐标志", VarType::Boolean},
                                   {"结帐日期", VarType::Date},
                                   {output::Heading("closed through", format_), VarType::Long}});
        const auto stored =
            workspace_.connection->Execute("Select dpID,仓库名称,结帐标志,结帐日期 From 仓库设置 Order by dpID");
        for (; !stored->Eof(); stored->MoveNext()) {
            rows->AddNew();
            for (int column = 0; column < stored->FieldCount(); ++column)
                rows->SetValue(column, stored->GetValue(column));
            const auto month = bookkeeping::ClosedThrough(*workspace_.connection, CLng(stored->GetValue(0)));
            rows->SetValue(stored->FieldCount(), month == 0 ? Variant::Null() : Variant(std::int32_t{month}));
            rows->Update();
        }
        if (rows->RecordCount() > 0) rows->MoveFirst();
        return rows;
    }

    RecordsetPtr Tables() {
        auto rows = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{
            {output::Heading("table", format_), VarType::String}, {output::Heading("rows", format_), VarType::Long}});
        for (const auto& table : workspace_.book->Tables()) {
            const auto count =
                workspace_.connection->Execute("Select Count(*) As n From [" + table.name + "]")->GetValue(0);
            if (CLng(count) == 0) continue;
            rows->AddNew();
            rows->SetValue(0, table.name);
            rows->SetValue(1, count);
            rows->Update();
        }
        if (rows->RecordCount() > 0) rows->MoveFirst();
        return rows;
    }

    Workspace workspace_;
    OutputFormat format_;
    bool forPeople_;  ///< missing values are shown in words
};

}  // namespace

int Info(const InfoOptions& options, const GlobalOptions& global) {
    output::WriteSections(BookInfo(options, global).Sections(), global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
