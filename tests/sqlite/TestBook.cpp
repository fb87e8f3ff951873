#include "TestBook.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "kpTables/Convert.h"

namespace kpTables::test {

namespace fs = std::filesystem;

namespace {

/// The place of a book on the server; "" without one.
std::string PlaceOnServer(std::string_view name) {
    const char* const server = std::getenv("KPTABLES_SERVER");
    return server ? std::string(server).append("&book=").append(name) : std::string();
}

std::string RowText(Recordset& rows) {
    std::string text;
    for (int i = 0; i < rows.FieldCount(); ++i) {
        if (i > 0) text += '|';
        const Variant value = rows.GetValue(i);
        text += value.IsNull() ? "Null" : Text(value);
    }
    return text;
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
    static std::atomic<int> number = 0;
    path_ = fs::temp_directory_path() / ("kpTablesSqlite-" + std::to_string(getpid()) + "-" + std::to_string(number++));
    fs::create_directories(path_);
    fs::permissions(path_, fs::perms::all);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::permissions(path_, fs::perms::all, ignored);
    fs::remove_all(path_, ignored);
}

std::string TemporaryDirectory::File(std::string_view name) const { return (path_ / name).string(); }

std::string TemporaryDirectory::Book(std::string_view name) const {
    const std::string place = PlaceOnServer(path_.filename().string().append(".").append(name));
    return place.empty() ? File(name) : place;
}

BookPtr NewBook(const NewBookOptions& options) {
    static std::atomic<int> number = 0;
    const std::string place = PlaceOnServer(std::to_string(getpid()) + "-" + std::to_string(number++));
    return CreateBook(place.empty() ? "memory:" : place, options);
}

std::string ValueOf(Connection& connection, std::string_view select) {
    const RecordsetPtr rows = connection.Execute(select);
    if (!rows || rows->Eof()) return "(no row)";
    const Variant value = rows->GetValue(0);
    return value.IsNull() ? "Null" : Text(value);
}

std::string RowsOf(Connection& connection, std::string_view select) {
    const RecordsetPtr rows = connection.Execute(select);
    return rows ? RowsOf(*rows) : "(none)";
}

std::string RowsOf(Recordset& rows) {
    std::string text;
    for (; !rows.Eof(); rows.MoveNext()) text += (text.empty() ? "" : " / ") + RowText(rows);
    return text;
}

std::optional<DatabaseError> Refused(const std::function<void()>& call) {
    try {
        call();
    } catch (const DatabaseError& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was raised";
    return std::nullopt;
}

std::int32_t NumberOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Error& error) {
        return error.Number();
    }
    return 0;
}

}  // namespace kpTables::test
