#include "OldBook.h"

#include <sqlite3.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "engines/sqlite/Collation.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::test {

namespace fs = std::filesystem;
using engines::sqlite::Database;
using engines::sqlite::PreparedStatement;
using sql::print::sqlite::QuotedName;

namespace {

constexpr const char* kExtension = ".kpbook.gz";

constexpr const char* kWithoutOwn =
    " sql IS NOT NULL AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' AND name NOT LIKE 'kp\\_%' ESCAPE '\\'";

}  // namespace

std::vector<std::string> OldBooks() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(OLD_BOOKS)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(kExtension)) names.push_back(name.substr(0, name.size() - std::string(kExtension).size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

void UnpackBook(const std::string& name, const std::string& path) {
    const gzFile packed = gzopen((fs::path(OLD_BOOKS) / (name + kExtension)).c_str(), "rb");
    if (!packed) throw std::runtime_error("no such book: " + name);
    std::ofstream out(path, std::ios::binary);
    std::array<char, 65536> bytes{};
    int size = 0;
    while ((size = gzread(packed, bytes.data(), static_cast<unsigned>(bytes.size()))) > 0)
        out.write(bytes.data(), size);
    gzclose(packed);
    if (size < 0 || !out) throw std::runtime_error("cannot be unpacked: " + name);
}

Database OpenRaw(const std::string& path) {
    Database database(path, SQLITE_OPEN_READWRITE);
    engines::sqlite::RegisterCollation(database.Get());
    return database;
}

Schema SchemaOf(const std::string& path) {
    const Database database = OpenRaw(path);
    PreparedStatement read = database.Prepare(std::string("SELECT name, sql FROM sqlite_schema WHERE") + kWithoutOwn);
    Schema schema;
    while (read.Step()) schema.emplace(read.Text(0), read.Text(1));
    return schema;
}

Columns ColumnsOf(const std::string& path) {
    const Database database = OpenRaw(path);
    PreparedStatement tables =
        database.Prepare(std::string("SELECT name FROM sqlite_schema WHERE type = 'table' AND") + kWithoutOwn);
    Columns columns;
    while (tables.Step()) {
        const std::string table(tables.Text(0));
        // Computed columns are not listed.
        PreparedStatement read = database.Prepare("PRAGMA table_info(" + QuotedName(table) + ")");
        while (read.Step()) columns[table].emplace_back(read.Text(1));
    }
    return columns;
}

std::map<std::string, std::string> RowsOf(const std::string& path, const Columns& columns) {
    const Database database = OpenRaw(path);
    std::map<std::string, std::string> rows;
    for (const auto& [table, names] : columns) {
        std::string text = "SELECT rowid";
        for (const std::string& name : names) text += " || ', ' || quote(" + QuotedName(name) + ")";
        PreparedStatement read = database.Prepare(text + " FROM " + QuotedName(table) + " ORDER BY rowid");
        std::string& all = rows[table];
        while (read.Step()) all.append(read.Text(0)).append("\n");
    }
    return rows;
}

}  // namespace kpTables::test
