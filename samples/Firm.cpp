#include "Firm.h"

#include <algorithm>

#include "Names.h"

namespace kpTables::sample {

namespace {

std::vector<Depot> Depots() {
    return {{1, "中心仓库", "Z", {}},
            {2, "钢材货场", "G", {"01", "02", "03", "12"}},
            {3, "城北仓库", "B", {"04", "05", "06", "09", "10", "14", "15"}},
            {4, "五金电料库", "W", {"07", "08", "11", "13"}}};
}

void LoadPeople(Firm& firm) {
    for (const NameLine& line : ReadNames(PeopleText())) {
        if (line.mark == '[') {
            firm.departments.push_back({line.fields[0], line.fields[1]});
        } else {
            firm.employees.push_back({static_cast<int>(firm.employees.size()) + 1, firm.departments.back().code,
                                      line.fields[0], line.fields[1]});
        }
    }
}

void LoadSuppliers(Firm& firm) {
    firm.supplierClasses = {{"01", "生产厂家"}, {"02", "总代理"}, {"03", "经销商"}};
    for (const NameLine& line : ReadNames(SuppliersText())) {
        firm.suppliers.push_back({static_cast<int>(firm.suppliers.size()) + 1, line.fields[2], line.fields[0],
                                  line.fields[1], Split(line.fields[3], ','), std::stoi(line.fields[4]),
                                  line.fields[5] == "整"});
    }
}

void LoadCustomers(Firm& firm) {
    NameLine group;
    std::size_t inGroup = 0;
    for (const NameLine& line : ReadNames(CustomersText())) {
        if (line.mark == '[') {
            group = line;
            inGroup = 0;
            firm.customerClasses.push_back({line.fields[0], line.fields[1]});
            continue;
        }
        const std::vector<std::string> places = Split(group.fields[4], ',');
        const std::vector<std::string> endings = Split(group.fields[5], ',');
        const std::string& word = line.fields[0];
        std::string unitName = word;
        if (!endings.front().empty()) {
            unitName = word.front() == '=' ? word.substr(1) : places[inGroup % places.size()] + word;
        }
        firm.customers.push_back({static_cast<int>(firm.customers.size()) + 1, group.fields[0],
                                  unitName + endings[inGroup % endings.size()], unitName, Split(group.fields[3], ','),
                                  std::stoi(group.fields[2]), true});
        ++inGroup;
    }
}

void LoadProjects(Firm& firm) {
    for (const NameLine& line : ReadNames(ProjectsText())) {
        if (line.mark == '[') {
            firm.projectClasses.push_back({line.fields[0], line.fields[1]});
            continue;
        }
        int number = std::stoi(line.fields[4]);
        const auto customer = std::find_if(firm.customers.begin(), firm.customers.end(), [&](const Partner& partner) {
            return partner.classCode == line.fields[3] && --number == 0;
        });
        const int id = static_cast<int>(firm.projects.size()) + 1;
        firm.projects.push_back({id, "XM03-" + Digits(id, 3), line.fields[0], line.fields[1], line.fields[2],
                                 firm.projectClasses.back().code, customer->id});
    }
}

}  // namespace

std::vector<std::string> Firm::NamesByDuty(const std::string& duty) const {
    std::vector<std::string> names;
    for (const Employee& employee : employees) {
        if (employee.duty == duty) {
            names.push_back(employee.name);
        }
    }
    return names;
}

std::string Product::SlotIn(int depot) const {
    std::string shelf = slot;
    if (depot != homeDepot) {
        shelf.front() = 'Z';
    }
    return shelf;
}

Firm LoadFirm(Random& random) {
    Firm firm;
    firm.depots = Depots();
    LoadPeople(firm);
    LoadSuppliers(firm);
    LoadCustomers(firm);
    LoadProjects(firm);
    LoadProducts(firm, random);
    return firm;
}

}  // namespace kpTables::sample
