#include "Backend.h"

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <ostream>
#include <sstream>

#include "kpTables/Error.h"

namespace kpTables::test {

namespace {

const Backend kKnown[] = {
    {"Jet", "kptest", "ACCESS", "COUNTER PRIMARY KEY", "TEXT(40)", "MEMO", "CURRENCY", "DOUBLE", "LONG", "DATETIME",
     "YESNO", VarType::Currency, VarType::Boolean},
    {"Server", "kptest", "Microsoft SQL Server", "COUNTER PRIMARY KEY", "TEXT(40)", "MEMO", "CURRENCY", "DOUBLE",
     "LONG", "DATETIME", "YESNO", VarType::Currency, VarType::Boolean},
    {"Sqlite", "sqlite", "", "INTEGER PRIMARY KEY AUTOINCREMENT", "VARCHAR(40)", "LONGVARCHAR", "NUMERIC(19,4)",
     "DOUBLE", "INTEGER", "TIMESTAMP", "SMALLINT", VarType::Double, VarType::Integer, false},
    {"Postgres", "postgres", "", "SERIAL PRIMARY KEY", "VARCHAR(40)", "TEXT", "NUMERIC(19,4)", "DOUBLE PRECISION",
     "INTEGER", "TIMESTAMP(0)", "SMALLINT"},
};

/// The folder with the socket of private_server.py's server; "" without one.
std::string ServerFolder() {
    const char* const url = std::getenv("KPTABLES_SERVER");
    if (!url) return "";
    const std::string text = url;
    const auto begin = text.find("host=") + 5;
    return text.substr(begin, text.find('&', begin) - begin);
}

}  // namespace

void PrintTo(const Backend& backend, std::ostream* out) { *out << backend.name; }

/// A server of the user's own, at the URL in KPTABLES_ODBC.
void AddReal(std::vector<Backend>& to) {
    if (!std::getenv("KPTABLES_ODBC")) return;
    const char* const isSql = std::getenv("KPTABLES_ODBC_SQL");
    if (isSql && std::string_view(isSql) == "1") {
        to.push_back({"Real", "", "", "INT IDENTITY(1,1) PRIMARY KEY", "NVARCHAR(40)", "NVARCHAR(MAX)", "MONEY",
                      "FLOAT", "INT", "DATETIME", "BIT", VarType::Currency, VarType::Boolean});
    } else {
        to.push_back({"Real", "", "ACCESS", "COUNTER PRIMARY KEY", "TEXT(40)", "MEMO", "CURRENCY", "DOUBLE", "LONG",
                      "DATETIME", "YESNO", VarType::Currency, VarType::Boolean});
    }
}

void DropTables(Book& book) {
    for (const char* table : {"T", "K"}) {
        try {
            book.Execute(std::string("DROP TABLE ") + table);
        } catch (const DatabaseError&) {
            // There is none.
            continue;
        }
    }
}

const std::vector<Backend>& Backends() {
    static const std::vector<Backend> found = [] {
        // SQLite's driver has no wide functions: the manager converts for it to the locale's encoding.
        std::setlocale(LC_CTYPE, "C.UTF-8");
        std::vector<Backend> there;
        AddReal(there);
        const char* const drivers = std::getenv("KPTABLES_ODBC_DRIVERS");
        std::istringstream names(drivers ? drivers : "");
        for (std::string name; names >> name;) {
            for (const Backend& each : kKnown) {
                if (each.driver != name || (name == "postgres" && ServerFolder().empty())) continue;
                there.push_back(each);
            }
        }
        return there;
    }();
    return found;
}

OdbcDatabase::OdbcDatabase(const Backend& backend) : backend_(backend) {
    if (backend.driver.empty()) {
        url_ = std::getenv("KPTABLES_ODBC");
        DropTables(*OpenBook(url_));
        return;
    }
    if (backend.driver == "postgres") {
        static int number = 0;
        const std::string schema = "odbc" + std::to_string(getpid()) + "_" + std::to_string(++number);
        const std::string server = "odbc:Driver=postgres;Servername=" + ServerFolder() + ";Database=postgres;UID=kp;";
        OpenBook(server)->Execute("CREATE SCHEMA " + schema);
        url_ = server + "ConnSettings={SET search_path=" + schema + "}";
        return;
    }
    const std::string file = directory_.File("data");
    if (backend.driver == "kptest") CreateBook(file);
    url_ =
        "odbc:Driver=" + backend.driver + ";Database=" + file + (backend.dbms.empty() ? "" : ";Name=" + backend.dbms);
}

OdbcDatabase::~OdbcDatabase() {
    if (backend_.driver.empty()) DropTables(*OpenBook(url_));
}

void OdbcDatabase::MakeTables(Book& book) const {
    const Backend& b = backend_;
    book.Execute("CREATE TABLE T (id " + b.counter + ", 名称 " + b.text + ", 金额 " + b.amount + ", 单价 " + b.real +
                 ", 数 " + b.whole + " DEFAULT 7, 日期 " + b.moment + ", 标志 " + b.flag + ", 说明 " + b.memo + ")");
    book.Execute("CREATE TABLE K (编号 " + b.whole + ", 数 " + b.whole + ", 单价 " + b.real + ")");
}

}  // namespace kpTables::test
