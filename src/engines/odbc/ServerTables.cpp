#include "engines/odbc/ServerTables.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <utility>

#include "engines/common/SchemaParts.h"
#include "engines/odbc/RowReader.h"
#include "kpTables/Convert.h"
#include "sql/Names.h"

namespace kpTables::engines::odbc {

namespace {

// The columns of the catalog's answers, from 0.
namespace tables {
enum Column { kCatalog = 0, kSchema = 1, kName = 2 };
}
namespace columns {
enum Column { kTable = 2, kName = 3, kType = 4, kTypeName = 5, kSize = 6, kDigits = 8, kNullable = 10, kDefault = 12 };
}
namespace keys {
enum Column { kName = 3, kNumber = 4 };
}
namespace indexes {
enum Column { kNonUnique = 3, kIndex = 5, kType = 6, kNumber = 7, kColumn = 8 };
}

std::string TextOr(Query& query, int column) { return std::string(query.Text(column).value_or(std::string_view())); }

/// A default as the catalog writes it: ((0)), 'text', N'text', 0, Null or an expression.
Variant ConstantOf(std::string_view written, VarType type) {
    while (written.starts_with('(') && written.ends_with(')')) written = written.substr(1, written.size() - 2);
    if (written.starts_with('N') && written.substr(1).starts_with('\'')) written.remove_prefix(1);
    // A server may write a type behind it: 'text'::character varying.
    written = written.substr(0, written.find("::"));
    const bool isText = written.size() > 1 && written.starts_with('\'') && written.ends_with('\'');
    try {
        if (isText && type == VarType::String) return written.substr(1, written.size() - 2);
        if (isText || !IsNumeric(Variant(written))) return Variant::Null();
        if (type == VarType::Currency) return Currency::FromDecimalText(written);
        const double number = CDbl(Variant(written));
        switch (type) {
            case VarType::Boolean:
                return number != 0;
            case VarType::Integer:
                return CInt(number);
            case VarType::Long:
                return CLng(number);
            case VarType::Double:
                return number;
            default:
                return Variant::Null();
        }
    } catch (const Error&) {
        return Variant::Null();
    }
}

bool SaysCounter(std::string_view typeName) {
    const std::string folded = sql::FoldedName(typeName);
    return folded.find("identity") != folded.npos || folded == "counter" || folded.find("serial") != folded.npos;
}

/// The column in the present row of a list of columns, whose cells are read in their order.
ServerColumn ColumnOf(Query& query) {
    ServerColumn column;
    column.name = column.description.name = TextOr(query, columns::kName);
    column.description.type = static_cast<SQLSMALLINT>(query.Whole(columns::kType).value_or(SQL_UNKNOWN_TYPE));
    column.counter = SaysCounter(TextOr(query, columns::kTypeName));
    column.description.size = static_cast<SQLULEN>(query.Whole(columns::kSize).value_or(0));
    column.description.digits = static_cast<SQLSMALLINT>(query.Whole(columns::kDigits).value_or(0));
    column.nullable = query.Whole(columns::kNullable).value_or(SQL_NULLABLE) != SQL_NO_NULLS;
    const std::string written = TextOr(query, columns::kDefault);
    column.counter = column.counter || written.starts_with("nextval(");
    column.defaultValue = ConstantOf(written, FieldTypeOf(column.description));
    return column;
}

using ColumnNumbers = std::map<std::int32_t, std::string>;

std::vector<std::string> InOrder(const ColumnNumbers& numbered) {
    std::vector<std::string> names;
    for (const auto& [number, name] : numbered) names.push_back(name);
    return names;
}

/// For the comparison with the schema.
class ColumnNames : public engines::Catalog {
public:
    explicit ColumnNames(Session& session) {
        Query query(session);
        query.ListColumns("", "", "%");
        while (query.Fetch()) {
            const std::string table = TextOr(query, columns::kTable);
            sql::CatalogTable& named = tables_[sql::FoldedName(table)];
            named.name = table;
            named.columns.emplace_back().name = TextOr(query, columns::kName);
        }
    }

    const sql::CatalogTable* Find(std::string_view table) const override {
        const auto found = tables_.find(sql::FoldedName(table));
        return found == tables_.end() ? nullptr : &found->second;
    }

    TableInfo Describe(std::string_view /*table*/) const override { return {}; }
    std::vector<std::string> TableNames() const override { return {}; }
    std::string RowIdColumn(std::string_view /*table*/) const override { return ""; }
    std::string RowIdName(const sql::CatalogTable& /*table*/) const override { return ""; }

private:
    std::optional<sql::CatalogTable> ReadTable(std::string_view /*name*/) const override { return std::nullopt; }
    std::int64_t ReadVersion() override { return 0; }

