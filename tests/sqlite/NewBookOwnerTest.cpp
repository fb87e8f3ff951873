// New books and copies: their owner's alone, and whole or not there at all when their maker is killed.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "NewBooks.h"

namespace kpTables {
namespace {

using namespace test;
namespace fs = std::filesystem;

mode_t ModeOf(const std::string& path) {
    struct stat found {};
    EXPECT_EQ(stat(path.c_str(), &found), 0) << path;
    return found.st_mode & 0777;
}

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
        for (const char* name : {"book", "book-wal", "book-shm"})
            EXPECT_EQ(ModeOf(directory.File(name)), kOwnerOnly) << name;
        book->BackUp(directory.File("copy"));
        EXPECT_EQ(ModeOf(directory.File("copy")), kOwnerOnly);
        for (const std::string& name : Names()) fs::remove(directory.File(name));
    }
}

TEST_F(NewBooks, LeaveNothingWhereTheirPreparationKeepsThem) {
    RecordsetPtr kept;
    NewBookOptions options;
    options.prepare = [&](const BookPtr& book) { kept = book->Open("仓库设置", SourceKind::Table); };
    EXPECT_TRUE(Refused([&] { CreateBook(path, options); }));
    EXPECT_EQ(Names(), std::set<std::string>());
}

TEST_F(NewBooks, LeaveTheDraftOfAnotherProgramAlone) {
    Write(".book.new-0123abcd", "half a book");
    const int file = open(directory.File(".book.new-0123abcd").c_str(), O_RDWR);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    CreateBook(path);
    EXPECT_EQ(Names(), (std::set<std::string>{".book.new-0123abcd", "book"}));
    close(file);
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

}  // namespace
}  // namespace kpTables
