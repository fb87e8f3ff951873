// A whole book into another, on any two engines.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "kpTables/Book.h"

namespace kpTables::bookkeeping {

/// The column names that a book's table Header has: those that a copy, and the next year's book, is created with.
HeaderDialect HeaderDialectOf(Book& book);

/// What a table holds: how many rows, and a sum over all values of the given columns. The sum does not depend on the
/// order of the rows, nor on how an engine stores them: books that hold the same have the same. It shows errors, not
/// forgery.
struct TableSum {
    std::string table;
    std::int64_t rows = 0;
    std::uint64_t checksum = 0;

    friend bool operator==(const TableSum&, const TableSum&) = default;
};

/// Called every thousand rows with how many of the steps are done, reading the copy included; an exception ends the
/// copying.
using CopyProgress = std::function<void(std::int64_t done, std::int64_t steps)>;

struct BookCopy {
    std::vector<TableSum> tables;
    /// What a host had added and the copy has not: defaults that are the time of entry, each as "T.C".
    std::vector<std::string> leftDefaults = {};
};

/// Fills a book with empty tables, made with HeaderDialectOf(from), with all rows of another, which is only read, as of
/// one moment. Tables and columns that a host has added come along, and counters go on where they were; indexes that a
/// host has added do not. Then the copy is read and compared. All or nothing: an error names the table and, where a
/// value does not fit, the row.
BookCopy CopyBook(Book& from, const BookPtr& to, const CopyProgress& progress = {});

}  // namespace kpTables::bookkeeping
