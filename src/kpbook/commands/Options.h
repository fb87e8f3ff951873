// The options of each command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Currency.h"
#include "kpTables/Date.h"

namespace kpTables::kpbook::commands {

inline constexpr int kLastMonth = 12;

struct NewOptions {
    std::string book;
    bool bare = false;      ///< the tables only
    bool sqlNames = false;  ///< the table Header has SQL Server's column names
    std::string company;    ///< empty: a book without a firm, unless somebody at a terminal names one
    std::optional<std::int16_t> year;
    std::optional<std::int16_t> month;
    std::vector<std::string> warehouses;
    std::string from;  ///< the book of the year before; empty: none
};

struct OpeningOptions {
    std::string book;
    std::string path;  ///< "-" is standard input
};

struct CopyOptions {
    std::string book;
    std::string copy;
};

struct UpgradeOptions {
    std::string book;
    bool noBackup = false;
};

struct BooksOptions {
    std::string url;  ///< of a server's database, or of a book there
};

struct SchemaOptions {
    std::string dialect = "jet";
};

/// Of grant and revoke.
struct GrantOptions {
    std::string book;
    std::string name;  ///< of grant: the operator's; of revoke: the user's
    std::string user;  ///< of the server; empty: named as the operator
};

struct InfoOptions {
    std::string book;
};

/// How figures are shown.
struct Showing {
    std::optional<bool> atCost;  ///< outbound amounts from the cost bills, or not; empty: as the book's figures are
    bool raw = false;            ///< the method's rows and columns as they are
    bool wide = false;           ///< all columns
    bool chart = false;          ///< with bars, in a terminal
};

struct StockOptions {
    std::string book;
    std::int16_t month = 0;
    std::optional<std::int32_t> warehouse;  ///< empty: all of them together
    std::optional<std::int32_t> product;    ///< empty: all that have figures
    std::string warehouseText;              ///< as typed: a name or an id; empty: none
    std::string productText;
    Showing showing;
};

/// The filters of a report; those that were not given are empty or 0.
struct ReportFilters {
    std::string direction;  ///< 入库, 出库 or 成本
    std::optional<Date> from;
    std::optional<Date> to;
    std::string fromNumber;
    std::string toNumber;
    std::optional<std::int32_t> warehouse;
    std::optional<std::int32_t> partner;
    std::optional<std::int32_t> project;
    std::string warehouseText;  ///< as typed: a name or an id; empty: none
    std::string partnerText;
    std::string projectText;
    std::string type;
    std::string handler;
    std::string counterpart;
    std::string packing;
    std::optional<double> minQuantity;
    std::optional<double> maxQuantity;
    std::optional<Currency> minAmount;
    std::optional<Currency> maxAmount;
    std::int16_t month = 0;
    std::int16_t fromMonth = 0;
    std::int16_t toMonth = 0;
    std::optional<Date> date;
    bool before = false;
    std::string measure;  ///< 金额 or 数量
};

struct ReportKind;

struct ReportOptions {
    const ReportKind* kind = nullptr;  ///< null: list the reports
    bool all = false;                  ///< the whole set of a month, instead of a kind
    std::string book;
    ReportFilters filters;
    Showing showing;
};

/// Of add, edit, remove and list.
struct MasterOptions {
    std::string book;
    std::string kind;                 ///< a word for the kind
    std::string which;                ///< the row
    std::vector<std::string> values;  ///< COLUMN=VALUE
};

struct OperatorsOptions {
    std::string book;
    std::string action;              ///< empty: list the operators
    std::string name;                ///< of the operator that the action is for; of require: on or off
    std::vector<std::string> words;  ///< rights, and 姓名= or 仓库=
};

struct LogOptions {
    std::string book;
    std::optional<std::int32_t> limit;
    Showing showing;
};

struct PayrollOptions {
    std::string book;
    std::optional<std::int16_t> month;    ///< the sheet of a month
    std::optional<std::int16_t> toMonth;  ///< sums from the first month to this one; empty: of all months
    bool fresh = false;                   ///< make the month's sheet from the work orders
    Showing showing;
};

struct ImportOptions {
    std::string book;
    std::string table;  ///< without a path: the folder of an export
    std::string path;   ///< "-" is standard input
    std::string encoding;
    std::string separator;
    std::string sheet;  ///< of a workbook; empty: the first
    bool update = false;
    std::string key;  ///< columns that tell the rows apart, with commas between; empty: the table's primary key
};

struct ExportOptions {
    std::string book;
    std::string table;   ///< without a target: the folder for all tables
    std::string target;  ///< a folder, or "-" for standard output
    bool excel = false;  ///< begin the files with a byte order mark
};

struct CallOptions {
    std::string book;
    std::string method;
    std::vector<std::string> arguments;
    bool raw = false;          ///< values with quotes are passed on as they are
    bool transaction = false;  ///< all or nothing
};

struct SqlOptions {
    std::string book;
    std::string text;                     ///< one statement, or "-" for a script on standard input
    std::string file;                     ///< a script
    std::vector<std::string> parameters;  ///< "name=value"
    bool transaction = false;             ///< all or nothing
};

struct CloseOptions {
    std::string book;
    std::int16_t month = 0;
    std::string warehouse;  ///< name or id; empty: the operator's, or all of them
    bool costUsed = false;
    bool costUnused = false;  ///< also where the book's setting says otherwise
    std::optional<Date> date;
    bool again = false;        ///< close a month that is closed already
    std::int16_t through = 0;  ///< close the months up to this one too
    bool dryRun = false;       ///< show the changes and make none
};

struct ReopenOptions {
    std::string book;
    std::int16_t month = 0;
    std::string warehouse;  ///< name or id; empty: the operator's, or all of them
};

struct CheckOptions {
    std::string book;
    bool repair = false;  ///< remove doubled rows
};

inline constexpr int kMostGenerations = 1000;

struct BackupOptions {
    std::string book;
    std::string path;
    int keep = 0;  ///< generations; 0: an existing file is refused
};

struct MethodsOptions {
    std::string name;  ///< empty: the whole list
};

}  // namespace kpTables::kpbook::commands