    std::map<std::string, sql::CatalogTable> tables_;
};

}  // namespace

bool ServerColumn::IsComparable() const noexcept {
    switch (description.type) {
        case SQL_LONGVARCHAR:
        case SQL_WLONGVARCHAR:
        case SQL_LONGVARBINARY:
        case SQL_BINARY:
        case SQL_VARBINARY:
            return false;
        default:
            return true;
    }
}

const ServerColumn* ServerTable::Find(std::string_view column) const {
    const auto found =
        std::ranges::find_if(columns, [&](const ServerColumn& each) { return sql::SameName(each.name, column); });
    return found == columns.end() ? nullptr : &*found;
}

const ServerColumn* ServerTable::Counter() const {
    const auto found = std::ranges::find_if(columns, &ServerColumn::counter);
    return found == columns.end() ? nullptr : &*found;
}

std::string ServerTables::Pattern(std::string_view name) const {
    std::string pattern;
    for (const char c : name) {
        if (c == '_' || c == '%') pattern += session_.PatternEscape();
        pattern += c;
    }
    return pattern;
}

std::vector<ServerTables::Place> ServerTables::Places(std::string_view table) {
    std::vector<Place> places;
    Query query(session_);
    query.ListTables(table.empty() ? std::string() : Pattern(session_.Spelled(table)));
    while (query.Fetch()) {
        Place place{TextOr(query, tables::kCatalog), TextOr(query, tables::kSchema), TextOr(query, tables::kName)};
        if (table.empty() || sql::SameName(place.name, table)) places.push_back(std::move(place));
    }
    return places;
}

const ServerTable* ServerTables::Find(std::string_view table) {
    const auto same = [&](const ServerTable& known) { return sql::SameName(known.name, table); };
    const auto found = std::ranges::find_if(known_, same);
    if (found != known_.end()) return &*found;
    const std::vector<Place> places = Places(table);
    if (places.empty()) return nullptr;
    return &known_.emplace_back(Read(places.front()));
}

ServerTable ServerTables::Read(const Place& place) {
    ServerTable table{place.catalog, place.schema, place.name};
    Query query(session_);
    query.ListColumns(place.catalog, place.schema, Pattern(place.name));
    while (query.Fetch()) {
        if (TextOr(query, columns::kTable) == place.name) table.columns.push_back(ColumnOf(query));
    }
    ReadKey(table);
    return table;
}

void ServerTables::ReadKey(ServerTable& table) {
    ColumnNumbers primary;
    {
        Query query(session_);
        query.ListPrimaryKeys(table.catalog, table.schema, table.name);
        while (query.Fetch()) {
            std::string name = TextOr(query, keys::kName);
            primary[query.Whole(keys::kNumber).value_or(0)] = std::move(name);
        }
    }
    table.key = InOrder(primary);
    if (!table.key.empty()) return;
    std::map<std::string, ColumnNumbers> unique;
    Query query(session_);
    query.ListUniqueIndexes(table.catalog, table.schema, table.name);
    while (query.Fetch()) {
        const bool isUnique = query.Whole(indexes::kNonUnique).value_or(1) == 0;
        const std::string index = TextOr(query, indexes::kIndex);
        const bool isIndex = query.Whole(indexes::kType).value_or(SQL_TABLE_STAT) != SQL_TABLE_STAT;
        const std::int32_t number = query.Whole(indexes::kNumber).value_or(0);
        if (isUnique && isIndex) unique[index][number] = TextOr(query, indexes::kColumn);
    }
    for (const auto& [index, numbered] : unique) {
        const bool whole = std::ranges::all_of(numbered, [&](const auto& each) {
            const ServerColumn* column = table.Find(each.second);
            return column && !column->nullable;
        });
        if (whole) {
            table.key = InOrder(numbered);
            return;
        }
    }
}

std::vector<TableInfo> ServerTables::All() {
    std::vector<std::string> names;
    std::map<std::string, TableInfo> described;
    for (const Place& place : Places("")) {
        if (described.contains(place.name)) continue;
        const ServerTable* const table = Find(place.name);
        if (!table) continue;
        TableInfo& info = described[place.name];
        info.name = place.name;
        for (const ServerColumn& column : table->columns) {
            const bool key = std::ranges::any_of(
                table->key, [&](const std::string& name) { return sql::SameName(name, column.name); });
            const bool required = !column.nullable && !column.counter && column.defaultValue.IsNull();
            const VarType type = FieldTypeOf(column.description);
            const bool bounded = type == VarType::String && column.IsComparable();
            info.columns.push_back({column.name, type, column.defaultValue, required, column.counter, key,
                                    bounded ? static_cast<int>(column.description.size) : 0});
        }
        names.push_back(place.name);
    }
    std::vector<TableInfo> all;
    for (const std::string& name : InSchemaOrder(std::move(names))) all.push_back(std::move(described[name]));
    return all;
}

std::vector<std::string> ServerTables::Missing() { return MissingParts(ColumnNames(session_)); }

}  // namespace kpTables::engines::odbc
