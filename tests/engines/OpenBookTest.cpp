// Opening books by URL, and copying them.
#include <gtest/gtest.h>

#include <filesystem>

#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "platform/Paths.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

void AddWarehouse(Connection& book, const std::string& name) {
    book.Execute("Insert Into 仓库设置 (仓库名称) Values ('" + name + "')");
}

std::string Warehouses(Connection& book) { return RowsOf(book, "Select 仓库名称 From 仓库设置 Order By dpID"); }

bool AnyFile(const TemporaryDirectory& directory) { return !std::filesystem::is_empty(directory.Path()); }

TEST(Books, AreFilesByPathOrUrl) {
    const TemporaryDirectory directory;
    AddWarehouse(*CreateBook((platform::kHasDrives ? "file:///" : "file://") + directory.File("my%20shop")), "甲");
    const BookPtr book = OpenBook(directory.File("my shop"));
    EXPECT_EQ(book->Url(), directory.File("my shop"));
    EXPECT_EQ(Warehouses(*book), "甲");
    const BookPtr reader = OpenBook("file:" + directory.File("my%20shop"), {.readOnly = true});
    EXPECT_EQ(reader->Url(), "file:" + directory.File("my%20shop"));
    EXPECT_EQ(Warehouses(*reader), "甲");
    EXPECT_EQ(NumberOf([&] { AddWarehouse(*reader, "乙"); }), Code(DatabaseErrorNumber::NotPermitted));
}

TEST(Books, InMemoryAreMadeAnewEachTime) {
    const BookPtr book = CreateBook("memory:");
    AddWarehouse(*book, "甲");
    EXPECT_EQ(Warehouses(*CreateBook("memory:")), "");
    EXPECT_TRUE(Refused([] { OpenBook("memory:"); }));
    EXPECT_TRUE(Refused([] { CreateBook("memory:shop"); }));
}

TEST(Books, OfAnUnknownSchemeAreRefusedWithTheKnownOnes) {
    for (const auto& call : {std::function<void()>([] { OpenBook("oracle://host/shop"); }),
                             std::function<void()>([] { CreateBook("oracle://host/shop"); })}) {
        const auto error = Refused(call);
        ASSERT_TRUE(error);
        for (const char* part :
             {"'oracle://host/shop'", "no engine for 'oracle:'", "file:", "memory:", "postgresql:"}) {
            EXPECT_NE(error->Description().find(part), std::string::npos) << error->Description();
        }
    }
}

TEST(Books, AreKeptOnlyWhenTheirPreparationSucceeds) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("shop");
    NewBookOptions options;
    options.prepare = [](const BookPtr& book) {
        AddWarehouse(*book, "甲");
        Raise(ErrorNumber::InvalidCall);
    };
    EXPECT_EQ(NumberOf([&] { CreateBook(path, options); }), Code(ErrorNumber::InvalidCall));
    EXPECT_FALSE(AnyFile(directory));
    options.prepare = [](const BookPtr& book) { AddWarehouse(*book, "乙"); };
    CreateBook(path, options);
    EXPECT_EQ(Warehouses(*OpenBook(path)), "乙");
}

TEST(BackUp, IsABookWithWhatWasSaved) {
    const TemporaryDirectory directory;
    const BookPtr book = CreateBook(directory.File("shop"));
    AddWarehouse(*book, "甲");
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    rows->AddNew();
    rows->Fields("仓库名称").SetValue("乙");
    rows->Update();
    book->BackUp(directory.File("copy"));
    AddWarehouse(*book, "丙");
    const BookPtr copy = OpenBook(directory.File("copy"));
    EXPECT_EQ(Warehouses(*copy), "甲 / 乙");
    AddWarehouse(*copy, "丁");
    EXPECT_EQ(Warehouses(*book), "甲 / 乙 / 丙");
    EXPECT_EQ(copy->Tables().size(), book->Tables().size());
}

TEST(BackUp, IsTakenOfABookInMemoryAndOfOneThatIsOnlyRead) {
    const TemporaryDirectory directory;
    const BookPtr memory = CreateBook("memory:");
    AddWarehouse(*memory, "甲");
    memory->BackUp(directory.File("first"));
    OpenBook(directory.File("first"), {.readOnly = true})->BackUp(directory.File("second"));
    EXPECT_EQ(Warehouses(*OpenBook(directory.File("second"))), "甲");
}

TEST(BackUp, LeavesNothingWhenItIsRefused) {
    const TemporaryDirectory directory;
    const BookPtr book = CreateBook("memory:");
    EXPECT_TRUE(Refused([&] { book->BackUp(directory.File("no/such/folder")); }));
    book->BeginTrans();
    EXPECT_TRUE(Refused([&] { book->BackUp(directory.File("copy")); }));
    book->RollbackTrans();
    EXPECT_FALSE(AnyFile(directory));
    book->BackUp(directory.File("copy"));
    EXPECT_TRUE(Refused([&] { book->BackUp(directory.File("copy")); }));
    EXPECT_EQ(Warehouses(*OpenBook(directory.File("copy"))), "");
}

}  // namespace
}  // namespace kpTables
