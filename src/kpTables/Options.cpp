// System options: named settings held as text.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/db/Access.h"

namespace kpTables {

std::string CTables::Get_Option(const std::string& rItem) {
    try {
        if (!cnn_) return "";
        const auto found = db::OpenText(cnn_, "Select * From 系统选项 Where Item='" + rItem + "'");
        return found->RecordCount() >= 1 ? db::TextField(*found, "Discription") : "";
    } catch (const std::exception&) {
        return "";
    }
}

void CTables::Update_Option(const std::string& rItem, InOut<Variant> rValue) {
    if (Format(rItem, "&").empty()) return;
    try {
        const auto options = db::OpenTable(cnn_, "系统选项");
        bool missing = options->RecordCount() < 1;
        if (!missing) {
            options->Find("Item='" + rItem + "'");
            missing = options->Eof();
        }
        if (missing) options->AddNew();
        // A blank behind each text, so that none is ever stored with a length of zero.
        options->Fields("Item").SetValue(rItem + " ");
        options->Fields("Discription").SetValue(Text(rValue.get()) + " ");
        options->Update();
        options->Close();
    } catch (const std::exception& error) {
        host_->MsgBox(error.what(), MessageButtons::OkOnly, "修改系统选项");
    }
}

}  // namespace kpTables
