// Books whose file or folder the user may not read or write.
#include <gtest/gtest.h>

#include <fstream>

#include "RootRights.h"
#include "TestBook.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

TEST(FileRights, AFileThatCannotBeReadIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path);
    fs::permissions(path, fs::perms::none);
    const WithoutRootRights user;
    const auto error = Refused([&] { OpenBook(path); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("cannot be opened"), std::string::npos) << error->what();
}

TEST(FileRights, AReadOnlyFileOpensForReadingOnly) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("book");
    CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const WithoutRootRights user;
    const auto error = Refused([&] { OpenBook(path); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::NotPermitted));
    EXPECT_NE(error->Description().find("read-only"), std::string::npos) << error->what();

    const auto book = OpenBook(path, {.readOnly = true});
    EXPECT_EQ(ValueOf(*book, "Select 仓库名称 From 仓库设置"), "中心仓库");
}

TEST(FileRights, AReadOnlyFolderOpensForReadingOnly) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("bo#ok %3f?");
    CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
    fs::permissions(directory.Path(), fs::perms(0555));
    for (const int mode : {0444, 0666}) {
        fs::permissions(path, fs::perms(mode));
        const WithoutRootRights user;
        const auto error = Refused([&] { OpenBook(path); });
        ASSERT_TRUE(error);
        const auto book = OpenBook(path, {.readOnly = true});
        EXPECT_EQ(ValueOf(*book, "Select 仓库名称 From 仓库设置"), "中心仓库");
    }
    std::ifstream file(path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}).substr(0, 6), "SQLite");
}

}  // namespace
}  // namespace kpTables
