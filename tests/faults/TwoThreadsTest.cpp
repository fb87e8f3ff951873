// Two components on two connections in two threads, for the thread sanitizer: what they share inside must not be a
// race.
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace {

using namespace kpTables;

constexpr int kRounds = 8;

/// A warehouse of its own for each thread: enters bills, closes, reads and removes again, all in one book.
int Work(const std::string& path, std::int32_t warehouse) {
    int closings = 0;  // that answered True
    for (int round = 0; round < kRounds; ++round) {
        auto book = OpenBook(path, {.busyTimeout = std::chrono::minutes(1)});
        CTables tables;
        tables.Cnn(book);
        tables.isSQL(round % 2 == 1);
        const std::string id = std::to_string(warehouse);
        book->Execute("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (" + id + ",1," + id +
                      ",2,3,6)");
        closings += tables.Close_DepotBalance(warehouse, 3, false, Variant("2004-3-31"));
        const auto next = tables.rs仓库余额表(warehouse, 4);
        const auto listed =
            book->Execute("Select Format(上期库存金额,'0.00') As 金额, 备注 From 仓库余额表 Where dpID=" + id +
                          " And 月份=4 Order by 备注");
        if (next->RecordCount() != 1 || listed->RecordCount() != 1) return -1;
        tables.Del仓库余额表(warehouse, 4);
    }
    return closings;
}

}  // namespace

int main() {
    const auto folder = std::filesystem::temp_directory_path() / ("kptables-threads-" + std::to_string(::getpid()));
    std::filesystem::create_directory(folder);
    const std::string path = (folder / "b.kpbook").string();
    std::atomic<int> done{0};
    std::atomic<int> failures{0};
    try {
        auto book = CreateBook(path);
        for (const char* id : {"1", "2"}) {
            book->Execute(std::string("Insert Into 仓库设置 (dpID,仓库名称) Values (") + id + ",'仓库')");
            book->Execute(std::string("Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values (") + id +
                          ",2004,3,5," + id + ")");
            book->Execute(
                std::string(
                    "Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量,上期库存金额) Values (2004,3,1,") +
                id + ",10,20)");
        }
        const auto run = [&](std::int32_t warehouse) {
            try {
                done += Work(path, warehouse);
            } catch (const std::exception& error) {
                std::fprintf(stderr, "warehouse %d: %s\n", static_cast<int>(warehouse), error.what());
                ++failures;
            }
        };
        std::thread first(run, 1), second(run, 2);
        first.join();
        second.join();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        ++failures;
    }
    std::filesystem::remove_all(folder);
    std::printf("%d closings, %d failures\n", done.load(), failures.load());
    return failures == 0 && done == 2 * kRounds ? 0 : 1;
}
