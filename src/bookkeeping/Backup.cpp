#include "kpTables/bookkeeping/Backup.h"

#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& text) {
    throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), text);
}

fs::path PathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

/// A copy that is removed unless it is kept.
class NewCopy {
public:
    NewCopy(Book& book, const BackupOptions& options, std::string name) : name_(std::move(name)) {
        options.copy ? options.copy(name_) : book.BackUp(name_);
    }
    ~NewCopy() {
        if (kept_) return;
        std::error_code ignored;
        for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(PathOf(name_ + suffix), ignored);
    }
    NewCopy(const NewCopy&) = delete;
    NewCopy& operator=(const NewCopy&) = delete;

    const std::string& Name() const noexcept { return name_; }
    void Keep() noexcept { kept_ = true; }

private:
    std::string name_;
    bool kept_ = false;
};

/// A name beside the copy's that no other backup uses.
std::string NameBeside(const std::string& path) { return path + ".new-" + std::to_string(std::random_device{}()); }

bool Exists(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(PathOf(path), error).type() != fs::file_type::not_found;
}

void Move(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) Fail(Message("'{1}' cannot be written: {2}", to.string(), SystemMessage(error)));
}

std::string Generation(const std::string& path, int number) {
    return number == 0 ? path : path + "." + std::to_string(number);
}

/// The oldest generation goes, the others move up, and the copy becomes the newest. At every moment all but the oldest
/// are there under some name.
void PlaceNewest(const NewCopy& copy, const BackupOptions& options) {
    int free = 0;
    while (free < options.keep - 1 && Exists(Generation(options.path, free))) ++free;
    for (int number = free; number > 0; --number) {
        Move(PathOf(Generation(options.path, number - 1)), PathOf(Generation(options.path, number)));
    }
    Move(PathOf(copy.Name()), PathOf(options.path));
}

void Check(const std::string& path, const BackupOptions& options) {
    const auto faults = options.open(path)->IntegrityFaults();
    if (!faults.empty()) Fail(Message("the copy is damaged: {1}", faults.front()));
}

void RequireFree(const BackupOptions& options) {
    if (options.keep == 0) {
        if (Exists(options.path)) Fail(Message("'{1}' exists already; it was left as it is", options.path));
        return;
    }
    for (int number = 0; number < options.keep; ++number) {
        const std::string file = Generation(options.path, number);
        std::error_code ignored;
        if (!options.bookFile.empty() && fs::equivalent(PathOf(file), PathOf(options.bookFile), ignored))
            Fail(Message("'{1}' is the book itself", file));
        if (fs::is_directory(PathOf(file), ignored)) Fail(Message("'{1}' is a directory", file));
    }
    // A generation that moves up is not lost; a single one is written over.
    if (options.keep == 1 && Exists(options.path)) options.open(options.path);
}

}  // namespace

void BackUpBook(Book& book, const BackupOptions& options) {
    RequireFree(options);
    NewCopy copy(book, options, options.keep == 0 ? options.path : NameBeside(options.path));
    Check(copy.Name(), options);
    if (options.keep > 0) PlaceNewest(copy, options);
    copy.Keep();
}

}  // namespace kpTables::bookkeeping
