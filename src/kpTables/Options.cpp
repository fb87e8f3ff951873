// System options: named settings held as text.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {

std::string CTables::Get_Option(const std::string& rItem) {
    return Trapped(std::string(), [&]() -> std::string {
        if (!cnn_) return "";
        const auto found = db::OpenText(cnn_, Fill("Select * From 系统选项 Where Item='{item}'", "item"_gap(rItem)));
        return found->RecordCount() >= 1 ? db::TextField(*found, "Discription") : "";
    });
}

void CTables::Update_Option(const std::string& rItem, InOut<Variant> rValue) {
    if (Format(rItem, "&").empty()) return;
    try {
        const auto options = db::OpenTable(cnn_, "系统选项");
        bool missing = options->RecordCount() < 1;
        if (!missing) {
            options->Find(Fill("Item='{item}'", "item"_gap(rItem)));
            missing = options->Eof();
        }
        if (missing) options->AddNew();
        // A trailing blank keeps every stored text from having a length of zero.
        options->Fields("Item").SetValue(rItem + " ");
        options->Fields("Discription").SetValue(Text(rValue.get()) + " ");
        options->Update();
        options->Close();
    } catch (const std::exception& error) {
        host_->MsgBox(error.what(), MessageButtons::OkOnly, "修改系统选项");
    }
}

}  // namespace kpTables
