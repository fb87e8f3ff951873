#include "faults/BookState.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <iterator>

#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Functions.h"
#include "kpTables/Book.h"

namespace kpTables::faults {

namespace {

using engines::sqlite::Database;

std::vector<std::string> TextsOf(const Database& database, const std::string& query) {
    std::vector<std::string> texts;
    for (auto rows = database.Prepare(query); rows.Step();) texts.emplace_back(rows.Text(0));
    return texts;
}

void AddRows(const Database& database, const std::string& table, std::vector<std::string>& all) {
    auto rows = database.Prepare("SELECT * FROM \"" + table + '"');
    const int columns = sqlite3_column_count(rows.Get());
    while (rows.Step()) {
        std::string row = table + ": ";
        for (int column = 0; column < columns; ++column) {
            // Null and an empty text differ.
            row += rows.IsNull(column) ? std::string("~") : std::string(rows.Text(column));
            row += '|';
        }
        all.push_back(std::move(row));
    }
}

void Read(const std::string& path, BookState& state) {
    const Database database = engines::sqlite::OpenBookOfAnyFormat(path, std::chrono::seconds(5));
    engines::sqlite::RegisterCollation(database.Get());
    engines::sqlite::RegisterFunctions(database.Get());
    state.rows.push_back("format: " + std::to_string(engines::sqlite::FormatOf(database)));
    for (const auto& fault : TextsOf(database, "PRAGMA integrity_check")) {
        if (fault != "ok") state.fault += fault + "; ";
    }
    constexpr const char* kTables = "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite%'";
    for (const auto& table : TextsOf(database, kTables)) AddRows(database, table, state.rows);
    for (const auto& made :
         TextsOf(database, "SELECT type || ' ' || name || ' ' || sql FROM sqlite_schema WHERE sql > ''")) {
        state.rows.push_back("schema: " + made);
    }
    std::sort(state.rows.begin(), state.rows.end());
}

}  // namespace

BookState ReadBook(const std::string& path) {
    BookState state;
    state.exists = std::filesystem::exists(path);
    if (!state.exists) return state;
    try {
        Read(path, state);
    } catch (const std::exception& error) {
        state.fault = error.what();
        state.rows.clear();
    }
    return state;
}

std::vector<std::string> Without(const std::vector<std::string>& rows, const std::vector<std::string>& others) {
    std::vector<std::string> rest;
    std::set_difference(rows.begin(), rows.end(), others.begin(), others.end(), std::back_inserter(rest));
    return rest;
}

}  // namespace kpTables::faults
