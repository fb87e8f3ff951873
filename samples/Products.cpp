#include <algorithm>

#include "Firm.h"
#include "Names.h"

namespace kpTables::sample {

namespace {

/// A price in yuan with two decimals.
Money ReadPrice(const std::string& text) {
    const std::vector<std::string> parts = Split(text, '.');
    return std::stoll(parts[0]) * kYuan + std::stoll(parts[1]) * (kYuan / 100);
}

/// An EAN-13 code: China's prefix, the maker's number, the article's number and the check digit.
std::string BarCode(int maker, int article) {
    const std::string digits = "69" + Digits(20000 + maker * 137, 5) + Digits(article, 5);
    int sum = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
    }
    return digits + static_cast<char>('0' + (10 - sum % 10) % 10);
}

/// The maker of the nth family of a class: the class's own producers in turn, or else any supplier of the class.
int Maker(const Firm& firm, const std::string& classCode, std::size_t family) {
    std::vector<int> makers, others;
    for (const Partner& supplier : firm.suppliers) {
        if (std::find(supplier.productClasses.begin(), supplier.productClasses.end(), classCode) !=
            supplier.productClasses.end()) {
            (supplier.wholeRange ? others : makers).push_back(supplier.id);
        }
    }
    const std::vector<int>& from = makers.empty() ? others : makers;
    return from[family % from.size()];
}

const Depot& HomeDepot(const Firm& firm, const std::string& classCode) {
    return *std::find_if(firm.depots.begin(), firm.depots.end(), [&](const Depot& depot) {
        return std::find(depot.productClasses.begin(), depot.productClasses.end(), classCode) !=
               depot.productClasses.end();
    });
}

std::string Slot(const Depot& depot, int inClass, const std::string& classCode) {
    return depot.shelfPrefix + classCode + "-" + Digits(1 + inClass / 4, 2) + "-" + Digits(1 + inClass % 4, 1);
}

}  // namespace

void LoadProducts(Firm& firm, Random& random) {
    NameLine group, family;
    std::size_t families = 0;
    int inClass = 0;
    int inFamily = 0;
    int taken = 0;
    for (const NameLine& line : ReadNames(CatalogueText())) {
        if (line.mark == '[') {
            group = line;
            families = 0;
            inClass = 0;
            firm.productClasses.push_back({line.fields[0], line.fields[1]});
            continue;
        }
        if (line.mark == 0) {
            family = line;
            inFamily = 0;
            ++families;
            continue;
        }
        Product product;
        product.id = static_cast<int>(firm.products.size()) + 1;
        product.classCode = group.fields[0];
        product.code = product.classCode + Digits(inClass + 1, 3);
        product.name = family.fields[0];
        product.inputCode = family.fields[1] + Digits(++inFamily, 2);
        product.unit = family.fields[2];
        product.packing = family.fields[3];
        product.step = std::stoll(family.fields[4]);
        product.specification = line.fields[0];
        product.model = line.fields[1];
        product.remark = group.fields[3];
        product.supplier = Maker(firm, product.classCode, families);
        product.barCode = BarCode(product.supplier, product.id);
        const Depot& home = HomeDepot(firm, product.classCode);
        product.homeDepot = home.id;
        product.slot = Slot(home, inClass, product.classCode);
        product.purchasePrice = ReadPrice(line.fields[2]);
        product.salePrice = RoundPrice(product.purchasePrice * random.Between(112, 128) / 100);
        product.typical = std::max(
            product.step, Floor(std::stoll(group.fields[2]) * kYuan * kUnit / product.purchasePrice, product.step));
        product.inMainDepot = line.mark == '-' && random.Percent(60);
        if (line.mark == '+') {
            product.firstMonth = 2 + taken++ % 2;
        }
        firm.products.push_back(std::move(product));
        ++inClass;
    }
}

}  // namespace kpTables::sample
