// Books for tests, and short ways to ask them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "kpTables/Book.h"
#include "kpTables/Error.h"

namespace kpTables::test {

/// A directory of its own, removed at the end.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string File(std::string_view name) const;
    /// Where a book of that name is made: a file here, or a place on the server.
    std::string Book(std::string_view name) const;
    const std::filesystem::path& Path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

/// A book of the test's own, in memory. Where the environment variable KPTABLES_SERVER has a server's URL the books of
/// NewBook and TemporaryDirectory::Book are on that server.
BookPtr NewBook(const NewBookOptions& options = {});

/// First field of the first row, in its text form; "(no row)" when there is none.
std::string ValueOf(Connection& connection, std::string_view select);
/// All rows: fields joined with "|", rows with " / ".
std::string RowsOf(Connection& connection, std::string_view select);
std::string RowsOf(Recordset& rows);
/// The error that a call raises; nothing, and a test failure, when it raises none.
std::optional<DatabaseError> Refused(const std::function<void()>& call);
/// Number of the error that a call raises, of either kind; 0 when it raises none.
std::int32_t NumberOf(const std::function<void()>& call);
/// Error numbers as NumberOf answers them.
constexpr std::int32_t Code(DatabaseErrorNumber number) { return static_cast<std::int32_t>(number); }
constexpr std::int32_t Code(ErrorNumber number) { return static_cast<std::int32_t>(number); }

}  // namespace kpTables::test
