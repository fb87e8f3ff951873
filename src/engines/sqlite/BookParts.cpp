#include "engines/sqlite/BookParts.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "engines/sqlite/BookFile.h"
#include "text/Path.h"

namespace kpTables::engines::sqlite {

namespace {

namespace fs = std::filesystem;

/// What follows a book's name in the names of the files beside it.
constexpr std::string_view kBeside[] = {"-wal", "-shm", "-journal"};

/// Reads the file's header without a database, which would open the log too.
bool HasBooksHeader(const fs::path& path) {
    constexpr std::string_view kMagic{"SQLite format 3\0", 16};
    constexpr std::size_t kIdAt = 68;
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return false;
    std::array<char, kIdAt + 4> header{};
    std::ifstream in(path, std::ios::binary);
    if (!in.read(header.data(), header.size())) return false;
    std::int64_t id = 0;
    for (std::size_t i = kIdAt; i < header.size(); ++i) id = id << 8 | static_cast<unsigned char>(header[i]);
    return id == kApplicationId && std::equal(kMagic.begin(), kMagic.end(), header.begin());
}

/// The path behind symbolic links, of which the last may lead to a file that does not exist yet.
fs::path Resolved(fs::path path) {
    constexpr int kLongestChain = 40;
    std::error_code error;
    for (int i = 0; i < kLongestChain && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    const fs::path folder = fs::weakly_canonical(path.has_parent_path() ? path.parent_path() : ".", error);
    return folder / path.filename();
}

bool IsSameFile(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

}  // namespace

bool IsPartOfBook(const std::string& path, const std::string& book) {
    const fs::path file = Resolved(text::PathOf(path));
    if (HasBooksHeader(file)) return true;
    const fs::path own = book.empty() ? fs::path() : Resolved(text::PathOf(book));
    if (!own.empty() && IsSameFile(file, own)) return true;
    return std::ranges::any_of(kBeside, [&](std::string_view suffix) {
        const std::string name = file.string();
        if (name.ends_with(suffix) && HasBooksHeader(text::PathOf(name.substr(0, name.size() - suffix.size()))))
            return true;
        return !own.empty() && IsSameFile(file, text::PathOf(own.string().append(suffix)));
    });
}

}  // namespace kpTables::engines::sqlite
