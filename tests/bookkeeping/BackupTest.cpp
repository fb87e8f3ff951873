#include "kpTables/bookkeeping/Backup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {
namespace {

namespace fs = std::filesystem;

class BackupTest : public ::testing::Test {
protected:
    BackupTest() {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    ~BackupTest() override { fs::remove_all(folder_); }

    void BackUp(int keep) {
        BackupOptions options;
        options.path = (folder_ / "copy").string();
        options.keep = keep;
        options.open = open_;
        BackUpBook(*book_, options);
    }
    std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (const auto& file : fs::directory_iterator(folder_)) names.push_back(file.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    fs::path folder_ = fs::path(::testing::TempDir()) / "kpTablesBackupTest" /
                       ::testing::UnitTest::GetInstance()->current_test_info()->name();
    BookPtr book_ = BookOfAYear();
    std::function<BookPtr(const std::string&)> open_ = [](const std::string& path) { return OpenBook(path); };
};

TEST_F(BackupTest, TheCopyIsTheBook) {
    BackUp(0);
    EXPECT_EQ(Names(), std::vector<std::string>{"copy"});
    EXPECT_EQ(Everything(*OpenBook((folder_ / "copy").string())), Everything(*book_));
}

TEST_F(BackupTest, ACopyThatCannotBeOpenedIsNotKept) {
    BackUp(2);
    open_ = [](const std::string&) -> BookPtr { throw DatabaseError(-2147467259, "not readable"); };
    EXPECT_THROW(BackUp(2), Error);
    EXPECT_THROW(BackUp(3), Error);
    EXPECT_EQ(Names(), std::vector<std::string>{"copy"});
}

TEST_F(BackupTest, GenerationsFillAGap) {
    for (int time = 0; time < 3; ++time) BackUp(3);
    fs::remove(folder_ / "copy.1");
    BackUp(3);
    EXPECT_EQ(Names(), (std::vector<std::string>{"copy", "copy.1", "copy.2"}));
}

TEST_F(BackupTest, ForeignFilesAreNotOverwritten) {
    std::ofstream(folder_ / "copy") << "mine";
    EXPECT_THROW(BackUp(0), Error);
    EXPECT_THROW(BackUp(1), Error);
    EXPECT_EQ(fs::file_size(folder_ / "copy"), 4U);
    BackUp(2);
    EXPECT_EQ(fs::file_size(folder_ / "copy.1"), 4U);
}

}  // namespace
}  // namespace kpTables::bookkeeping
