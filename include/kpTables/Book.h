// An account book: a connection that knows its tables, on any engine.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/BookUser.h"
#include "kpTables/Connection.h"
#include "kpTables/Error.h"

namespace kpTables {

/// A table of a book as a host sees it.
struct TableInfo {
    struct Column {
        std::string name;
        VarType type = VarType::Empty;
        Variant defaultValue;   ///< Null when the column has none
        bool required = false;  ///< a key or NOT NULL column that the engine does not fill by itself
        bool counter = false;   ///< the engine assigns the value when none is given
        bool key = false;       ///< part of the primary key
        int length = 0;         ///< characters that a text may have; 0 for any number
        int precision = 0;      ///< of DECIMAL(p,s), a Currency: its digits; 0 for any other
        int scale = 0;          ///< of DECIMAL(p,s): those behind the point
    };
    std::string name;
    std::vector<Column> columns;
};

/// Adds rows to some columns of one table without keeping them in memory, for imports.
class RowAppender : public Object {
public:
    /// Writes a row. values: one for each column, of its type or Null (error 13), or Missing where the engine assigns
    /// it. Outside a host transaction every row is its own transaction.
    virtual void Append(const std::vector<Variant>& values) = 0;
    /// A row that was refused after Append had returned: its number among those appended, from 0.
    using Refused = std::function<void(std::int64_t row, const DatabaseError& error)>;
    /// From now on, and inside a host transaction, Append may gather rows for an engine that is far away, which takes
    /// many at once: refused is told of a row that it does not take, and the others are entered. Other engines go on
    /// writing each row at once.
    virtual void Gather(const Refused& /*refused*/) {}
    /// Sends what was gathered; the appender's end drops what was not sent.
    virtual void Flush() {}
};

/// An open book. Runs the texts of both dialects unchanged. One thread at a time.
class Book : public Connection {
public:
    /// The URL or path that it was opened or created with.
    virtual const std::string& Url() const = 0;
    /// All tables of the book: those of the schema in its order, then others in the order in which they were made.
    virtual std::vector<TableInfo> Tables() = 0;
    /// The tables and columns of the schema that the book lacks, since somebody dropped them, each as "the table T" or
    /// "the column T.C"; UpgradeBook adds them. Compares only when the book's schema has changed since it was last
    /// found whole.
    virtual std::vector<std::string> MissingParts() = 0;
    /// Names without regard to case, each once; error 3265 for an unknown column.
    virtual std::unique_ptr<RowAppender> AppendTo(std::string_view table, const std::vector<std::string>& columns) = 0;
    /// The last number that a table's counter has given, or been given, also to a row that is gone; 0 for none.
    virtual std::int64_t LastCounter(std::string_view table) = 0;
    /// Lets a table's counter go on behind a number, if it is not beyond it already.
    virtual void AdvanceCounter(std::string_view table, std::int64_t last) = 0;
    /// Whether the book's server knows a user. A book that is on no server refuses this and the next two.
    virtual bool HasUser(const std::string& user) = 0;
    /// Gives a user of the book's server exactly these rights in the book, and makes the user where there is none.
    virtual void Grant(const BookUser& user) = 0;
    /// Takes a user's rights in the book. True when the user is gone too: one that Grant has made, with rights in no
    /// other book.
    virtual bool Revoke(const std::string& user) = 0;
    /// Rows that the last Execute of an Insert, Update or Delete touched.
    virtual std::int64_t RecordsAffected() const = 0;
    /// Saves what editable recordsets have written outside a host transaction. Raises, once, the error of a recordset
    /// that was dropped without Close and could not save its rows: they are lost. The next statement raises it too, so
    /// a host calls this after every method and before it says that all went well.
    virtual void FlushRows() = 0;
    /// Copies the book into a new file, which is a book too; other programs may keep using this one. The copy is
    /// checked and on the disk before it gets its name, and only its owner may read and write it. An existing file is
    /// refused, and so is a copy while a host transaction is open.
    virtual void BackUp(const std::string& path) = 0;
    /// What is wrong with the file itself, as the engine words it; nothing when it is whole. Reads all of it.
    virtual std::vector<std::string> IntegrityFaults() = 0;
};
using BookPtr = std::shared_ptr<Book>;

struct BookOptions {
    bool readOnly = false;
    /// The book is read for a report and then closed: where its URL names a copy for that, it is opened there, for
    /// reading only, once the copy has what was saved when the book was opened; else as without this option.
    bool forReports = false;
    /// How long a statement waits for another program's lock before it fails.
    std::chrono::milliseconds busyTimeout{5000};
    /// Rows that a result may have, and bytes of memory that one recordset's rows may take; a larger result is error
    /// ResultTooLarge. 0 rows: any number. 0 bytes: half of the memory that the machine has free when it is first
    /// asked.
    std::int64_t maxRows = 0;
    std::int64_t maxBytes = 0;
    /// Asked every few thousand steps of a statement, and between rows: true ends the statement with error Cancelled.
    /// A host's transaction survives an interrupted query, but may be ended by an interrupted change.
    std::function<bool()> interrupted = {};
    /// Asked for the user's password when a server wants one that it was not given otherwise.
    std::function<std::string()> password = {};
};

/// Two columns of the table Header have different names in the dialects: Table and Index in Jet's, TableName and
/// ColIndex in SQL Server's, where the others are reserved. The argument isSQL of CTables::Header says which names a
/// book has.
enum class HeaderDialect { Jet, SqlServer };

struct NewBookOptions {
    std::chrono::milliseconds busyTimeout{5000};
    HeaderDialect header = HeaderDialect::Jet;
    // As in BookOptions.
    std::int64_t maxRows = 0;
    std::int64_t maxBytes = 0;
    std::function<bool()> interrupted = {};
    std::function<std::string()> password = {};
    /// Called with the new book before it gets its name: an exception removes the book again. Neither the book nor a
    /// recordset of it may be kept.
    std::function<void(const BookPtr& book)> prepare = {};
};

/// Opens the book at url: a path, or file: with a path as URLs write it. A DatabaseError says what is wrong: a scheme
/// that no engine has, no such file, a directory, no book, a book of an earlier or later format, not readable, in use.
BookPtr OpenBook(const std::string& url, const BookOptions& options = {});
/// Creates a book with every table of the schema: at a path, where an existing file is refused and left unchanged, or
/// in memory (memory:). At a path it is made beside its place, in a hidden file .NAME.new-XXXXXXXX, and gets its name
/// when it is whole and on the disk; only its owner may read and write it. What a killed attempt leaves is removed by
/// the next.
BookPtr CreateBook(const std::string& url, const NewBookOptions& options = {});

/// A book of those that stand at one place.
struct ListedBook {
    std::string name;
    std::string url;
    std::int32_t format = 0;
    bool current = false;  ///< of this program's format: OpenBook takes it
    std::int64_t bytes = 0;
};

/// The books of a server's database that the user may read, by their names. url: that of a book, or without one. What
/// has no books to list raises a DatabaseError.
std::vector<ListedBook> ListBooks(const std::string& url, const BookOptions& options = {});

struct UpgradeOptions {
    std::chrono::milliseconds busyTimeout{5000};
    std::function<std::string()> password = {};  ///< as in BookOptions
    bool copyFirst = true;                       ///< copies the book beside itself before it is changed
};

/// What UpgradeBook has done.
struct BookUpgrade {
    std::int32_t fromFormat = 0;
    std::int32_t toFormat = 0;
    std::string copy;                  ///< the path of the copy that was made first; "" when none was
    std::vector<std::string> changes;  ///< a phrase each, such as "added the column T.C"; empty: it was up to date
};

/// Brings a book of any earlier format to this program's, and adds what MissingParts names. Every row and whatever a
/// host has added (tables, columns, indexes) is kept. All or nothing: after a failure, which is a DatabaseError, the
/// book is as it was. A book of a later format, and one in memory, is refused.
BookUpgrade UpgradeBook(const std::string& url, const UpgradeOptions& options = {});

}  // namespace kpTables
