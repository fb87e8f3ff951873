// Opens, checks and creates a book's file.
#pragma once

#include <chrono>
#include <string>

#include "engines/sqlite/Database.h"
#include "kpTables/Book.h"

namespace kpTables::engines::sqlite {

/// Opens an existing book. Refuses a file that is no book, and one that cannot be written unless options ask for
/// reading only.
Database OpenBookFile(const std::string& path, const BookOptions& options);
/// Opens an existing book of this format or an earlier one, to be written.
Database OpenBookOfAnyFormat(const std::string& path, std::chrono::milliseconds busyTimeout);

/// Creates a file at an unused path, and removes it again unless Keep was called.
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

/// Copies a database, as it is, into a file that must not exist.
void CopyToNewFile(const Database& database, const std::string& path);

/// Marks the file as a book, inside the transaction that creates the tables.
void MarkAsBook(const Database& database);
/// The number of its schema that a book records.
std::int32_t FormatOf(const Database& database);
/// Makes a book in a file survive a power failure.
void MakeDurable(const Database& database);

}  // namespace kpTables::engines::sqlite
