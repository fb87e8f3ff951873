// What the translation of one statement shares: the catalog and the parameters made so far.
#pragma once

#include <string>

#include "sql/Catalog.h"
#include "sql/Translation.h"
#include "sql/Tree.h"

namespace kpTables::sql {

class Session {
public:
    Session(const Catalog& catalog, Translation& translation) : catalog_(catalog), translation_(translation) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Catalog& Tables() const noexcept { return catalog_; }
    /// The table, or SqlError UnknownTable.
    const CatalogTable& Table(const std::string& name, std::size_t offset) const;

    /// A parameter that is given the literal's value, or the value with a minus before it: "?3".
    std::string Parameter(const Literal& literal, Binding binding, bool negative = false);
    /// The text depends on the literal's value.
    void Fix(const Literal& literal);
    /// The value of a whole-number literal that shapes the text (it is fixed), or SqlError Syntax.
    long long WholeNumber(const Expression& expression);
    /// A quoted name that no statement writes, for a query that has none.
    std::string FreshName();

private:
    const Catalog& catalog_;
    Translation& translation_;
    int freshNames_ = 0;
};

/// The column of that name, letters without regard to case, or nullptr.
const CatalogColumn* FindColumn(const CatalogTable& table, const std::string& name);
/// The column, or SqlError UnknownColumn.
const CatalogColumn& RequireColumn(const CatalogTable& table, const std::string& name, std::size_t offset);
/// The column that stores what is written under the name; SqlError Unsupported when there is none.
const CatalogColumn& RequireStoredColumn(const CatalogTable& table, const std::string& name, std::size_t offset);

}  // namespace kpTables::sql
