// Account book information: the book's descriptive items and its two dates.
#include <algorithm>
#include <array>
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

constexpr std::array<std::string_view, 13> kTextItems = {
    "帐簿名称", "单位名称", "财务主管",   "法人代表",   "帐簿编号", "单位地址", "联系电话",
    "电子邮件", "网络地址", "工商登记号", "税务登记号", "企业代码", "企业类型",
};
constexpr std::string_view kBuiltDate = "建帐日期";
constexpr std::string_view kCurrentDate = "当前日期";

bool IsTextItem(std::string_view which) {
    return std::find(kTextItems.begin(), kTextItems.end(), which) != kTextItems.end();
}

bool IsStoredItem(std::string_view which) { return IsTextItem(which) || which == kBuiltDate || which == kCurrentDate; }

/// The date that a value reads as, or else the zero date.
Date AsDate(const Variant& value) { return IsDate(value) ? CDate(value) : Date(); }

Date FirstOfMonth(std::int32_t year, std::int32_t month) {
    return CDate(Fill("{year}-{month}-1", "year"_gap(year), "month"_gap(month)));
}

/// First day of a balance row's month; today stands in for what the row lacks.
Date StartOfPeriod(Recordset& row, Date today) {
    constexpr std::int32_t kMonths = 12;
    const Variant year = row.Fields("年份").Value();
    const Variant month = row.Fields("月份").Value();
    const std::int32_t number = IsNumeric(month) ? CLng(month) : 1;
    const bool isMonth = number >= 1 && number <= kMonths;
    return FirstOfMonth(IsNumeric(year) ? CLng(year) : today.Year(), isMonth ? number : today.Month());
}

}  // namespace

Variant CTables::Get_AccInfo(const std::string& rWhich) {
    if (IsTextItem(rWhich)) return Get_Option(rWhich);
    if (rWhich == kBuiltDate) return Get_BuiltDate();
    if (rWhich == kCurrentDate) {
        const std::string stored = Get_Option(rWhich);
        return IsDate(stored) ? Variant(stored) : Variant(std::int16_t{0});
    }
    if (rWhich == "建帐月份") return static_cast<std::int16_t>(Get_BuiltDate().Month());
    if (rWhich == "帐簿年份") return static_cast<std::int16_t>(Get_CurrentDate().Year());
    if (rWhich == "当前月份") {
        const Date current = Get_CurrentDate();
        return static_cast<std::int16_t>(current == Date() ? 0 : current.Month());
    }
    return "";
}

bool CTables::Update_AccInfo(const std::string& rWhich, InOut<Variant> rValue) {
    Update_Option(rWhich, rValue.get());
    RecordsetPtr info;
    if (!Done([&] { info = db::OpenTable(cnn_, "AccInfo"); })) return false;
    // A step that fails is skipped, and the next one goes on.
    Done([&] {
        if (info->RecordCount() < 1) info->AddNew();
    });
    Done([&] {
        if (IsStoredItem(rWhich)) info->Fields(rWhich).SetValue(rValue.get());
    });
    Done([&] { info->Update(); });
    Done([&] { info->Close(); });
    return false;
}

Date CTables::Get_BuiltDate() {
    constexpr int kEarliestYear = 2000;
    Date built;
    return Trapped(built, [&] {
        const std::string stored = Get_Option(std::string(kBuiltDate));
        if (IsDate(stored) && CDate(stored).Year() >= kEarliestYear) return CDate(stored);

        const auto earliest = db::Query(cnn_, "Select Distinct top 1 年份,月份 From 仓库余额表 Order by 年份,月份");
        const Date today = host_->Today();
        built = earliest->Eof() ? today : StartOfPeriod(*earliest, today);
        Update_Option(std::string(kBuiltDate), Variant(Format(built, "yyyy年MM月dd日")));
        return built;
    });
}

Date CTables::Get_CurrentDate() {
    Variant current;
    Done([&] {
        current = Get_Option(std::string(kCurrentDate));
        const Variant built = Get_Option(std::string(kBuiltDate));
        const bool needsRepair = !IsDate(current) || (IsDate(built) && (CDate(built).Year() != CDate(current).Year() ||
                                                                        CDate(current).Month() < CDate(built).Month()));
        // DESC belongs to the month alone: the first row is the latest month of the earliest year.
        const auto periods = db::Query(cnn_, "Select Distinct Top 2 年份,月份 From 仓库余额表 Order by 年份,月份 DESC");
        if (periods->RecordCount() > 1) {
            const std::int32_t year = CDate(built).Year();
            const Variant latest = periods->Fields("月份").Value();
            const std::int32_t month = latest.IsNull() ? 0 : CLng(latest);
            if (needsRepair || month > CDate(current).Month()) {
                current = FirstOfMonth(year, month);
                Update_Option(std::string(kCurrentDate), current);
            }
        }
    });
    return AsDate(current);
}

}  // namespace kpTables
