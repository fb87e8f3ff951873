// Single answers, beside prepared statements.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "../Report.h"
#include "Benchmarks.h"
#include "Server.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"

namespace kpTables::bench {

namespace {

constexpr std::int64_t kMostCalls = 4000;
// The second column of a whole row, 商品名称 of a product and Discription of an option.
constexpr int kSecond = 1;

std::string Product(int call, const BookSize& size) {
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ULL;
    constexpr int kShift = 33;
    const auto random = static_cast<std::int64_t>(static_cast<std::uint64_t>(call + 1) * kMultiplier >> kShift);
    return std::to_string(1 + random % size.products);
}

/// An answer as both sides give it: numbers rounded to ten-thousandths.
std::string Plain(const Variant& value) {
    if (value.Type() == VarType::String) return std::string(Trim(Text(value)));
    return value.IsNull() ? std::string() : std::to_string(std::llround(CDbl(value) * 10'000));
}

std::string StockSum(const std::string& family) {
    return "(SELECT SUM(r.数量) FROM " + family + "记录 AS r JOIN " + family +
           "目录 AS l ON r.\"BillID\" = l.\"BillID\" WHERE r.\"pdID\" = $2::integer AND l.\"dpID\" = $1::integer AND l.月份 = "
           "$3::integer)";
}

/// What Get本期库存 asks, text by text.
std::string MovementText(const std::string& family) {
    return "SELECT SUM(r.数量), SUM(r.除税金额), SUM(r.税额), SUM(r.金额) FROM " + family + "记录 AS r JOIN " + family +
           "目录 AS l ON r.\"BillID\" = l.\"BillID\" WHERE l.月份 = $3::integer AND l.\"dpID\" = $1::integer AND r.\"pdID\" "
           "= $2::integer";
}

struct CallCase {
    std::string name;
    std::string rival;
    Goal goal;
    std::vector<std::string> statements;  ///< of several, the last one's figure is subtracted from the others'
    std::function<std::vector<std::string>(int call)> parameters;
    std::function<Variant(CTables& tables, int call)> ask;
    bool isNumber;
    int column = 0;  ///< of the rival's row, which has the answer
};

std::vector<CallCase> Cases(const BookSize& size) {
    const auto depot = [](int call) { return call % 4 + 1; };
    const auto product = [size](int call) { return static_cast<std::int32_t>(std::stoi(Product(call, size))); };
    const auto option = [](int call) { return NameOfOption(call % kOptions + 1); };
    const std::string prepared = "a prepared statement";
    const std::string methodsText = "the method's own text, prepared";
    const auto nameOf = [product](CTables& tables, int call) {
        return tables.Get商品资料(product(call), std::string("商品名称"));
    };
    const auto valueOf = [option](CTables& tables, int call) { return Variant(tables.Get_Option(option(call))); };
    const auto ofStock = [depot, product](int call) {
        return std::vector{std::to_string(depot(call)), std::to_string(product(call)), std::string("11")};
    };
    const auto stock = [depot, product](CTables& tables, int call) {
        return Variant(tables.Get本期库存(depot(call), product(call), std::int16_t{11}, std::string("数量")));
    };
    return {
        {"Get仓库名称",
         prepared,
         RatioUpTo(1.5),
         {"SELECT 仓库名称 FROM 仓库设置 WHERE \"dpID\" = $1"},
         [depot](int call) { return std::vector{std::to_string(depot(call))}; },
         [depot](CTables& tables, int call) { return Variant(tables.Get仓库名称(depot(call))); },
         false},
        {"Get商品资料",
         prepared,
         RatioUpTo(1.5),
         {"SELECT 商品名称 FROM 商品设置 WHERE \"pdID\" = $1"},
         [product](int call) { return std::vector{std::to_string(product(call))}; },
         nameOf,
         false},
        {"Get商品资料",
         methodsText,
         {},
         {"SELECT * FROM 商品设置 WHERE \"pdID\" = $1"},
         [product](int call) { return std::vector{std::to_string(product(call))}; },
         nameOf,
         false,
         kSecond},
        {"Get_Option",
         prepared,
         RatioUpTo(1.5),
         {"SELECT \"Discription\" FROM 系统选项 WHERE \"Item\" = $1"},
         [option](int call) { return std::vector{option(call)}; },
         valueOf,
         false},
        {"Get_Option",
         methodsText,
         {},
         {"SELECT * FROM 系统选项 WHERE \"Item\" = $1"},
         [option](int call) { return std::vector{option(call)}; },
         valueOf,
         false,
         kSecond},
        {"Get本期库存",
         prepared,
         RatioUpTo(1.5),
         {"SELECT COALESCE((SELECT SUM(上期库存数量) FROM 仓库余额表 WHERE \"pdID\" = $2::integer AND \"dpID\" = $1::integer "
          "AND 月份 = $3::integer), 0) + COALESCE(" +
          StockSum("入库") + ", 0) - COALESCE(" + StockSum("出库") + ", 0)"},
         ofStock,
         stock,
         true},
        {"Get本期库存",
         "the method's three statements, prepared",
         {},
         {"SELECT SUM(上期库存数量), SUM(上期库存金额) FROM 仓库余额表 WHERE 月份 = $3::integer AND \"dpID\" = $1::integer AND "
          "\"pdID\" = $2::integer",
          MovementText("入库"), MovementText("出库")},
         ofStock,
         stock,
         true},
    };
}

}  // namespace

bool BenchServerCalls(const ServerSetting& setting, const std::string& book) {
    CTables tables;
    tables.Cnn(OpenBook(BookAddress(book)));
    const Server server(ServerAddress(), book);
    const int calls = static_cast<int>(std::min(kMostCalls, setting.size.lines));
    bool same = true;
    int number = 0;
    for (const CallCase& each : Cases(setting.size)) {
        std::vector<std::string> names;
        for (const std::string& statement : each.statements) {
            names.push_back("c" + std::to_string(++number));
            server.Prepare(names.back(), statement);
        }
        const auto answer = [&](const std::string& name, int call) {
            const ServerRows rows = server.Ask(name, each.parameters(call));
            return rows.Count() == 0 || rows.IsNull(0, each.column) ? std::string() : rows.Text(0, each.column);
        };
        const auto byHand = [&](int call) {
            if (names.size() == 1) return answer(names.front(), call);
            double sum = 0;
            for (const std::string& name : names) {
                const std::string part = answer(name, call);
                const double figure = part.empty() ? 0 : std::stod(part);
                sum += &name == &names.back() ? -figure : figure;
            }
            return std::to_string(sum);
        };
        for (int call = 0; call < calls / 10; ++call) {
            const std::string hand = byHand(call);
            same = same &&
                   Plain(each.ask(tables, call)) == Plain(each.isNumber ? Variant(std::stod(hand)) : Variant(hand));
        }
        Row processor{each.name, each.rival, "CPU us a call", 1, {}, {}, each.goal};
        Row seconds = processor;
        seconds.unit = "us a call";
        seconds.goal = {};
        for (int run = 0; run < setting.runs; ++run) {
            CostMeter ours;
            for (int call = 0; call < calls; ++call) static_cast<void>(each.ask(tables, call));
            const Cost our = ours.Read();
            CostMeter theirs;
            for (int call = 0; call < calls; ++call) static_cast<void>(byHand(call));
            Note(processor, seconds, our, theirs.Read(), 1e6 / calls);
        }
        setting.results->Add(processor);
        setting.results->Add(seconds);
        if (!same) std::fprintf(stderr, "%s: the answers differ\n", each.name.c_str());
    }
    return same;
}

}  // namespace kpTables::bench
