// Saved report settings.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {

RecordsetPtr CTables::rsHistory() { return db::Execute(cnn_, "Select * From History Order by rpID"); }

bool CTables::History_Del(std::int32_t rID) {
    return Done([&] { db::Execute(cnn_, Fill("Delete From History Where rpID={id}", "id"_gap(rID))); });
}

std::string CTables::GetHistorySetting(std::int32_t rID) {
    const auto row = db::OpenText(cnn_, Fill("Select * From History Where rpID={id}", "id"_gap(rID)));
    return row->RecordCount() >= 1 ? db::TextField(*row, "setting") : "";
}

std::int32_t CTables::History_Update(InOut<std::int32_t> rID, InOut<std::string> rCaption, InOut<std::string> rSetting,
                                     InOut<Date> rDate) {
    constexpr std::int32_t kTrue = -1;
    return Trapped(0, [&] {
        const bool existing = rID.get() != 0;
        const auto row = existing ? db::OpenText(cnn_, Fill("Select * From History Where rpID={id}", "id"_gap(rID)))
                                  : db::OpenTable(cnn_, "History");
        if (!existing) row->AddNew();
        row->Fields("Caption").SetValue(rCaption.get());
        row->Fields("setting").SetValue(rSetting.get());
        row->Fields("rptDate").SetValue(rDate.get());
        row->Update();
        rID = CLng(row->Fields("rpID").Value());
        row->Close();
        return kTrue;
    });
}

}  // namespace kpTables
