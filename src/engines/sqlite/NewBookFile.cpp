#include "engines/sqlite/NewBookFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "text/Path.h"

namespace kpTables::engines::sqlite {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMark = ".new-";
constexpr std::size_t kDigits = 8;
/// Longer names are cut in the draft's name, which must not exceed what a folder takes.
constexpr std::size_t kLongestName = 200;

[[noreturn]] void RefuseDraft(const std::string& place, const std::string& complaint,
                              DatabaseErrorNumber number = DatabaseErrorNumber::Failure) {
    throw DatabaseError(static_cast<std::int32_t>(number),
                        Message("The book '{1}' cannot be made: {2}", place, complaint));
}

DatabaseErrorNumber NumberOf(int code) noexcept {
    if (platform::MeansFullDisk(code)) return DatabaseErrorNumber::DiskFull;
    switch (code) {
        case EACCES:
        case EPERM:
        case EROFS:
            return DatabaseErrorNumber::NotPermitted;
        case EIO:
            return DatabaseErrorNumber::DiskFailure;
        default:
            return DatabaseErrorNumber::Failure;
    }
}

[[noreturn]] void RefuseForCode(const std::string& place, int code) {
    if (code == EEXIST) RefuseDraft(place, Message("there is a file of that name already"));
    RefuseDraft(place, std::generic_category().message(code), NumberOf(code));
}

fs::path FolderOf(const std::string& place) {
    fs::path folder = text::PathOf(place).parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

/// The beginning of the names of all drafts for a place.
std::string PrefixOf(const std::string& place) {
    return "." + text::PathOf(place).filename().string().substr(0, kLongestName).append(kMark);
}

bool IsDraftName(std::string_view name, std::string_view prefix) {
    return name.size() == prefix.size() + kDigits && name.starts_with(prefix) &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == name.npos;
}

}  // namespace

NewBookFile::NewBookFile(const std::string& place) : place_(place) {
    if (place.empty() || place.find('\0') != place.npos)
        RefuseDraft(place, Message("the path is empty or holds a NUL character"));
    std::error_code error;
    if (fs::exists(fs::symlink_status(text::PathOf(place), error)))
        RefuseDraft(place, Message("there is a file of that name already"));
    for (const char* suffix : {"-wal", "-journal"}) {
        const auto size = fs::file_size(text::PathOf(place + suffix), error);
        if (!error && size > 0) {
            RefuseDraft(place,
                        Message("beside it is '{1}{2}', the log of an earlier book of that name; move that away first",
                                text::PathOf(place).filename().string(), suffix));
        }
    }
    platform::RemoveAbandoned(FolderOf(place).string(),
                              [prefix = PrefixOf(place)](std::string_view name) { return IsDraftName(name, prefix); });
    while (!Take()) {
    }
}

/// False when the name is taken.
bool NewBookFile::Take() {
    std::random_device random;
    char digits[kDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(random()));
    path_ = (FolderOf(place_) / text::PathOf(PrefixOf(place_) + digits)).string();
    const int code = file_.Make(path_);
    if (code != 0 && code != EEXIST) RefuseForCode(place_, code);
    return code == 0;
}

void NewBookFile::Publish() {
    if (const int code = file_.Place(place_)) RefuseForCode(place_, code);
}

}  // namespace kpTables::engines::sqlite
