#include <cinttypes>
#include <cstdio>

#include "engines/BookUrl.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/Backup.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BookCopying.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/Headings.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

std::string Hexadecimal(std::uint64_t number) {
    constexpr std::size_t kDigits = 16;
    char text[kDigits + 1];
    std::snprintf(text, sizeof text, "%016" PRIx64, number);
    return text;
}

RecordsetPtr TableOf(const bookkeeping::BookCopy& copy, OutputFormat format) {
    auto rows = std::make_shared<MemoryRecordset>(
        std::vector<FieldInfo>{{output::Heading("table", format), VarType::String},
                               {output::Heading("rows", format), VarType::Long},
                               {output::Heading("checksum", format), VarType::String}});
    for (const auto& table : copy.tables) {
        rows->AddNew();
        rows->SetValue(0, table.table);
        rows->SetValue(1, static_cast<std::int32_t>(table.rows));
        rows->SetValue(2, Hexadecimal(table.checksum));
        rows->Update();
    }
    rows->MoveFirst();
    return rows;
}

}  // namespace

int Copy(const CopyOptions& options, const GlobalOptions& global) {
    if (engines::ParseBookUrl(options.copy).scheme == "memory")
        throw UsageError(Message("{1}: a copy in memory would be gone at once", options.copy));
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global,
                              Access::Copy);
    if (IsFile(options.book) && IsFile(options.copy)) {
        bookkeeping::BackUpBook(*workspace.book, {.path = engines::ParseBookUrl(options.copy).address,
                                                  .open = [](const auto& path) { return OpenBook(path); }});
    } else {
        output::WriteRecordset(*TableOf(CopyRows(workspace, options.copy, global), global.format), global);
    }
    TellLine(Message("{1}: copied and checked", options.copy));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
