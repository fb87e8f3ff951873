// The wholesaler: its warehouses, people, suppliers, customers, projects and products.
#pragma once

#include <string>
#include <vector>

#include "Figures.h"
#include "Random.h"

namespace kpTables::sample {

struct Class {
    std::string code;
    std::string name;
};

struct Depot {
    int id;
    std::string name;
    std::string shelfPrefix;
    std::vector<std::string> productClasses;  ///< those that are kept here
};

struct Partner {
    int id;
    std::string classCode;
    std::string company;
    std::string unitName;
    std::vector<std::string> productClasses;  ///< classes that a supplier sells or a customer buys
    int taxRate;                              ///< 17, or 6 for a small-scale taxpayer
    bool wholeRange = true;                   ///< of a supplier: also sells other makers' goods
};

struct Project {
    int id;
    std::string code;
    std::string name;
    std::string fullName;
    std::string kind;
    std::string classCode;
    int customer;
};

struct Employee {
    int id;
    std::string classCode;
    std::string name;
    std::string duty;
};

struct Product {
    int id = 0;
    std::string code;
    std::string name;
    std::string inputCode;
    std::string classCode;
    std::string specification;
    std::string model;
    std::string unit;
    std::string packing;
    std::string barCode;
    std::string remark;
    std::string slot;          ///< "B-07-2"
    int supplier = 0;          ///< id of its maker
    int homeDepot = 0;         ///< id
    bool inMainDepot = false;  ///< also kept in warehouse 1
    int firstMonth = 1;        ///< 2 or 3: joins the range in that month
    Quantity step = 0;         ///< smallest quantity that is issued
    Quantity typical = 0;      ///< of one bill line
    Money purchasePrice = 0;   ///< tax included
    Money salePrice = 0;       ///< tax included

    /// The shelf in a warehouse: its home shelf, or the shelf of the same number in the main warehouse.
    std::string SlotIn(int depot) const;
};

struct Firm {
    std::vector<Depot> depots;
    std::vector<Class> productClasses, supplierClasses, customerClasses, projectClasses, departments;
    std::vector<Employee> employees;
    std::vector<Partner> suppliers, customers;
    std::vector<Project> projects;
    std::vector<Product> products;

    std::vector<std::string> NamesByDuty(const std::string& duty) const;
};

/// The firm that the lists in samples/names describe.
Firm LoadFirm(Random& random);

/// The products of the catalogue; needs the warehouses and the suppliers.
void LoadProducts(Firm& firm, Random& random);

}  // namespace kpTables::sample
