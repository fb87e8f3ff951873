#include <cstdio>
#include <filesystem>

#include "kpTables/Error.h"
#include "kpTables/Sqlite.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

/// Removes a book whose creation was begun, unless it is kept.
class BegunBook {
public:
    explicit BegunBook(const std::string& path) : path_(path) {}
    ~BegunBook() {
        if (kept_) return;
        std::error_code ignored;
        for (const char* suffix : {"", "-journal", "-wal", "-shm"}) std::filesystem::remove(path_ + suffix, ignored);
    }
    BegunBook(const BegunBook&) = delete;
    BegunBook& operator=(const BegunBook&) = delete;

    void Keep() noexcept { kept_ = true; }

private:
    std::string path_;
    bool kept_ = false;
};

/// Create_NewBook reports an error in a message box, SetDefaultSFK by returning false; here either ends the command.
void MakeReady(const std::string& book, const GlobalOptions& global) {
    const auto host = std::make_shared<BatchHost>();
    host->today = global.today;
    Workspace workspace(book, host, global);
    const bool named = workspace.tables.Create_NewBook() && host->messages.empty();
    if (named && workspace.tables.SetDefaultSFK()) return;
    if (const auto& error = workspace.connection->LastError()) throw *error;
    throw CommandError(book + ": cannot be prepared for use" +
                       (host->messages.empty() ? "" : ": " + host->messages[0].text));
}

}  // namespace

int NewBook(const NewOptions& options, const GlobalOptions& global) {
    CheckBookName(options.book);
    auto book =
        SqliteConnection::Create(options.book, {}, options.sqlNames ? HeaderDialect::SqlServer : HeaderDialect::Jet);
    BegunBook begun(options.book);
    const auto tables = book->Tables().size();
    book.reset();
    if (!options.bare) MakeReady(options.book, global);
    begun.Keep();
    std::fprintf(stderr, "%s: %zu tables made%s\n", options.book.c_str(), tables,
                 options.bare ? "" : ", names, dates and payment methods set");
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
