#include "kpbook/commands/BookCopying.h"

#include <optional>

#include "engines/BookUrl.h"
#include "kpTables/text/Message.h"
#include "kpbook/Interruption.h"
#include "kpbook/Terminal.h"

namespace kpTables::kpbook::commands {

bool IsFile(const std::string& url) { return engines::ParseBookUrl(url).scheme == "file"; }

bookkeeping::BookCopy CopyRows(const Workspace& from, const std::string& url, const GlobalOptions& global) {
    std::optional<TerminalProgressBar> bar;
    const auto progress = [&](std::int64_t done, std::int64_t steps) {
        ThrowIfInterrupted();
        if (!ErrorIsTerminal()) return;
        if (!bar) bar.emplace(Message("copying")).SetVisible(true);
        bar->SetValue(100.0 * static_cast<double>(done) / static_cast<double>(steps));
    };
    const BookOptions bounds = OptionsOf(global);
    NewBookOptions made;
    made.header = bookkeeping::HeaderDialectOf(*from.book);
    made.maxRows = bounds.maxRows;
    made.maxBytes = bounds.maxBytes;
    made.interrupted = bounds.interrupted;
    made.password = bounds.password;
    bookkeeping::BookCopy copy;
    made.prepare = [&](const BookPtr& book) { copy = bookkeeping::CopyBook(*from.book, book, progress); };
    CreateBook(url, made);
    if (bar) {
        bar->SetValue(100);
        bar->SetVisible(false);
    }
    for (const std::string& column : copy.leftDefaults) {
        TellLine("kpbook: " + Message("the default of {1} was left behind: it may be the time of entry", column));
    }
    return copy;
}

}  // namespace kpTables::kpbook::commands
