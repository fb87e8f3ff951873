// What people read of a report: which columns, under which headings, with names beside the ids.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/CTables.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::commands {

/// The names of master rows, each table read when the first of its names is asked for.
class ReportNames {
public:
    struct Product {
        std::string number;
        std::string name;
        std::string specification;  ///< 规格
        std::string model;          ///< 型号
        std::string unit;           ///< 计量单位
        std::string classCode;
    };

    explicit ReportNames(CTables& tables) : tables_(tables) {}

    /// An unknown product is named by its id: "(商品 77)".
    const Product& ProductOf(const Variant& id);
    /// The name of a class code; the code where the class has none.
    std::string ProductClass(const Variant& code);
    std::string ProjectClass(const Variant& code);
    std::string PartnerClass(bool isSupplier, const Variant& code);
    /// The name of an operator's id; the id where the book has no such operator.
    std::string OperatorOf(const std::string& id);

private:
    using ClassNames = std::map<std::string, std::string>;
    /// read answers the table of the classes.
    template <class Read>
    static std::string NameIn(std::optional<ClassNames>& names, const Variant& code, Read read);

    CTables& tables_;
    std::optional<std::map<std::int32_t, Product>> products_;
    std::optional<ClassNames> productClasses_;
    std::optional<ClassNames> projectClasses_;
    std::optional<ClassNames> supplierClasses_;
    std::optional<ClassNames> customerClasses_;
    std::optional<std::map<std::string, std::string>> operators_;
};

/// A row of the method, and what its columns are worked out with.
struct ReportRow {
    Recordset& row;
    CTables& tables;
    ReportNames& names;
    bool isInbound;  ///< the partners are suppliers

    Variant At(std::string_view column) const { return row.Fields(column).Value(); }
    /// amount / quantity, by the component's method; 0 without a quantity.
    Variant Average(std::string_view amount, std::string_view quantity) const;
};

struct ReportColumn {
    std::string heading;
    std::string column = {};  ///< the method's column, unless worked out
    Variant (*worked)(const ReportRow& row) = nullptr;
    VarType type = VarType::String;  ///< of what is worked out
    bool leftOutEmpty = false;       ///< not shown where no row has a text, or a figure other than 0
};

struct ReportLayout {
    std::vector<ReportColumn> shown = {};  ///< what a person reads, in this order
    /// With all columns: columns of the method whose name says something else, and what stands in their place.
    std::map<std::string, ReportColumn> replaced = {};
    std::vector<ReportColumn> added = {};    ///< with all columns: what stands behind those of the method
    std::vector<std::string> totalled = {};  ///< headings of columns whose sum is meaningful
};

enum class Columns { Shown, All };

struct LaidOutRows {
    RecordsetPtr rows;
    output::Presentation presentation;
};

/// The rows of a method in a layout. Values keep all their digits.
LaidOutRows LayOut(Recordset& rows, const ReportLayout& layout, Columns columns, CTables& tables, ReportNames& names,
                   bool isInbound);

/// How figures under a heading are shown: amounts, prices and quantities by its words.
output::Look LookOfHeading(const std::string& heading, VarType type);

}  // namespace kpTables::kpbook::commands
