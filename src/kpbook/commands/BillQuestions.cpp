#include "kpbook/commands/BillQuestions.h"

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Quoted.h"
#include "kpTables/bookkeeping/Masters.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Terminal.h"
#include "kpbook/input/InputFile.h"
#include "kpbook/input/LineReader.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::EntryKind;
using bookkeeping::MasterKind;
using bookkeeping::SheetRow;

class BillQuestions {
public:
    BillQuestions(Workspace& workspace, const bookkeeping::SheetOptions& sheet)
        : workspace_(workspace), sheet_(sheet), input_("-"), reader_(input_) {}

    std::vector<SheetRow> Ask();

private:
    /// The answer, or what is meant without one.
    std::string Answer(const std::string& question, const std::string& usual);
    void AskHeader(const std::string& column, const std::string& usual = {});
    /// Until the answer names a row; "" only where it is optional.
    void AskMaster(const std::string& column, MasterKind kind, bool isOptional);
    bool AskLine();
    /// The product's number; "" ends the bill.
    std::string AskProduct();

    Workspace& workspace_;
    const bookkeeping::SheetOptions& sheet_;
    input::InputFile input_;
    input::LineReader reader_;
    SheetRow header_;
    std::vector<SheetRow> rows_;
};

std::string BillQuestions::Answer(const std::string& question, const std::string& usual) {
    TellText(question + (usual.empty() ? "" : " [" + usual + "]") + ": ");
    const auto line = reader_.Next();
    if (!line) throw CommandError(Message("the input ended, nothing was entered"));
    const std::string answer(Trim(*line));
    return answer.empty() ? usual : answer;
}

void BillQuestions::AskHeader(const std::string& column, const std::string& usual) {
    const auto given = sheet_.defaults.find(column);
    if (given != sheet_.defaults.end()) return;
    if (const std::string answer = Answer(column, usual); !answer.empty()) header_.cells[column] = answer;
}

void BillQuestions::AskMaster(const std::string& column, MasterKind kind, bool isOptional) {
    if (sheet_.defaults.contains(column)) return;
    for (;;) {
        const std::string answer = Answer(column, "");
        if (answer.empty() && isOptional) return;
        try {
            MasterId(workspace_.connection, kind, answer);
            header_.cells[column] = answer;
            return;
        } catch (const DatabaseError&) {
            throw;
        } catch (const Error& error) {
            TellLine(error.what());
        }
    }
}

std::string BillQuestions::AskProduct() {
    constexpr int kListed = 20;
    for (;;) {
        const std::string answer = Answer(Message("商品 (empty: end)"), "");
        if (answer.empty()) return "";
        const auto exact = workspace_.tables.Get商品ID(Quoted(answer));
        if (exact > 0) return answer;
        std::string pattern = Quoted(answer) + "%";
        const auto rows = workspace_.connection->Execute(
            "Select TOP " + std::to_string(kListed) + " 商品编号,商品名称,规格 From 商品设置 Where 商品编号 Like '" +
            pattern + "' Or 输入简码 Like '" + pattern + "' Or 商品名称 Like '" + pattern + "' Order by 商品编号");
        if (rows->Eof()) TellLine(Message("no product begins with {1}", answer));
        const bool isOnly = rows->RecordCount() == 1;
        const std::string number = rows->Eof() ? "" : Text(rows->GetValue(0));
        for (; !rows->Eof(); rows->MoveNext()) {
            TellLine("  " + Text(rows->GetValue(0)) + " " + Text(rows->GetValue(1)) + " " + Text(rows->GetValue(2)));
        }
        if (isOnly && !number.empty()) return number;
    }
}

bool BillQuestions::AskLine() {
    const std::string product = AskProduct();
    if (product.empty()) return false;
    SheetRow row = header_;
    row.row = static_cast<std::int64_t>(rows_.size()) + 1;
    row.cells["商品编号"] = product;
    row.cells["数量"] = Answer("数量", "");
    row.cells["单价"] = Answer(sheet_.gross ? "单价 (含税)" : "单价", "");
    if (sheet_.kind == EntryKind::Inbound || sheet_.kind == EntryKind::Outbound) {
        row.cells["税率"] = Answer("税率 %", "");
    }
    rows_.push_back(std::move(row));
    return true;
}

std::vector<SheetRow> BillQuestions::Ask() {
    const bool isTransfer = sheet_.kind == EntryKind::Transfer;
    AskHeader("日期", sheet_.today.ToText());
    const auto warehouses = workspace_.connection->Execute("Select TOP 2 dpID From 仓库设置");
    if (isTransfer) {
        AskMaster("调出仓库", MasterKind::Warehouse, false);
        AskMaster("调入仓库", MasterKind::Warehouse, false);
    } else if (warehouses->RecordCount() > 1) {
        AskMaster("仓库", MasterKind::Warehouse, false);
    }
    if (sheet_.kind == EntryKind::Inbound) AskMaster("单位", MasterKind::Supplier, true);
    if (sheet_.kind == EntryKind::Outbound) AskMaster("单位", MasterKind::Customer, true);
    if (sheet_.kind != EntryKind::Cost) {
        AskMaster("项目", MasterKind::Project, true);
        if (!isTransfer) AskHeader("类型", sheet_.kind == EntryKind::Inbound ? "入库单" : "出库单");
        AskHeader("说明");
    }
    while (AskLine()) {
    }
    if (rows_.empty()) throw CommandError(Message("no lines, nothing was entered"));
    const std::string question =
        CountedMessage(std::ssize(rows_), "enter the bill with {1} line?", "enter the bill with {1} lines?");
    if (Answer(question, "y").find_first_of("yY是") != 0) throw CommandError(Message("nothing was entered"));
    return std::move(rows_);
}

}  // namespace

std::vector<SheetRow> AskForBill(Workspace& workspace, const bookkeeping::SheetOptions& sheet) {
    return BillQuestions(workspace, sheet).Ask();
}

}  // namespace kpTables::kpbook::commands
