// New books and copies: whole or not there at all, and their owner's alone.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "TestBook.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

class NewBooks : public testing::Test {
protected:
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(directory.Path())) names.insert(entry.path().filename());
        return names;
    }
    mode_t ModeOf(const char* name) const {
        struct stat found {};
        EXPECT_EQ(stat(directory.File(name).c_str(), &found), 0) << name;
        return found.st_mode & 0777;
    }
    void Write(const char* name, const char* text) const { std::ofstream(directory.File(name)) << text; }

    TemporaryDirectory directory;
    std::string path = directory.File("book");
};

/// Sets the process's mask for the modes of new files.
class Mask {
public:
    explicit Mask(mode_t mask) noexcept : before_(umask(mask)) {}
    ~Mask() { umask(before_); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

private:
    mode_t before_;
};

constexpr mode_t kOwnerOnly = 0600;

TEST_F(NewBooks, AreTheirOwnersAloneWhateverTheMask) {
    for (const mode_t mask : {0000, 0022, 0277}) {
        const Mask set(mask);
        const BookPtr book = CreateBook(path);
        book->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
        for (const char* name : {"book", "book-wal", "book-shm"}) EXPECT_EQ(ModeOf(name), kOwnerOnly) << name;
        book->BackUp(directory.File("copy"));
        EXPECT_EQ(ModeOf("copy"), kOwnerOnly);
        for (const std::string& name : Names()) fs::remove(directory.File(name));
    }
}

TEST_F(NewBooks, LeaveNothingBeside) {
    CreateBook(path)->BackUp(directory.File("copy"));
    EXPECT_EQ(Names(), (std::set<std::string>{"book", "copy"}));
}

TEST_F(NewBooks, RemoveWhatAKilledAttemptHasLeftAndNothingElse) {
    Write(".book.new-0123abcd", "half a book");
    Write(".book.new-0123abcd.txt", "a note");
    Write(".book.new-0123ABCD", "a note");
    Write(".other.new-0123abcd", "half of another");
    CreateBook(path);
    EXPECT_EQ(Names(),
              (std::set<std::string>{".book.new-0123ABCD", ".book.new-0123abcd.txt", ".other.new-0123abcd", "book"}));
}

TEST_F(NewBooks, LeaveTheDraftOfAnotherProgramAlone) {
    Write(".book.new-0123abcd", "half a book");
    const int file = open(directory.File(".book.new-0123abcd").c_str(), O_RDWR);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    CreateBook(path);
    EXPECT_EQ(Names(), (std::set<std::string>{".book.new-0123abcd", "book"}));
    close(file);
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
    EXPECT_EQ(Names(), std::set<std::string>());
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

/// Runs the action in a process of its own, which is killed after some microseconds.
template <class Action>
void RunAndKill(int microseconds, Action action) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            action();
        } catch (...) {
            _exit(1);
        }
        _exit(0);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
}

constexpr int kKills = 30;
constexpr int kLongestLifeInMicroseconds = 60000;

TEST_F(NewBooks, AreWholeOrNotThereWhenTheirMakerIsKilled) {
    std::mt19937 random(1);
    const std::size_t tables = CreateBook("memory:")->Tables().size();
    for (int i = 0; i < kKills; ++i) {
        RunAndKill(static_cast<int>(random() % kLongestLifeInMicroseconds), [&] { CreateBook(path); });
        if (!fs::exists(path)) CreateBook(path);
        EXPECT_EQ(OpenBook(path)->Tables().size(), tables);
        // A killed owner leaves the files beside a book that it had open.
        for (const char* name : {"book", "book-wal", "book-shm"}) fs::remove(directory.File(name));
        EXPECT_LE(Names().size(), 1U);
    }
}

TEST_F(NewBooks, CopiesAreWholeOrNotThereWhenTheirMakerIsKilled) {
    std::mt19937 random(2);
    CreateBook(path)->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    const std::string copy = directory.File("copy");
    for (int i = 0; i < kKills; ++i) {
        RunAndKill(static_cast<int>(random() % kLongestLifeInMicroseconds), [&] { OpenBook(path)->BackUp(copy); });
        if (!fs::exists(copy)) OpenBook(path)->BackUp(copy);
        EXPECT_EQ(ValueOf(*OpenBook(copy), "Select 仓库名称 From 仓库设置"), "甲");
        fs::remove(copy);
    }
}

TEST_F(NewBooks, ACopyOfADamagedBookIsNotKept) {
    const BookPtr book = CreateBook(path);
    for (int i = 0; i < 2000; ++i) book->Execute("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
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
