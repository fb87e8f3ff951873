#include "BookMaker.h"

#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Child.h"
#include "RawDatabase.h"
#include "kpTables/Book.h"

namespace kpTables::bench {

namespace {

constexpr std::int64_t kLinesOfABill = 10;
constexpr std::int64_t kProjects = 50;

/// Spreads ids over products without a pattern that an index could profit from.
std::uint64_t Mix(std::uint64_t value) {
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9ULL;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBULL;
    return value ^ (value >> 31);
}

/// The indexes are rebuilt after all rows are inserted: faster than updating them row by row.
std::vector<std::string> DropIndexes(const RawDatabase& database) {
    std::vector<std::string> made;
    std::vector<std::string> names;
    RawStatement indexes =
        database.Prepare("SELECT name, sql FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL");
    while (indexes.Step()) {
        names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(indexes.Get(), 0)));
        made.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(indexes.Get(), 1)));
    }
    for (const std::string& name : names) {
        database.Run("DROP INDEX \"" + name + "\"");
    }
    return made;
}

void FillMasterData(const RawDatabase& database, const BookSize& size) {
    RawStatement depot = database.Prepare("INSERT INTO 仓库设置 (dpID, 仓库名称) VALUES (?, ?)");
    for (int id = 1; id <= size.depots; ++id) {
        const std::string name = std::to_string(id) + "号仓库";
        depot.Bind(1, std::int64_t{id}).Bind(2, name.c_str()).Run();
    }
    constexpr std::int64_t kPartners = 200;
    for (const char* table : {"厂商资料", "客户资料"}) {
        RawStatement partner = database.Prepare(std::string("INSERT INTO ") + table +
                                                " (KSID, ClassCode, 企业名称, 单位名称) VALUES (?, '01', ?, ?)");
        for (std::int64_t id = 1; id <= kPartners; ++id) {
            const std::string name = "第" + std::to_string(id) + "建材有限公司";
            partner.Bind(1, id).Bind(2, name.c_str()).Bind(3, name.c_str()).Run();
        }
    }
    RawStatement project = database.Prepare(
        "INSERT INTO 项目设置 (项目ID, 项目编号, 项目名称, 工程名称, 工程性质, ClassCode) VALUES (?, ?, ?, ?, '土建', "
        "'01')");
    for (std::int64_t id = 1; id <= kProjects; ++id) {
        const std::string code = "X" + std::to_string(id);
        const std::string name = "第" + std::to_string(id) + "标段";
        project.Bind(1, id).Bind(2, code.c_str()).Bind(3, name.c_str()).Bind(4, name.c_str()).Run();
    }
    RawStatement product = database.Prepare(
        "INSERT INTO 商品设置 (pdID, 商品名称, 商品编号, ClassCode, 规格, 计量单位, 默认单价, 商品条码, 输入简码, "
        "KSID) VALUES (?, ?, ?, '01', ?, '个', ?, ?, ?, ?)");
    for (std::int64_t id = 1; id <= size.products; ++id) {
        const NamesOfProduct names = NamesOf(id);
        product.Bind(1, id).Bind(2, names.name.c_str()).Bind(3, names.code.c_str()).Bind(4, names.code.c_str());
        product.Bind(5, static_cast<double>(id % 1000) / 8).Bind(6, names.barCode.c_str());
        product.Bind(7, names.shortCode.c_str()).Bind(8, 1 + id % kPartners).Run();
    }
    // With a blank after each text, as settings are stored.
    RawStatement option = database.Prepare("INSERT INTO 系统选项 (Item, Discription) VALUES (?, ?)");
    for (std::int64_t id = 1; id <= kOptions; ++id) {
        const std::string item = NameOfOption(id) + " ";
        const std::string value = std::to_string(id * 100) + " ";
        option.Bind(1, item.c_str()).Bind(2, value.c_str()).Run();
    }
}

void FillBalance(const RawDatabase& database, const BookSize& size) {
    RawStatement row = database.Prepare(
        "INSERT INTO 仓库余额表 (年份, 月份, pdID, dpID, 上期库存单价, 上期库存数量, 上期库存金额) VALUES (?, ?, ?, ?, "
        "?, ?, ?)");
    for (int depot = 1; depot <= size.depots; ++depot) {
        for (std::int64_t product = 1; product <= size.products; ++product) {
            const std::int64_t price =
                50'000 + static_cast<std::int64_t>(Mix(static_cast<std::uint64_t>(product)) % 950'000);
            const std::int64_t quantity = 100 + product % 900;
            row.Bind(1, std::int64_t{kBookYear}).Bind(2, std::int64_t{size.balanceMonth}).Bind(3, product);
            row.Bind(4, std::int64_t{depot}).Bind(5, static_cast<double>(price) / 10'000);
            row.Bind(6, static_cast<double>(quantity)).Bind(7, price * quantity).Run();
        }
    }
}

