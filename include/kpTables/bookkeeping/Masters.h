// Master rows by the words that people have for them.
#pragma once

#include <cstdint>
#include <string>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

enum class MasterKind {
    Warehouse,
    Supplier,
    Customer,
    Product,
    Project,
    Employee,
    Payment,
    SupplierClass,
    CustomerClass,
    ProjectClass,
    DepartmentClass,
    ProductClass
};

/// The id of the master row that a text means: its number, code or name, or its id. What the component's look-ups find
/// is tried first (a product's bar code, short code, number and name; a partner's 单位名称), then the kind's other
/// names (企业名称). A text of digits is an id only when no row has it as a code, number or name. Texts compare as the
/// book compares them: without regard to case, full width and trailing blanks. 全部 and 全部仓库 mean no single
/// warehouse and are not found. Payment methods and product classes have no id: theirs is the place of the row in its
/// table, from 1, in order of entry; it changes when an earlier row is removed.
/// Error 5 when nothing is found, with rows whose name contains the text; and when several rows match in the first
/// column that matches at all, with these candidates (id, number, name).
std::int32_t MasterId(const ConnectionPtr& book, MasterKind kind, const std::string& text);

/// The code of the class that a text means (its code, name or id), as the rows of the class keep it: "01". Errors as
/// MasterId; error 5 for a kind that is no class.
std::string ClassCodeOf(const ConnectionPtr& book, MasterKind kind, const std::string& text);

}  // namespace kpTables::bookkeeping
