#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/BookSummary.h"
#include "kpTables/text/Message.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/Headings.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

Variant UnlessZero(std::int32_t number) { return number == 0 ? Variant::Null() : Variant(number); }

/// Nothing of a book that cannot be opened, which is said.
void SetSummary(MemoryRecordset& row, const ListedBook& listed, BookOptions options) {
    options.forReports = true;
    try {
        const auto summary = bookkeeping::SummaryOf(OpenBook(listed.url, options));
        if (!summary.company.empty()) row.SetValue(1, summary.company);
        row.SetValue(2, UnlessZero(summary.year));
        row.SetValue(3, UnlessZero(summary.firstMonth));
        row.SetValue(4, UnlessZero(summary.lastMonth));
    } catch (const Error& error) {
        TellLine("kpbook: " + error.Description());
    }
}

}  // namespace

int Books(const BooksOptions& options, const GlobalOptions& global) {
    const BookOptions open = OptionsOf(global);
    MemoryRecordset rows({{output::Heading("book", global.format), VarType::String},
                          {"单位名称", VarType::String},
                          {"年份", VarType::Long},
                          {output::Heading("first month", global.format), VarType::Long},
                          {output::Heading("last month", global.format), VarType::Long},
                          {output::Heading("format", global.format), VarType::Long},
                          {output::Heading("bytes", global.format), VarType::Double}});
    for (const ListedBook& listed : ListBooks(options.url, open)) {
        rows.AddNew();
        rows.SetValue(0, listed.name);
        if (listed.current) SetSummary(rows, listed, open);
        rows.SetValue(5, listed.format);
        rows.SetValue(6, static_cast<double>(listed.bytes));
        rows.Update();
    }
    if (rows.RecordCount() > 0) rows.MoveFirst();
    output::WriteRecordset(rows, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