struct Header {
    std::int64_t bill;
    std::int64_t month;
    std::int64_t depot;
};

void InsertHeader(RawStatement& statement, const Header& header, bool inbound) {
    const std::int64_t day = 1 + header.bill % 28;
    const std::string number =
        (inbound ? "RK" : "CK") + std::to_string(header.depot) + "-" + std::to_string(header.bill);
    const std::string date = std::to_string(kBookYear) + (header.month < 10 ? "-0" : "-") +
                             std::to_string(header.month) + (day < 10 ? "-0" : "-") + std::to_string(day);
    statement.Bind(1, header.bill).Bind(2, std::int64_t{kBookYear}).Bind(3, header.month).Bind(4, day);
    statement.Bind(5, inbound ? "入库单" : "出库单").Bind(6, inbound ? "赊购" : "批发").Bind(7, number.c_str());
    statement.Bind(8, header.depot).Bind(9, 1 + header.bill % 200).Bind(10, date.c_str());
    statement.Bind(11, header.bill % (kProjects + 1)).Run();
}

void InsertLine(RawStatement& statement, const Header& header, std::uint64_t line, const BookSize& size) {
    const std::uint64_t random = Mix(line);
    const std::int64_t product = 1 + static_cast<std::int64_t>(random % static_cast<std::uint64_t>(size.products));
    const std::int64_t price = 50'000 + static_cast<std::int64_t>(random >> 40) % 950'000;
    const std::int64_t quantity = 1 + static_cast<std::int64_t>(random >> 32 & 63);
    const std::int64_t net = price * quantity;
    const std::int64_t tax = net * 17 / 100;
    statement.Bind(1, header.bill).Bind(2, product).Bind(3, header.depot).Bind(4, price * 117 / 100);
    statement.Bind(5, static_cast<double>(quantity)).Bind(6, net + tax).Bind(7, tax).Bind(8, price).Bind(9, net);
    statement.Bind(10, header.depot).Run();
}

void FillBills(const RawDatabase& database, const BookSize& size, bool inbound) {
    const std::string family = inbound ? "入库" : "出库";
    RawStatement headers = database.Prepare(
        "INSERT INTO " + family +
        "目录 (BillID, 年份, 月份, 日子, 单据类型, 类型, 单据编号, dpID, ksID, 录入日期, pjID, 录入员, 审核员, 说明) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, '朱琳', '胡美娟', '货款月结')");
    RawStatement lines = database.Prepare(
        "INSERT INTO " + family +
        "记录 (BillID, pdID, dpID, 单价, 数量, 金额, 税额, 除税单价, 除税金额, 仓库, 经手人, 交接人, 包装, 货位) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, '陈建国', '王丽华', '纸箱', 'A-01-1')");
    const std::int64_t bills = (size.lines + kLinesOfABill - 1) / kLinesOfABill;
    const std::uint64_t seed = inbound ? 1ULL << 40 : 1ULL << 41;
    std::int64_t line = 0;
    for (std::int64_t bill = 1; bill <= bills; ++bill) {
        const Header header{bill, 1 + (bill - 1) * size.months / bills, 1 + bill % size.depots};
        InsertHeader(headers, header, inbound);
        for (std::int64_t i = 0; i < kLinesOfABill && line < size.lines; ++i) {
            InsertLine(lines, header, seed + static_cast<std::uint64_t>(line++), size);
        }
    }
}

void Make(const std::string& path, const BookSize& size) {
    std::filesystem::remove(path);
    CreateBook(path);
    const RawDatabase database(path);
    // No journal is needed: an unfinished book is made anew.
    database.Run("PRAGMA journal_mode = OFF");
    database.Run("PRAGMA synchronous = OFF");
    database.Run("PRAGMA cache_size = -262144");
    database.Run("BEGIN");
    const std::vector<std::string> indexes = size.grown ? std::vector<std::string>() : DropIndexes(database);
    FillMasterData(database, size);
    FillBalance(database, size);
    FillBills(database, size, true);
    FillBills(database, size, false);
    for (const std::string& index : indexes) {
        database.Run(index);
    }
    database.Run("COMMIT");
    database.Run("PRAGMA journal_mode = WAL");
}

}  // namespace

NamesOfProduct NamesOf(std::int64_t product) {
    constexpr std::int64_t kFirstBarCode = 6'900'000'000'000;
    const std::string number = std::to_string(product);
    return {std::to_string(kFirstBarCode + product * 10), "SP" + number, "P" + number, "商品" + number};
}

std::string NameOfOption(std::int64_t option) { return "单据选项" + std::to_string(option); }

void MakeBook(const std::string& path, const BookSize& size) {
    InChild([&] {
        Make(path, size);
        return std::vector<double>{};
    });
}

}  // namespace kpTables::bench
