// A book's file: opening, checking and making it.
#pragma once

#include <chrono>
#include <string>

#include "engines/sqlite/Database.h"
#include "kpTables/Book.h"

namespace kpTables::sqlite {

/// Opens an existing book. Refuses what is no book, and a file that cannot be written unless options ask for reading
/// only.
Database OpenBookFile(const std::string& path, const BookOptions& options);

/// Claims a path where no file is, removes the file again unless Keep was called.
class NewBookFile {
public:
    explicit NewBookFile(const std::string& path);
    ~NewBookFile();
    NewBookFile(const NewBookFile&) = delete;
    NewBookFile& operator=(const NewBookFile&) = delete;

    void Keep() noexcept { kept_ = true; }

private:
    std::string path_;
    bool kept_ = false;
};

/// Opens the empty file that NewBookFile made.
Database OpenNewFile(const std::string& path, std::chrono::milliseconds busyTimeout);
Database OpenMemory();

/// Copies a database, as it stands, into a file that must not be there yet.
void CopyToNewFile(const Database& database, const std::string& path);

/// Writes down, inside the transaction that makes the tables, that the file is a book.
void MarkAsBook(const Database& database);
/// Turns on what a book in a file needs to survive a failing power supply.
void MakeDurable(const Database& database);

}  // namespace kpTables::sqlite
