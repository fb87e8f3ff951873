// Opening and making books, and everything that is none.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>

#include "BookSchema.h"
#include "TestBook.h"
#include "engines/sqlite/Database.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

void WriteFile(const std::string& path, std::string_view bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(BookFile, WhatWasWrittenIsThereAfterOpening) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("帐套1997.kpb");
    {
        const auto book = CreateBook(path);
        EXPECT_EQ(book->Url(), path);
        book->Execute("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
    }
    const auto book = OpenBook(path);
    EXPECT_EQ(ValueOf(*book, "Select 仓库名称 From 仓库设置"), "中心仓库");
    EXPECT_EQ(book->Url(), path);
}

TEST(BookFile, CarriesTheMarksOfABook) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path);
    const engines::sqlite::Database database(path, SQLITE_OPEN_READONLY);
    EXPECT_EQ(database.IntegerOf("PRAGMA application_id"), 0x6B705462);
    EXPECT_EQ(database.IntegerOf("PRAGMA user_version"), schema::kFormat);
    engines::sqlite::PreparedStatement journal = database.Prepare("PRAGMA journal_mode");
    ASSERT_TRUE(journal.Step());
    EXPECT_EQ(journal.Text(0), "wal");
}

TEST(BookFile, CreateRefusesAnExistingFileAndLeavesIt) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    WriteFile(path, "other");
    const auto error = Refused([&] { CreateBook(path); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("already"), std::string::npos) << error->what();
    EXPECT_EQ(ReadFile(path), "other");
}

TEST(BookFile, CreateRefusesADirectoryAndAMissingFolder) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(Refused([&] { CreateBook(directory.Path().string()); }));
    const auto error = Refused([&] { CreateBook(directory.File("no/such/book")); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("No such file"), std::string::npos) << error->what();
    EXPECT_TRUE(Refused([&] { CreateBook(""); }));
}

struct NoBook {
    const char* what;
    std::string bytes;
    const char* complaint;
};

void PrintTo(const NoBook& noBook, std::ostream* out) { *out << noBook.what; }

class BookFileRefuses : public testing::TestWithParam<NoBook> {};

TEST_P(BookFileRefuses, WithAClearTextAndLeavesTheFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    WriteFile(path, GetParam().bytes);
    for (const bool readOnly : {false, true}) {
        const auto error = Refused([&] { OpenBook(path, {.readOnly = readOnly}); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Failure));
        EXPECT_NE(error->Description().find(GetParam().complaint), std::string::npos) << error->what();
        EXPECT_NE(error->Description().find(path), std::string::npos) << error->what();
    }
    EXPECT_EQ(ReadFile(path), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(Table, BookFileRefuses,
                         testing::Values(NoBook{"empty", "", "empty"}, NoBook{"a few bytes", "SQLite", "not a book"},
                                         NoBook{"text", std::string(5000, 'x'), "not a book"},
                                         NoBook{"CSV", "dpID,仓库名称\n1,中心仓库\n", "not a book"}));

TEST(BookFile, RefusesAnotherProgramsDatabase) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("other.db");
    engines::sqlite::Database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE).Run("CREATE TABLE t (a)");
    const auto error = Refused([&] { OpenBook(path); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("but not a book"), std::string::npos) << error->what();
}

TEST(BookFile, RefusesATruncatedBook) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path);
    const std::string whole = ReadFile(path);
    for (const std::size_t size : {whole.size() / 2, whole.size() - 1, std::size_t{4096}, std::size_t{100}}) {
        WriteFile(path, std::string_view(whole).substr(0, size));
        const auto error = Refused([&] { OpenBook(path); });
        ASSERT_TRUE(error) << size;
        EXPECT_NE(error->Description().find(path), std::string::npos) << error->what();
    }
}

TEST(BookFile, RefusesWhatIsNoFile) {
    const TemporaryDirectory directory;
    const auto missing = Refused([&] { OpenBook(directory.File("missing")); });
    ASSERT_TRUE(missing);
    EXPECT_NE(missing->Description().find("no such file"), std::string::npos) << missing->what();
    EXPECT_FALSE(fs::exists(directory.File("missing")));
    const auto folder = Refused([&] { OpenBook(directory.Path().string()); });
    ASSERT_TRUE(folder);
    EXPECT_NE(folder->Description().find("directory"), std::string::npos) << folder->what();
    EXPECT_TRUE(Refused([] { OpenBook(""); }));
    EXPECT_TRUE(Refused([] { OpenBook(":memory:"); }));
    EXPECT_TRUE(Refused([&] { OpenBook("file:" + directory.File("missing") + "?mode=memory"); }));
}

TEST(BookFile, OpenForReadingOnlyRefusesEveryChange) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
    const auto book = OpenBook(path, {.readOnly = true});
    for (const char* text : {"Insert Into 仓库设置 (仓库名称) Values ('北仓')", "Update 仓库设置 Set 仓库名称='x'",
                             "Delete From 仓库设置", "CREATE TABLE t (a LONG)"}) {
        const auto error = Refused([&] { book->Execute(text); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::NotPermitted)) << text;
        EXPECT_EQ(error->Statement(), text);
    }
    const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
    rows->Fields("仓库名称").SetValue("x");
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::NotPermitted));
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "Select 仓库名称 From 仓库设置"), "中心仓库");
}

TEST(BookFile, ABusyBookWaitsAndThenSaysSo) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    const auto first = CreateBook(path);
    const auto second = OpenBook(path, {.busyTimeout = std::chrono::milliseconds(50)});
    first->BeginTrans();
    first->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");

    const auto start = std::chrono::steady_clock::now();
    const auto error = Refused([&] { second->Execute("Insert Into 仓库设置 (仓库名称) Values ('乙')"); });
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(40));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Locked));
    EXPECT_NE(error->Description().find("in use by another program"), std::string::npos) << error->what();
    EXPECT_EQ(ValueOf(*second, "Select Count(*) From 仓库设置"), "0");  // reading goes on

    first->CommitTrans();
    second->Execute("Insert Into 仓库设置 (仓库名称) Values ('乙')");
    EXPECT_EQ(RowsOf(*first, "Select 仓库名称 From 仓库设置 Order By 仓库名称"), "甲 / 乙");
}

TEST(BookFile, AnotherProgramsLockOnOpeningIsTold) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path);
    const engines::sqlite::Database other(path, SQLITE_OPEN_READWRITE);
    other.Run("PRAGMA locking_mode = EXCLUSIVE");
    other.Run("BEGIN EXCLUSIVE");
    const auto error = Refused([&] { OpenBook(path, {.busyTimeout = std::chrono::milliseconds(20)}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Locked)) << error->what();
}

}  // namespace
}  // namespace kpTables
