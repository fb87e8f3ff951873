#include "kpbook/commands/ReportNotes.h"

#include <map>

#include "kpTables/bookkeeping/ReportMonths.h"
#include "kpTables/text/Message.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::MonthState;

std::string InOneLine(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "" : "、") + name;
    return text;
}

}  // namespace

std::vector<std::string> MonthNotes(Workspace& workspace, std::int16_t month, std::optional<std::int32_t> warehouse,
                                    const std::string& whereFrom) {
    std::map<MonthState, std::vector<std::string>> states;
    for (const auto& each : bookkeeping::MonthStates(*workspace.connection, month, warehouse)) {
        states[each.state].push_back(each.name);
    }
    const std::string name = std::to_string(month) + "月";
    std::vector<std::string> notes;
    if (states.contains(MonthState::Open)) {
        notes.push_back(
            Message("{1}未结帐 (not closed)：{2}；{3}", name, InOneLine(states[MonthState::Open]), whereFrom));
    }
    if (states.contains(MonthState::NotReached)) {
        notes.push_back(Message("{1}未到 (not reached)：{2}；前面的月份还没有结帐，期初库存未定", name,
                                InOneLine(states[MonthState::NotReached])));
    }
    const bool isUnused = states.contains(MonthState::Unused) && states.size() == 1;
    if (isUnused)
        notes.push_back(Message("{1}没有数据 (no figures)：{2}", name, InOneLine(states[MonthState::Unused])));
    return notes;
}

std::string ValuationText(bookkeeping::Valuation valuation) {
    return valuation == bookkeeping::Valuation::CostBills ? "出库按成本单计价" : "出库按出库单计价";
}

}  // namespace kpTables::kpbook::commands
