#include "engines/common/Catalog.h"

#include <utility>

#include "sql/Names.h"

namespace kpTables::engines {

VarType FieldType(sql::Type type) noexcept {
    switch (type) {
        case sql::Type::Boolean:
            return VarType::Boolean;
        case sql::Type::Short:
            return VarType::Integer;
        case sql::Type::Long:
            return VarType::Long;
        case sql::Type::Double:
            return VarType::Double;
        case sql::Type::Currency:
            return VarType::Currency;
        case sql::Type::Date:
            return VarType::Date;
        case sql::Type::Text:
            return VarType::String;
        case sql::Type::Unknown:
        case sql::Type::Null:
            break;
    }
    return VarType::Empty;
}

TableInfo::Column DescriptionOf(const sql::CatalogColumn& column) {
    return {.name = column.name,
            .type = FieldType(column.type),
            .defaultValue = Variant::Null(),
            .required = false,
            .counter = column.counter,
            .key = false,
            .length = column.length,
            .precision = column.precision,
            .scale = column.scale};
}

const sql::CatalogTable* Catalog::Find(std::string_view name) const {
    for (const sql::CatalogTable& table : known_) {
        if (sql::SameName(table.name, name)) return &table;
    }
    auto table = ReadTable(name);
    if (!table) return nullptr;
    known_.push_back(std::move(*table));
    return &known_.back();
}

bool Catalog::Refresh() {
    const std::int64_t version = ReadVersion();
    if (version == version_) return false;
    version_ = version;
    known_.clear();
    DropKept();
    return true;
}

}  // namespace kpTables::engines
