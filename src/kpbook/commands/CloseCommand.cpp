#include <cstdio>
#include <vector>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

/// A warehouse and how it is to be closed.
struct Warehouse {
    std::int32_t id = 0;
    std::string name;
    std::int32_t products = 0;  ///< balance rows of the month
    std::int32_t year = 0;
    bool replaceNext = false;  ///< the next month's rows exist and are to be replaced
    bool leaveOut = false;     ///< they exist and are to be kept
};

class Closing {
public:
    Closing(const CloseOptions& options, const GlobalOptions& global)
        : options_(options),
          host_(std::make_shared<ConsoleHost>(global.today, global.answer)),
          workspace_(options.book, host_, global),
          date_(options.date ? *options.date : host_->Today()) {}

    int Run() {
        ReadWarehouses();
        workspace_.tables.CheckBnProduct(options_.month);
        // All questions are asked before the first change, so that one without an answer leaves the book unchanged.
        for (auto& warehouse : warehouses_) Examine(warehouse);
        int exitCode = kSucceeded;
        for (const auto& warehouse : warehouses_) {
            if (!Close(warehouse)) exitCode = kFailed;
        }
        return exitCode;
    }

private:
    void ReadWarehouses() {
        const auto rows = workspace_.connection->Execute("Select dpID, 仓库名称 From 仓库设置 Order by dpID");
        for (; !rows->Eof(); rows->MoveNext()) {
            const auto id = CLng(rows->GetValue(0));
            if (!options_.warehouse || *options_.warehouse == id) warehouses_.push_back({id, Text(rows->GetValue(1))});
        }
        if (!warehouses_.empty()) return;
        throw CommandError(options_.warehouse ? "the book has no warehouse " + std::to_string(*options_.warehouse)
                                              : "the book has no warehouses");
    }

    /// The number of a month's balance rows, and their latest year.
    std::pair<std::int32_t, std::int32_t> BalanceRows(const Warehouse& warehouse, int month) {
        const auto rows = workspace_.connection->Execute(
            "Select Count(*) As n, Max(年份) As y From 仓库余额表 Where dpID=" + std::to_string(warehouse.id) +
            " And 月份=" + std::to_string(month));
        const auto year = rows->GetValue(1);
        return {CLng(rows->GetValue(0)), year.IsNull() ? 0 : CLng(year)};
    }

    void Examine(Warehouse& warehouse) {
        std::tie(warehouse.products, warehouse.year) = BalanceRows(warehouse, options_.month);
        // Closing adds the next month's rows even if they exist.
        if (warehouse.products == 0 || options_.month == kLastMonth) return;
        const int next = options_.month + 1;
        const auto count = BalanceRows(warehouse, next).first;
        if (count == 0) return;
        const auto answer = host_->MsgBox("month " + std::to_string(next) + " of " + warehouse.name + " has " +
                                              std::to_string(count) + " rows already; remove and make them anew?",
                                          MessageButtons::YesNo, "kpbook close");
        warehouse.replaceNext = answer == MessageAnswer::Yes;
        warehouse.leaveOut = !warehouse.replaceNext;
    }

    /// False when the warehouse was skipped or its closing failed.
    bool Close(const Warehouse& warehouse) {
        const std::string month = std::to_string(options_.month);
        if (warehouse.products == 0) {
            std::fprintf(stderr, "%s: no balance rows of month %s, nothing to close\n", warehouse.name.c_str(),
                         month.c_str());
            return true;
        }
        const std::string what = warehouse.name + " " + std::to_string(warehouse.year) + "-" + month;
        if (warehouse.leaveOut) {
            std::fprintf(stderr, "kpbook: %s: left as it was\n", what.c_str());
            return false;
        }
        const auto next = static_cast<std::int16_t>(options_.month + 1);
        if (warehouse.replaceNext) workspace_.tables.Del仓库余额表(warehouse.id, next);
        workspace_.connection->ForgetFailures();
        if (!RunClosing(warehouse.id, what)) {
            std::fprintf(stderr, "kpbook: %s: not closed: %s\n", what.c_str(), Reason(warehouse.id).c_str());
            return false;
        }
        std::fprintf(stderr, "%s: %d %s closed\n", what.c_str(), warehouse.products,
                     warehouse.products == 1 ? "product" : "products");
        return true;
    }

    bool RunClosing(std::int32_t warehouse, const std::string& label) {
        TerminalProgressBar bar(label);
        return workspace_.tables.Close_DepotBalance(warehouse, options_.month, bool(options_.costUsed), Variant(date_),
                                                    ErrorIsTerminal() ? &bar : nullptr);
    }

    std::string Reason(std::int32_t warehouse) {
        if (const auto* error = workspace_.connection->LastError()) return error->Description();
        const auto rows = workspace_.connection->Execute(
            "Select Count(*) As n From 仓库余额表 Where 上期库存金额 Is Null And dpID=" + std::to_string(warehouse) +
            " And 月份=" + std::to_string(options_.month));
        if (const auto count = CLng(rows->GetValue(0)); count > 0) {
            return std::to_string(count) + " of its rows have no 上期库存金额";
        }
        return "a figure is out of range";
    }

    CloseOptions options_;
    std::shared_ptr<ConsoleHost> host_;
    Workspace workspace_;
    Date date_;
    std::vector<Warehouse> warehouses_;
};

}  // namespace

int Close(const CloseOptions& options, const GlobalOptions& global) { return Closing(options, global).Run(); }

}  // namespace kpTables::kpbook::commands
