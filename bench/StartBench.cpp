#include "StartBench.h"

#include <cstdio>
#include <string>
#include <vector>

#include "Program.h"
#include "Report.h"

namespace kpTables::bench {

bool BenchStart(const Setting& setting) {
    constexpr int kStarts = 20;
    const std::string path = (setting.folder / "start.kpbook").string();
    MakeBook(path, {1'000, 100, 3, 11, 11});
    Row row{"kpbook call BOOK Get仓库名称 2, a fresh process",
            "sqlite3 BOOK \"SELECT ...\"",
            "ms",
            2,
            {},
            {},
            RatioUpTo(1.2)};
    const std::vector<std::string> call = {KPBENCH_KPBOOK, "call", path, "Get仓库名称", "2"};
    const std::vector<std::string> shell = {"sqlite3", path, "Select 仓库名称 From 仓库设置 Where dpID=2"};
    const std::string answer = RunProgram(call).output;
    bool same = answer == "2号仓库\n" && RunProgram(shell).output == answer;
    constexpr double kMilliseconds = 1'000;
    for (int run = 0; run < setting.runs; ++run) {
        std::vector<double> ours;
        std::vector<double> theirs;
        for (int start = 0; start < kStarts; ++start) {
            const Ended called = RunProgram(call);
            const Ended asked = RunProgram(shell);
            same = same && called.output == answer && asked.output == answer;
            ours.push_back(called.seconds * kMilliseconds);
            theirs.push_back(asked.seconds * kMilliseconds);
        }
        row.ours.push_back(Median(ours));
        row.theirs.push_back(Median(theirs));
    }
    std::fprintf(setting.details, "\nFirst answer of a fresh process; %d runs of %d starts, in ms\n", setting.runs,
                 kStarts);
    PrintTable(setting.details,
               {{"", "min", "median", "max"},
                {row.work, Fixed(Minimum(row.ours), 2), Fixed(Median(row.ours), 2), Fixed(Maximum(row.ours), 2)},
                {"  " + row.rival, Fixed(Minimum(row.theirs), 2), Fixed(Median(row.theirs), 2),
                 Fixed(Maximum(row.theirs), 2)}});
    std::fprintf(setting.details, "  The answers %s.\n", same ? "agree" : "do not agree");
    setting.results->Add(std::move(row));
    return same;
}

}  // namespace kpTables::bench
