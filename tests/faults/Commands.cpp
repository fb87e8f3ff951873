#include "faults/SmallBook.h"
#include "faults/Workload.h"

namespace kpTables::faults {

namespace {

using Words = std::vector<std::string>;

const Words kClose = {"close", "b.kpbook", "--month",   "3",        "--warehouse",
                      "2",     "--date",   "2004-3-31", "--answer", "yes"};

const Words kBatch = {"call", "b.kpbook", "--batch"};

std::string EntryLine(int bill) {
    const std::string id = std::to_string(bill);
    return ExecuteLine("Insert Into 入库目录 (BillID,年份,月份,日子,单据类型,dpID) Values (" + id +
                       ",2004,3,9,'入库单',2)") +
           ExecuteLine("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (" + id + ",1,2," + id +
                       ",2,3)");
}

std::string Entries(int first, int last) {
    std::string lines;
    for (int bill = first; bill <= last; ++bill) lines += EntryLine(bill);
    return lines;
}

std::string ProductRows(int count) {
    std::string text = "pdID,商品名称,商品编号,ClassCode\n";
    for (int i = 0; i < count; ++i) {
        const std::string id = std::to_string(1000 + i);
        text += id + ",新商品" + id + ",X" + id + ",01\n";
    }
    return text;
}

FolderPtr With(const FolderPtr& folder, const std::string& name, const std::string& bytes) {
    auto more = std::make_shared<Folder>(*folder);
    (*more)[name] = bytes;
    return more;
}

Words With(Words words, const char* option) {
    words.emplace_back(option);
    return words;
}

/// A book whose month is closed, and to which a bill was added since.
FolderPtr ClosedTooEarly(const FolderPtr& book) { return After(After(book, kClose), kBatch, EntryLine(90)); }

}  // namespace

std::vector<Workload> Commands(bool large) {
    const FolderPtr book = large ? LargeBook() : SmallBook();
    const std::string prefix = large ? "large." : "";
    const FolderPtr nothing = std::make_shared<Folder>();
    std::vector<Workload> all = {
        {"close", Promise::AllOrNothing, book, kClose},
        {"reclose", Promise::AllOrNothing, ClosedTooEarly(book), With(kClose, "--again")},
        {"reopen",
         Promise::AllOrNothing,
         ClosedTooEarly(book),
         {"reopen", "b.kpbook", "--month", "3", "--warehouse", "2"}},
        {"import",
         Promise::AllOrNothing,
         With(book, "p.csv", ProductRows(large ? 2000 : 20)),
         {"import", "b.kpbook", "商品设置", "p.csv"}},
        {"import-update",
         Promise::AllOrNothing,
         With(book, "p.csv", ProductRows(5) + "1,水泥,N1,02\n2,螺栓,N2,02\n"),
         {"import", "b.kpbook", "商品设置", "p.csv", "--update"}},
        {"transacted", Promise::AllOrNothing, book, {"call", "b.kpbook", "--transaction", "Del_单据", "5", "入库"}},
        {"entry", Promise::EachLine, book, kBatch, Entries(100, large ? 160 : 104)},
        {"transaction", Promise::Transaction, book, kBatch,
         "{\"begin\":true}\n" + Entries(100, large ? 160 : 104) + "{\"commit\":true}\n"},
        {"backup", Promise::AllOrNothing, book, {"backup", "b.kpbook", "copy.kpbook"}, {}, {"b.kpbook", "copy.kpbook"}},
    };
    if (!large) {
        all.push_back(
            {"new", Promise::AllOrNothing, nothing, {"new", "n.kpbook", "--today", "2004-01-01"}, {}, {"n.kpbook"}});
        all.push_back({"upgrade", Promise::AllOrNothing, OldBook(), {"upgrade", "b.kpbook"}});
        all.push_back({"upgrade-alone", Promise::AllOrNothing, OldBook(), {"upgrade", "b.kpbook", "--no-backup"}});
        all.push_back({"import-folder",
                       Promise::AllOrNothing,
                       With(With(After(nothing, {"new", "b.kpbook", "--bare"}), "商品设置.csv", ProductRows(20)),
                            "仓库设置.csv", "仓库名称\n东库\n"),
                       {"import", "b.kpbook", "."}});
        all.push_back({"new-bare", Promise::AllOrNothing, nothing, {"new", "n.kpbook", "--bare"}, {}, {"n.kpbook"}});
    }
    for (Workload& workload : all) workload.name = prefix + workload.name;
    return all;
}

}  // namespace kpTables::faults
