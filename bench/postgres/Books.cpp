#include "Books.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "Server.h"
#include "kpTables/Book.h"
#include "kpTables/Transaction.h"

namespace kpTables::bench {

namespace {

void CopyRows(Book& from, Book& to, const TableInfo& table) {
    std::vector<std::string> names;
    std::string list;
    for (const auto& column : table.columns) {
        names.push_back(column.name);
        list.append(list.empty() ? "[" : ",[").append(column.name).append("]");
    }
    const auto rows = from.Execute("Select " + list + " From [" + table.name + "]");
    const auto appender = to.AppendTo(table.name, names);
    appender->Gather([](std::int64_t, const DatabaseError& error) { throw DatabaseError(error); });
    std::vector<Variant> values(names.size());
    for (; !rows->Eof(); rows->MoveNext()) {
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = rows->GetValue(static_cast<int>(i));
        appender->Append(values);
    }
    appender->Flush();
}

/// Without ANALYZE the server does not know the sizes, and without CHECKPOINT it writes the copy during the run.
void Settle(const Server& server) {
    server.Run("VACUUM ANALYZE");
    server.Run("CHECKPOINT");
}

}  // namespace

void MakeServerBook(const std::string& book, const BookSize& size, const std::string& folder) {
    const std::string path = folder + "/" + book + ".kpbook";
    MakeBook(path, size);
    const auto from = OpenBook(path, {.readOnly = true});
    const auto to = CreateBook(BookAddress(book));
    {
        Transaction transaction(*to);
        for (const TableInfo& table : from->Tables()) CopyRows(*from, *to, table);
        transaction.Commit();
    }
    std::filesystem::remove(path);
    Settle(Server(ServerAddress()));
}

void CloneServerBook(const std::string& book, const std::string& copy) {
    DropServerBook(copy);
    CreateBook(BookAddress(copy));
    const Server server(ServerAddress(), copy);
    const ServerRows tables = server.Run(
        "SELECT quote_ident(relname), string_agg(quote_ident(attname), ', ') FROM pg_class JOIN pg_attribute ON attrelid = "
        "pg_class.oid WHERE relkind = 'r' AND relnamespace = '" +
        book + "'::regnamespace AND relname NOT LIKE 'kp\\_%' AND attnum > 0 AND attgenerated = '' GROUP BY relname");
    for (int i = 0; i < tables.Count(); ++i) {
        const std::string columns = tables.Text(i, 1);
        server.Run("INSERT INTO " + tables.Text(i, 0) + " (" + columns + ") SELECT " + columns + " FROM \"" + book +
                   "\"." + tables.Text(i, 0));
    }
    server.Run(
        "DO $do$ DECLARE c record; BEGIN FOR c IN SELECT quote_ident(nspname) || '.' || quote_ident(relname) AS t, "
        "attname::text AS a FROM pg_attribute JOIN pg_class ON pg_class.oid = attrelid JOIN pg_namespace ON "
        "pg_namespace.oid = relnamespace WHERE nspname = '" +
        copy +
        "' AND attidentity <> '' LOOP EXECUTE format('SELECT setval(%L, COALESCE(max(%I), 1)) FROM %s', "
        "pg_get_serial_sequence(c.t, c.a), c.a, c.t); END LOOP; END $do$");
    Settle(server);
}

void DropServerBook(const std::string& book) {
    Server(ServerAddress()).Run("DROP SCHEMA IF EXISTS \"" + book + "\" CASCADE");
}

}  // namespace kpTables::bench
