// The tables of a database, as its driver's catalog describes them.
#pragma once

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/odbc/Parameters.h"
#include "engines/odbc/Query.h"
#include "engines/odbc/Session.h"
#include "kpTables/Book.h"

namespace kpTables::engines::odbc {

struct ServerColumn {
    std::string name;
    ColumnDescription description;
    Variant defaultValue;  ///< Null when there is none, or it is no constant
    bool nullable = true;
    bool counter = false;

    ParameterType Type() const noexcept { return {description.type, description.size, description.digits}; }
    /// Whether a value can be found again by comparing: not a text without limit.
    bool IsComparable() const noexcept;
};

struct ServerTable {
    std::string catalog = {};
    std::string schema = {};
    std::string name = {};
    std::vector<ServerColumn> columns = {};
    std::vector<std::string> key = {};  ///< its primary key, else a unique index without Nulls; empty when none

    /// The column of that name, ignoring case; null when there is none.
    const ServerColumn* Find(std::string_view column) const;
    const ServerColumn* Counter() const;
};

/// Reads them on demand and keeps what it has read.
class ServerTables {
public:
    explicit ServerTables(Session& session) : session_(session) {}

    /// The table of that name, ignoring case where the server does; null when there is none. Valid until Forget.
    const ServerTable* Find(std::string_view table);
    /// All tables, in the order of the catalog.
    std::vector<TableInfo> All();
    /// See Book::MissingParts. Of each table its columns alone are read, all at once.
    std::vector<std::string> Missing();
    void Forget() noexcept { known_.clear(); }

private:
    struct Place {
        std::string catalog;
        std::string schema;
        std::string name;
    };
    /// The pattern that means this name alone.
    std::string Pattern(std::string_view name) const;
    std::vector<Place> Places(std::string_view table);
    ServerTable Read(const Place& place);
    void ReadKey(ServerTable& table);

    Session& session_;
    std::list<ServerTable> known_;
};

}  // namespace kpTables::engines::odbc
