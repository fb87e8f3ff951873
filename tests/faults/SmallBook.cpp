#include "faults/SmallBook.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "faults/Command.h"
#include "faults/SmallRows.h"
#include "formats/OldBook.h"
#include "kpTables/Book.h"
#include "kpbook/output/JsonText.h"

namespace kpTables::faults {

namespace {

FolderPtr EmptyBook() { return After(std::make_shared<Folder>(), {"new", "b.kpbook", "--bare"}); }

std::string LargeRows() {
    constexpr int kProducts = 400;
    constexpr int kLines = 1000;
    std::string lines;
    for (int product = 100; product < 100 + kProducts; ++product) {
        const std::string id = std::to_string(product);
        lines +=
            ExecuteLine("Insert Into 商品设置 (pdID,商品名称,ClassCode) Values (" + id + ",'商品" + id + "','01')");
        lines += ExecuteLine(
            "Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额) "
            "Values (2004,3," +
            id + ",2,2," + id + "," + std::to_string(2 * product) + ")");
    }
    for (int line = 0; line < kLines; ++line) {
        const std::string product = std::to_string(100 + line * 7 % kProducts);
        for (const char* table : {"入库记录", "出库记录"}) {
            lines += ExecuteLine(std::string("Insert Into ") + table +
                                 " (BillID,pdID,dpID,数量,除税单价,除税金额) Values (" +
                                 std::to_string(kSmallRows[line % 5]) + "," + product + ",2,1,2,2)");
        }
    }
    return lines;
}

}  // namespace

void PutInPlace(const Folder& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(".")) std::filesystem::remove_all(entry.path());
    for (const auto& [name, bytes] : folder) std::ofstream(name, std::ios::binary) << bytes;
}

Folder TakeFolder() {
    Folder folder;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        std::string& bytes = folder[entry.path().filename().string()];
        bytes.resize(entry.file_size());
        std::ifstream(entry.path(), std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    return folder;
}

FolderPtr After(const FolderPtr& before, const std::vector<std::string>& words, const std::string& input) {
    PutInPlace(*before);
    const Outcome outcome = RunKpbook(words, input);
    if (!outcome.Succeeded() || outcome.out.find("\"error\":") != std::string::npos) {
        throw std::runtime_error("kpbook " + words[0] + " failed while a book was prepared:\n" + outcome.out +
                                 outcome.err);
    }
    return std::make_shared<Folder>(TakeFolder());
}

std::string ExecuteLine(const std::string& statement) {
    std::string line = "{\"execute\":";
    kpbook::output::AppendJsonString(line, statement);
    return line + "}\n";
}

FolderPtr SmallBook() {
    static const FolderPtr made = [] {
        const FolderPtr empty = EmptyBook();
        std::string lines;
        for (const std::string& statement : SmallRows(*OpenBook("b.kpbook"))) lines += ExecuteLine(statement);
        return After(empty, {"call", "b.kpbook", "--batch"}, lines);
    }();
    return made;
}

FolderPtr OldBook() {
    static const FolderPtr made = [] {
        PutInPlace({});
        test::UnpackBook(test::OldBooks().front(), "b.kpbook");
        return std::make_shared<Folder>(TakeFolder());
    }();
    return made;
}

FolderPtr LargeBook() {
    static const FolderPtr made = After(SmallBook(), {"call", "b.kpbook", "--batch"}, LargeRows());
    return made;
}

}  // namespace kpTables::faults
