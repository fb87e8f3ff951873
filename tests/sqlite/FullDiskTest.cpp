// A full disk, and folders that cannot be written.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "RootRights.h"
#include "TestBook.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

/// A small disk of its own; without the right to mount one, the test is skipped.
class FullDisk : public testing::Test {
protected:
    void SetUp() override {
        if (mount("none", directory.Path().c_str(), "tmpfs", 0, "size=1m") != 0) {
            GTEST_SKIP() << "only root can mount a small disk";
        }
        mounted = true;
        path = directory.File("book");
    }
    void TearDown() override {
        if (mounted) umount2(directory.Path().c_str(), MNT_DETACH);
    }
    /// Leaves no free byte.
    void Fill() const {
        std::ofstream file(directory.File("rest"), std::ios::binary);
        const std::string block(4096, 'x');
        while (file.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
        }
    }
    void Free() const { fs::remove(directory.File("rest")); }
    /// A book that a killed program has left with its log, and with two warehouses in it.
    void MakeBookWithLog() const {
        const pid_t child = fork();
        if (child == 0) {
            const BookPtr book = CreateBook(path);
            book->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
            book->Execute("Insert Into 仓库设置 (仓库名称) Values ('乙')");
            kill(getpid(), SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_GT(fs::file_size(path + "-wal"), 0U);
        fs::remove(path + "-shm");
    }
    static std::string Warehouses(Connection& book) {
        return RowsOf(book, "Select 仓库名称 From 仓库设置 Order By dpID");
    }
    static void ExpectFull(const std::optional<DatabaseError>& error) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::DiskFull)) << error->what();
        EXPECT_NE(error->Description().find("disk is full"), std::string::npos) << error->what();
    }

    TemporaryDirectory directory;
    std::string path;
    bool mounted = false;
};

TEST_F(FullDisk, ABookCanBeRead) {
    CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    Fill();
    for (const bool readOnly : {true, false}) {
        EXPECT_EQ(Warehouses(*OpenBook(path, {.readOnly = readOnly})), "甲") << readOnly;
    }
}

TEST_F(FullDisk, ABookWithALogCanBeRead) {
    MakeBookWithLog();
    Fill();
    for (const bool readOnly : {true, false}) {
        EXPECT_EQ(Warehouses(*OpenBook(path, {.readOnly = readOnly})), "甲 / 乙") << readOnly;
    }
    Free();
    EXPECT_EQ(Warehouses(*OpenBook(path)), "甲 / 乙");
}

TEST_F(FullDisk, AChangeFailsClearlyAndLosesNothing) {
    CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    Fill();
    {
        const BookPtr book = OpenBook(path);
        ExpectFull(Refused([&] { book->Execute("Insert Into 仓库设置 (仓库名称) Values ('乙')"); }));
        EXPECT_EQ(Warehouses(*book), "甲");
        EXPECT_EQ(book->BeginTrans(), 1);
        ExpectFull(Refused([&] {
            book->Execute("Insert Into 仓库设置 (仓库名称) Values ('丙')");
            book->CommitTrans();
        }));
        book->RollbackTrans();
        Free();
        book->Execute("Insert Into 仓库设置 (仓库名称) Values ('丁')");
    }
    EXPECT_EQ(Warehouses(*OpenBook(path)), "甲 / 丁");
}

TEST_F(FullDisk, ARecordsetTellsOfItsRows) {
    CreateBook(path);
    const BookPtr book = OpenBook(path);
    Fill();
    {
        const RecordsetPtr rows = book->Open("仓库设置", SourceKind::Table);
        rows->AddNew();
        rows->Fields("仓库名称").SetValue("甲");
        rows->Update();
    }
    ExpectFull(Refused([&] { book->FlushRows(); }));
    book->FlushRows();
    EXPECT_EQ(Warehouses(*book), "");
}

TEST_F(FullDisk, NeitherABookNorACopyIsMade) {
    CreateBook(path);
    Fill();
    ExpectFull(Refused([&] { CreateBook(directory.File("other")); }));
    ExpectFull(Refused([&] { OpenBook(path)->BackUp(directory.File("copy")); }));
    for (const auto& entry : fs::directory_iterator(directory.Path())) {
        const std::string name = entry.path().filename();
        EXPECT_TRUE(name.starts_with("book") || name == "rest") << name;
    }
}

TEST(FolderThatCannotBeWritten, ABookWithALogIsReadWithIt) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    {
        const BookPtr book = CreateBook(path);
        book->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
        fs::copy_file(path, directory.File("copy"));
        fs::copy_file(path + "-wal", directory.File("copy-wal"));
    }
    fs::permissions(directory.Path(), fs::perms(0555));
    for (const int mode : {0444, 0666}) {
        for (const char* name : {"copy", "copy-wal"}) fs::permissions(directory.File(name), fs::perms(mode));
        const WithoutRootRights user;
        const BookPtr book = OpenBook(directory.File("copy"), {.readOnly = true});
        EXPECT_EQ(ValueOf(*book, "Select 仓库名称 From 仓库设置"), "甲") << mode;
        EXPECT_EQ(NumberOf([&] { book->Execute("Delete From 仓库设置"); }), Code(DatabaseErrorNumber::NotPermitted));
    }
}

}  // namespace
}  // namespace kpTables
