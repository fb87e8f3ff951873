// New books and copies: whole or not there at all.
#include <fstream>

#include "NewBooks.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

TEST_F(NewBooks, LeaveNothingBeside) {
    CreateBook(path)->BackUp(directory.File("copy"));
    EXPECT_EQ(Names(), (std::set<std::string>{"book", "copy"}));
}

TEST_F(NewBooks, RemoveWhatAKilledAttemptHasLeftAndNothingElse) {
    Write(".book.new-0123abcd", "half a book");
    Write(".book.new-0123abcd.txt", "a note");
    Write(".book.new-4567ABCD", "a note");
    Write(".other.new-0123abcd", "half of another");
    CreateBook(path);
    EXPECT_EQ(Names(),
              (std::set<std::string>{".book.new-0123abcd.txt", ".book.new-4567ABCD", ".other.new-0123abcd", "book"}));
}

TEST_F(NewBooks, MadeAtOnceInOnePlaceAreOne) {
    NewBookOptions options;
    options.prepare = [&](const BookPtr& book) {
        book->Execute("Insert Into 仓库设置 (仓库名称) Values ('后')");
        CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('先')");
    };
    const auto error = Refused([&] { CreateBook(path, options); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("already"), std::string::npos) << error->what();
    EXPECT_EQ(ValueOf(*OpenBook(path), "Select 仓库名称 From 仓库设置"), "先");
    EXPECT_EQ(Names(), (std::set<std::string>{"book"}));
}

TEST_F(NewBooks, AreRefusedBesideTheLogOfAnEarlierOne) {
    Write("book-wal", "frames");
    const auto error = Refused([&] { CreateBook(path); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("'book-wal'"), std::string::npos) << error->what();
    EXPECT_EQ(Names(), (std::set<std::string>{"book-wal"}));
}

TEST_F(NewBooks, MayNotBeKeptByTheirPreparation) {
    RecordsetPtr kept;
    NewBookOptions options;
    options.prepare = [&](const BookPtr& book) { kept = book->Open("仓库设置", SourceKind::Table); };
    EXPECT_TRUE(Refused([&] { CreateBook(path, options); }));
    // A system that removes no file that is open leaves the draft to the next book.
    kept.reset();
    CreateBook(path);
    EXPECT_EQ(Names(), (std::set<std::string>{"book"}));
}

TEST_F(NewBooks, AreCalledByTheirUrlWhileTheyArePrepared) {
    NewBookOptions options;
    std::string url;
    bool named = true;
    options.prepare = [&](const BookPtr& book) {
        url = book->Url();
        named = fs::exists(path);
    };
    EXPECT_EQ(CreateBook(path, options)->Url(), path);
    EXPECT_EQ(url, path);
    EXPECT_FALSE(named);
}

TEST_F(NewBooks, ACopyOfADamagedBookIsNotKept) {
    const BookPtr book = CreateBook(path);
    book->BeginTrans();
    for (int i = 0; i < 2000; ++i) book->Execute("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
    book->CommitTrans();
    book->BackUp(directory.File("whole"));
    {
        std::fstream file(directory.File("whole"), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(-8 * 4096, std::ios::end);
        file << std::string(4 * 4096, '\xA5');
    }
    const auto error = Refused([&] { OpenBook(directory.File("whole"))->BackUp(directory.File("copy")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Damaged));
    EXPECT_FALSE(fs::exists(directory.File("copy")));
}

}  // namespace
}  // namespace kpTables
