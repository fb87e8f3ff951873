#include "engines/postgres/BookUsers.h"

#include <cstdint>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::QuotedName;
using sql::print::postgres::QuotedText;

/// What tells the roles that Grant has made from others.
constexpr std::string_view kMark = "kpTables";

[[noreturn]] void RefuseUser(const std::string& complaint) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::NotPermitted), complaint);
}

bool Holds(Database& database, const std::string& condition) {
    return database.Run("SELECT " + condition).Value(0, 0) == "t";
}

/// Both have all rights whatever is granted, and would see all rows.
void CheckIsGuest(Database& database, const std::string& user) {
    const std::string role = "(SELECT oid FROM pg_roles WHERE rolname = " + QuotedText(user) + ")";
    if (Holds(database, "EXISTS (SELECT FROM pg_roles WHERE rolsuper AND oid = " + role + ")"))
        RefuseUser(Message("{1} is a superuser of the server and has all rights anyway", user));
    if (Holds(database, "EXISTS (SELECT FROM pg_namespace WHERE nspname = current_schema() AND pg_has_role(" + role +
                            ", nspowner, 'USAGE'))"))
        RefuseUser(Message("the book belongs to {1}, who has all rights anyway", user));
}

void MakeUser(Database& database, const BookUser& user) {
    if (user.password.empty()) RefuseUser(Message("the server has no user {1}; a new one needs a password", user.name));
    const std::string name = QuotedName(user.name);
    database.Run("CREATE ROLE " + name + " LOGIN PASSWORD " +
                     QuotedText(database.EncryptedPassword(user.password, user.name)) + "; COMMENT ON ROLE " + name +
                     " IS " + QuotedText(kMark),
                 "CREATE ROLE " + name);
}

std::string SchemaOf(Database& database) { return QuotedName(database.Run("SELECT current_schema()").Value(0, 0)); }

void TakeRights(Database& database, const std::string& user) {
    const std::string schema = SchemaOf(database);
    const std::string from = " FROM " + QuotedName(user);
    database.Run("REVOKE ALL ON ALL TABLES IN SCHEMA " + schema + from + "; REVOKE ALL ON ALL SEQUENCES IN SCHEMA " +
                 schema + from + "; REVOKE ALL ON SCHEMA " + schema + from);
    const Result policies = database.Run(
        "SELECT tablename FROM pg_policies WHERE schemaname = current_schema() AND policyname = " + QuotedText(user));
    for (int row = 0; row < policies.Rows(); ++row)
        database.Run("DROP POLICY " + QuotedName(user) + " ON " + QuotedName(policies.Value(row, 0)));
}

/// Whoever changes a book locks kp_book, for which the server wants the right to change it; the policy keeps its row
/// from being changed.
void GiveLock(Database& database, const std::string& to) {
    database.Run("GRANT UPDATE ON kp_book" + to);
    if (Holds(database,
              "EXISTS (SELECT FROM pg_policies WHERE schemaname = current_schema() AND tablename = 'kp_book')"))
        return;
    database.Run(
        "CREATE POLICY kp_reading ON kp_book FOR SELECT USING (true); ALTER TABLE kp_book ENABLE ROW LEVEL SECURITY");
}

std::string Listed(const std::vector<std::string>& columns) {
    std::string list;
    for (const std::string& column : columns) list.append(list.empty() ? "(" : ", ").append(QuotedName(column));
    return list + ")";
}

void GiveTable(Database& database, const TableRights& rights, const BookUser& user) {
    const std::string table = QuotedName(rights.table);
    const std::string to = " ON " + table + " TO " + QuotedName(user.name);
    if (rights.insert) database.Run("GRANT INSERT" + to);
    if (rights.remove) database.Run("GRANT DELETE" + to);
    if (!rights.columns.empty()) database.Run("GRANT UPDATE " + Listed(rights.columns) + to);
    if (rights.insert) {
        const Result sequences = database.Run(
            "SELECT pg_get_serial_sequence(" + QuotedText(table) +
            ", attname) FROM pg_attribute WHERE attidentity <> '' AND attrelid = " + QuotedText(table) + "::regclass");
        for (int row = 0; row < sequences.Rows(); ++row)
            database.Run("GRANT ALL ON SEQUENCE " + std::string(sequences.Value(row, 0)) + " TO " +
                         QuotedName(user.name));
    }
    if (rights.ownColumn.empty()) return;
    database.Run(
        "CREATE POLICY " + QuotedName(user.name) + " ON " + table + " TO " + QuotedName(user.name) + " USING (" +
        (rights.ownValue.empty() ? "true" : QuotedName(rights.ownColumn) + " = " + QuotedText(rights.ownValue)) +
        "); ALTER TABLE " + table + " ENABLE ROW LEVEL SECURITY");
}

}  // namespace

bool HasUser(Database& database, const std::string& user) {
    return Holds(database, "EXISTS (SELECT FROM pg_roles WHERE rolname = " + QuotedText(user) + ")");
}

void GrantUser(Database& database, const BookUser& user) {
    if (!HasUser(database, user.name)) MakeUser(database, user);
    CheckIsGuest(database, user.name);
    TakeRights(database, user.name);
    const std::string schema = SchemaOf(database);
    const std::string to = " TO " + QuotedName(user.name);
    database.Run("GRANT USAGE ON SCHEMA kp TO PUBLIC; GRANT USAGE ON SCHEMA " + schema + to +
                 "; GRANT SELECT ON ALL TABLES IN SCHEMA " + schema + to);
    GiveLock(database, to);
    for (const TableRights& rights : user.rights) GiveTable(database, rights, user);
}

bool RevokeUser(Database& database, const std::string& user) {
    if (!HasUser(database, user)) RefuseUser(Message("the server has no user {1}", user));
    CheckIsGuest(database, user);
    TakeRights(database, user);
    const std::string role = "(SELECT oid FROM pg_roles WHERE rolname = " + QuotedText(user) + ")";
    const bool isOurs =
        Holds(database, "COALESCE(shobj_description(" + role + ", 'pg_authid') = " + QuotedText(kMark) + ", FALSE)");
    const bool isUsed =
        Holds(database,
              "EXISTS (SELECT FROM pg_shdepend WHERE refclassid = 'pg_authid'::regclass AND refobjid = " + role + ")");
    if (!isOurs || isUsed) return false;
    database.Run("DROP ROLE " + QuotedName(user));
    return true;
}

}  // namespace kpTables::engines::postgres
