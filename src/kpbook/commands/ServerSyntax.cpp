#include "kpbook/commands/ServerSyntax.h"

#include "engines/SchemaScript.h"

namespace kpTables::kpbook::commands {

void AddBooks(CLI::App& app, BooksOptions& options) {
    auto* command = AddCommand(
        app, "books", "List the books of a server's database",
        "Each book with its company, its year, the first and the last month of its balance, its format and its size, as\n"
        "far as the user may read it. Nothing is changed.\n\n"
        "Examples:\n  kpbook books postgresql://kp@shop-server/books\n"
        "  kpbook books postgresql://kp@shop-server/books -O json\n"
        "  kpbook books 'postgresql://kp@shop-server/books?sslmode=require' -O csv -o books.csv");
    command->add_option("URL", options.url, "The database")->required()->check(kUtf8)->type_name("");
}

void AddSchema(CLI::App& app, SchemaOptions& options) {
    auto* command = AddCommand(
        app, "schema", "Print the statements that make a book's tables",
        "In Jet's dialect or SQL Server's, for a server that kpbook does not make books on; sqlite and postgres show what\n"
        "kpbook itself makes. The latter's script makes a book in the schema that is current when it runs.\n\n"
        "Examples:\n  kpbook schema\n  kpbook schema --dialect sqlserver -o book.sql\n"
        "  kpbook schema --dialect postgres");
    command->add_option("--dialect", options.dialect, "jet (the default), sqlserver, sqlite or postgres")
        ->check(CLI::IsMember(engines::SchemaDialects()))
        ->type_name("DIALECT");
}

void AddGrant(CLI::App& app, GrantOptions& options) {
    auto* command = AddCommand(
        app, "grant", "Let an operator use the book as a user of its server",
        "The server's user may read the book and change what the operator's rights are for, and the server refuses\n"
        "everything else, whatever program asks. A user that the server does not know is made; the password is asked\n"
        "for twice, or read as one line of standard input. After a change of the operator's rights, and after an\n"
        "upgrade, grant them again.\n\n"
        "Examples:\n  kpbook grant 'postgresql://kp@shop-server/books?book=2026' 李明\n"
        "  kpbook grant 'postgresql://kp@shop-server/books?book=2026' 李明 --user liming\n"
        "  kpbook grant 'postgresql://kp@shop-server/books?book=2026' 李明 < password.txt");
    AddBook(*command, options.book);
    command->add_option("NAME", options.name, "The operator's name or id")->required()->check(kUtf8)->type_name("");
    command->add_option("--user", options.user, "The user's name on the server; default: the operator's")
        ->check(kUtf8)
        ->type_name("USER");
}

void AddRevoke(CLI::App& app, GrantOptions& options) {
    auto* command =
        AddCommand(app, "revoke", "Take a server user's rights in the book",
                   "A user that grant has made, and that has rights in no other book, is removed from the server.\n\n"
                   "Examples:\n  kpbook revoke 'postgresql://kp@shop-server/books?book=2026' 李明\n"
                   "  kpbook revoke 'postgresql://kp@shop-server/books?book=2026' liming --trace\n"
                   "  kpbook revoke 'postgresql://kp@shop-server/books?book=2026' liming --operator 系统操作员");
    AddBook(*command, options.book);
    command->add_option("USER", options.name, "The user's name on the server")->required()->check(kUtf8)->type_name("");
}

}  // namespace kpTables::kpbook::commands
