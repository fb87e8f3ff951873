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

const Words kNewFirm = {"new", "n.kpbook", "--company", "甲", "--year", "2004", "--month", "1", "--warehouse", "东库"};

const std::string kOpeningRows =
    "仓库,商品编号,数量,金额\n仓库名称2,商品编号1,3,4.5\n仓库名称1,商品编号2,0.1,7\n仓库名称2,商品编号7,2,1\n";

const std::string kBillRows =
    "单据,日期,调出仓库,调入仓库,商品编号,数量,单价\nA,2004-3-9,2,1,1,1,2\nA,,,,2,1,2\nB,2004-3-10,2,1,1,2,2\n";

const Words kTransfer = {"bill", "add", "b.kpbook", "transfer", "t.csv", "--allow-negative", "--today", "2004-3-9"};

/// A book whose year is closed.
FolderPtr ClosedYear(const FolderPtr& book) {
    Words words = kClose;
    words.insert(words.end(), {"--through", "12"});
    return After(book, words);
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
        {"opening", Promise::AllOrNothing, With(book, "o.csv", kOpeningRows), {"opening", "b.kpbook", "o.csv"}},
        {"bills", Promise::AllOrNothing, With(book, "t.csv", kBillRows), kTransfer},
        {"bill-remove",
         Promise::AllOrNothing,
         After(With(book, "t.csv", kBillRows), kTransfer),
         {"bill", "remove", "b.kpbook", "out", "DB2-03-0001", "--allow-negative"}},
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
        all.push_back({"new-firm", Promise::AllOrNothing, nothing, kNewFirm, {}, {"n.kpbook"}});
        all.push_back({"new-next",
                       Promise::AllOrNothing,
                       ClosedYear(book),
                       {"new", "n.kpbook", "--from", "b.kpbook"},
                       {},
                       {"b.kpbook", "n.kpbook"}});
        all.push_back(
            {"copy", Promise::AllOrNothing, book, {"copy", "b.kpbook", "c.kpbook"}, {}, {"b.kpbook", "c.kpbook"}});
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
