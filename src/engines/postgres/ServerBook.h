// A connection to a book, before its tables are used.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "engines/postgres/Database.h"
#include "engines/postgres/ServerUrl.h"

namespace kpTables::engines::postgres {

[[noreturn]] void RefuseOpening(const std::string& url, const std::string& complaint);

struct ConnectionOptions {
    std::chrono::milliseconds busyTimeout{5000};
    std::function<bool()> interrupted = {};
    std::function<std::string()> password = {};  ///< asked once, when the server wants one
};

template <class Options>
ConnectionOptions ConnectionOptionsOf(const Options& options) {
    return {options.busyTimeout, options.interrupted, options.password};
}

/// Connected to the schema of a book, which need not be there. A DatabaseError says why that cannot be done.
std::unique_ptr<Database> Connected(const ServerUrl& parts, const std::string& url, const ConnectionOptions& options);

/// The standby that the URL names for reports, once it has what the server has now; null when it is not reached or does
/// not come so far in time, or would order texts in another way.
std::unique_ptr<Database> StandbyFor(Database& server, const ServerUrl& parts, const ConnectionOptions& options);

inline constexpr std::int64_t kUnfinished = 0;
inline constexpr std::int64_t kNoBook = -1;

/// The format that a book notes; kNoBook when the schema is no book's, kUnfinished while the book is made.
std::int64_t FormatOf(Database& database, const std::string& book);

/// Refuses what is no whole book, and a format that is earlier than the oldest or later than this program's.
std::int64_t CheckedFormat(Database& database, const std::string& book, const std::string& url, std::int64_t oldest);

}  // namespace kpTables::engines::postgres
