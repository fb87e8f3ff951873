// Opens and checks a book's file.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "engines/sqlite/Database.h"
#include "kpTables/Book.h"

namespace kpTables::engines::sqlite {

/// In the header of every book's file.
inline constexpr std::int64_t kApplicationId = 0x6B705462;  // "kpTb"

/// Opens an existing book. Refuses a file that is no book, and one that cannot be written unless options ask for
/// reading only.
Database OpenBookFile(const std::string& path, const BookOptions& options);
/// Opens an existing book of this format or an earlier one, to be written.
Database OpenBookOfAnyFormat(const std::string& path, std::chrono::milliseconds busyTimeout);

/// Opens a draft of a book, empty or being copied into: it has neither a log nor a journal beside it, and is not on the
/// disk before it gets its name.
Database OpenDraft(const std::string& path, std::chrono::milliseconds busyTimeout);
/// Opens a file that nobody changes meanwhile, without any lock or file beside it.
Database OpenUnchanging(const std::string& path);
Database OpenMemory();

/// Marks the file as a book, inside the transaction that creates the tables.
void MarkAsBook(const Database& database);
/// Marks a closed draft as a book with a write-ahead log.
void MarkAsLogged(const std::string& path);
/// The number of its schema that a book records.
std::int32_t FormatOf(const Database& database);

}  // namespace kpTables::engines::sqlite
