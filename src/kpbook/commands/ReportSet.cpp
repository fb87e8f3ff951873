#include "kpbook/commands/ReportSet.h"

#include <cstdio>
#include <filesystem>

#include "kpTables/BookFiles.h"
#include "kpTables/bookkeeping/ReportMonths.h"
#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/ReportNotes.h"
#include "kpbook/commands/ReportView.h"
#include "kpbook/commands/Reports.h"
#include "kpbook/output/HtmlPage.h"
#include "kpbook/output/Output.h"
#include "text/Path.h"

namespace kpTables::kpbook::commands {

namespace {

constexpr const char* kIndexFile = "index.html";

/// A report of the set, with the filters of its page.
struct SetPage {
    std::string file;
    const char* report;
    std::string direction;  ///< empty: none
    std::string measure;
};

const SetPage kPages[] = {{"daily.html", "daily", "", ""},
                          {"balance.html", "balance", "", ""},
                          {"bills-in.html", "bills", "入库", ""},
                          {"bills-out.html", "bills", "出库", ""},
                          {"products-in.html", "products", "入库", ""},
                          {"products-out.html", "products", "出库", ""},
                          {"products-cost.html", "products", "成本", ""},
                          {"partners-in.html", "partners", "入库", ""},
                          {"partners-out.html", "partners", "出库", ""},
                          {"projects-amount.html", "projects", "", "金额"},
                          {"projects-quantity.html", "projects", "", "数量"}};

/// Writes the pages one after the other.
class SetWriter {
public:
    SetWriter(Workspace& workspace, const ReportOptions& options, const GlobalOptions& global)
        : workspace_(workspace),
          options_(options),
          folder_(text::PathOf(global.outputPath)),
          desk_(workspace, options.showing, global) {
        if (options_.filters.month == 0) options_.filters.month = bookkeeping::LastUsedMonth(*workspace.connection);
        if (options_.filters.month == 0) {
            throw CommandError(Message("the book has neither balance rows nor bills; there is nothing to report"));
        }
        MakeFolder();
    }

    void WriteAll() {
        StockOptions stock;
        stock.month = options_.filters.month;
        stock.warehouse = options_.filters.warehouse;
        Add("stock.html", StockViewOf(desk_, stock));
        for (const SetPage& page : kPages) {
            ReportFilters filters = FiltersOf(page);
            Add(page.file, ViewOf(desk_, *FindReport(page.report), filters));
        }
        output::Output output(PathOf(kIndexFile));
        output::WriteHtmlIndex(
            Title(), MonthNotes(workspace_, options_.filters.month, options_.filters.warehouse, "数字来自已录入的单据"),
            links_, output);
        output.Close();
    }

    std::string PathOf(const std::string& file) const { return (folder_ / text::PathOf(file)).string(); }

private:
    void MakeFolder() const {
        std::error_code failure;
        std::filesystem::create_directories(folder_, failure);
        if (failure || !std::filesystem::is_directory(folder_)) {
            throw CommandError(
                failure ? Message("{1}: the folder cannot be made: {2}", folder_.string(), SystemMessage(failure))
                        : Message("{1}: the folder cannot be made, a file has its name", folder_.string()));
        }
    }

    ReportFilters FiltersOf(const SetPage& page) {
        const auto month = options_.filters.month;
        ReportFilters filters;
        filters.direction = page.direction;
        filters.measure = page.measure;
        const std::string report = page.report;
        if (report == "daily" || report == "balance" || report == "bills") filters.month = month;
        if (report == "products" || report == "partners") filters.fromMonth = filters.toMonth = month;
        // The summaries of partners and projects know no warehouse.
        if (report != "partners" && report != "projects") filters.warehouse = options_.filters.warehouse;
        return filters;
    }

    void Add(const std::string& file, const output::View& view) {
        const std::string path = PathOf(file);
        if (IsPartOfBook(path, options_.book)) {
            throw UsageError(Message("{1} belongs to a book; results are not written over it", path));
        }
        output::Output output(path);
        const auto rows = output::WriteHtml({view}, output, {kIndexFile, Title()});
        output.Close();
        links_.push_back({file, view.title, std::to_string(rows) + " 行"});
    }

    std::string Title() {
        std::string title = desk_.YearText() + std::to_string(options_.filters.month) + "月 报表";
        const std::string firm = workspace_.tables.Get_Option("单位名称");
        return firm.empty() ? title : firm + " " + title;
    }

    Workspace& workspace_;
    ReportOptions options_;
    std::filesystem::path folder_;
    ReportDesk desk_;
    std::vector<output::PageLink> links_;
};

}  // namespace

int ReportAll(const ReportOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    auto resolved = options;
    ResolveNames(workspace, resolved.filters);
    GlobalOptions pages = global;
    pages.format = OutputFormat::Html;
    SetWriter writer(workspace, resolved, pages);
    writer.WriteAll();
    output::Output output("");
    output.Write(writer.PathOf(kIndexFile) + "\n");
    output.Close();
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
