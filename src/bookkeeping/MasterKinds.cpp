// The words for the kinds of master rows, and the rights to change them.
#include <algorithm>
#include <string>

#include "bookkeeping/MasterFields.h"
#include "bookkeeping/MasterRows.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/bookkeeping/ActingOperator.h"
#include "kpTables/bookkeeping/MasterEntry.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

struct KindWord {
    std::string_view word;
    MasterKind kind;
};

constexpr KindWord kKindWords[] = {
    {"warehouse", MasterKind::Warehouse}, {"仓库", MasterKind::Warehouse},  {"supplier", MasterKind::Supplier},
    {"厂商", MasterKind::Supplier},       {"供应商", MasterKind::Supplier}, {"customer", MasterKind::Customer},
    {"客户", MasterKind::Customer},       {"product", MasterKind::Product}, {"商品", MasterKind::Product},
    {"project", MasterKind::Project},     {"项目", MasterKind::Project},    {"employee", MasterKind::Employee},
    {"雇员", MasterKind::Employee},       {"员工", MasterKind::Employee},   {"payment", MasterKind::Payment},
    {"收付款方式", MasterKind::Payment}};

struct ClassWord {
    std::string_view word;
    std::string_view chinese;
    MasterKind kind;
};

constexpr ClassWord kClassWords[] = {{"supplier", "厂商", MasterKind::SupplierClass},
                                     {"customer", "客户", MasterKind::CustomerClass},
                                     {"project", "项目", MasterKind::ProjectClass},
                                     {"department", "部门", MasterKind::DepartmentClass},
                                     {"product", "商品", MasterKind::ProductClass}};

}  // namespace

std::optional<MasterKind> MasterKindOf(std::string_view word) {
    for (const auto& each : kKindWords) {
        if (word == each.word) return each.kind;
    }
    for (const auto& each : kClassWords) {
        if (word == std::string(each.word) + "-class" || word == std::string(each.chinese) + "分类") return each.kind;
    }
    return std::nullopt;
}

std::optional<MasterKind> ClassKindOf(std::string_view word) {
    if (word == "供应商") return MasterKind::SupplierClass;
    for (const auto& each : kClassWords) {
        if (word == each.word || word == each.chinese || word == std::string(each.chinese) + "分类") return each.kind;
    }
    return std::nullopt;
}

std::string ClassKindWords() {
    std::string words;
    for (const auto& each : kClassWords) {
        words += (words.empty() ? "" : ", ") + std::string(each.word) + " (" + std::string(each.chinese) + ")";
    }
    return words;
}

MasterKind ClassKindWith(const ConnectionPtr& book, const std::string& which) {
    std::optional<MasterKind> found;
    std::string candidates;
    std::size_t count = 0;
    for (const auto& each : kClassWords) {
        for (const auto& row : MatchingRows(book, each.kind, which)) {
            candidates += (count++ == 0 ? "" : ", ") + std::string(each.chinese) + " " + row.Text();
            found = each.kind;
        }
    }
    if (!found) RefuseWith(Message("the book has no class {1}", which));
    if (count > 1) {
        RefuseWith(Message("'{1}' may be any of these classes: {2}; say which kind, and the code: 种类=商品", which,
                           candidates));
    }
    return *found;
}

const char* MasterTableName(MasterKind kind) { return TableOf(kind).table; }

const char* RightToChange(MasterKind kind) {
    switch (kind) {
        case MasterKind::Warehouse:
            return rights::kWarehouses;
        case MasterKind::Supplier:
        case MasterKind::SupplierClass:
            return rights::kSuppliers;
        case MasterKind::Customer:
        case MasterKind::CustomerClass:
            return rights::kCustomers;
        case MasterKind::Product:
        case MasterKind::ProductClass:
            return rights::kProducts;
        case MasterKind::Project:
        case MasterKind::ProjectClass:
            return rights::kProjects;
        default:
            return rights::kSettings;
    }
}

}  // namespace kpTables::bookkeeping
