#include "MemoryBench.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "Child.h"
#include "Report.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"

namespace kpTables::bench {

namespace {

constexpr std::int64_t kFirstCalls = 10'000;

double PeakMebibytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// One of seven kinds of calls, with a number, a text or both that no other call uses.
void Call(CTables& tables, std::int64_t call) {
    constexpr int kKinds = 7;
    const std::string number = std::to_string(call);
    const auto id = static_cast<std::int32_t>(call);
    switch (call % kKinds) {
        case 0:
            tables.Get仓库名称(id + 1);
            break;
        case 1:
            tables.Get商品资料(id, "商品名称");
            break;
        case 2:
            tables.Get商品ID("第" + number + "种");
            break;
        case 3:
            tables.Get本期库存(1, id, 11, "数量");
            break;
        case 4:
            tables.Get_Option("选项" + number);
            break;
        case 5:
            // Each needs its own statement: the number after Top is not a parameter.
            tables.Cnn()->Execute("Select Top " + std::to_string(call + 1) + " dpID From 仓库设置");
            break;
        default:
            tables.Cnn()->Execute("Select Top 3 * From 商品设置 Where 默认单价>" + number + ".25 And 商品名称='" +
                                  number + "'");
            break;
    }
}

/// Peak memory after the first calls and after all of them.
std::vector<double> Peaks(const std::string& path, std::int64_t calls) {
    CTables tables;
    tables.Cnn(OpenBook(path));
    if (tables.Get仓库名称(1) != "1号仓库" || tables.Get商品ID("商品7") != 7) {
        throw std::runtime_error("the book does not answer");
    }
    double first = 0;
    for (std::int64_t call = 0; call < calls; ++call) {
        if (call == kFirstCalls) first = PeakMebibytes();
        Call(tables, call);
    }
    return {first, PeakMebibytes()};
}

}  // namespace

bool BenchMemory(const Setting& setting) {
    const std::int64_t calls = std::max(2 * kFirstCalls, setting.size.lines);
    const std::string path = (setting.folder / "memory.kpbook").string();
    MakeBook(path, {1'000, 100, 3, 11, 11});
    Row row{std::to_string(calls) + " calls with other literals each time: peak memory",
            "after " + std::to_string(kFirstCalls) + " calls",
            "MiB",
            2,
            {},
            {},
            RatioUpTo(1.01)};
    for (int run = 0; run < setting.runs; ++run) {
        const std::vector<double> peaks = InChild([&] { return Peaks(path, calls); }).figures;
        row.theirs.push_back(peaks.at(0));
        row.ours.push_back(peaks.at(1));
    }
    std::fprintf(setting.details, "\nPeak memory after %lld calls with other literals each time, in MiB\n",
                 static_cast<long long>(calls));
    PrintTable(setting.details,
               {{"", "min", "median", "max"},
                {"after all", Fixed(Minimum(row.ours), 2), Fixed(Median(row.ours), 2), Fixed(Maximum(row.ours), 2)},
                {"after the first " + std::to_string(kFirstCalls), Fixed(Minimum(row.theirs), 2),
                 Fixed(Median(row.theirs), 2), Fixed(Maximum(row.theirs), 2)}});
    setting.results->Add(std::move(row));
    return true;
}

}  // namespace kpTables::bench
