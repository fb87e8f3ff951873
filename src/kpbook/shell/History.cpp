#include "kpbook/shell/History.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "kpTables/LateBound.h"
#include "kpbook/Utf8.h"
#include "text/Ascii.h"

namespace kpTables::kpbook::shell {

namespace {

constexpr std::size_t kMostLines = 1000;

std::filesystem::path StateFolder() {
    if (const char* const state = std::getenv("XDG_STATE_HOME"); state && *state == '/') return state;
    const char* const home = std::getenv("HOME");
    return home && *home ? std::filesystem::path(home) / ".local" / "state" : std::filesystem::path();
}

std::string HistoryPath() {
    const auto state = StateFolder();
    if (state.empty()) return {};
    std::error_code failure;
    std::filesystem::create_directories(state / "kpbook", failure);
    return failure ? std::string() : (state / "kpbook" / "history").string();
}

/// Writes lines to a file that only its owner may read.
void WriteLines(const std::string& path, const std::string& text, int flags) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, S_IRUSR | S_IWUSR);
    if (file < 0) return;
    // A file that was made by other means may be open to others.
    if (::fchmod(file, S_IRUSR | S_IWUSR) == 0) {
        [[maybe_unused]] const auto written = ::write(file, text.data(), text.size());
    }
    ::close(file);
}

bool Contains(std::string_view text, std::string_view part) {
    const auto same = [](char a, char b) { return text::Lower(a) == text::Lower(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

}  // namespace

bool MayHoldPassword(std::string_view text) {
    if (Contains(text, "密码") || Contains(text, "password")) return true;
    return std::ranges::any_of(_CTables::Members(), [&](const _CTables::Member& member) {
        return std::ranges::any_of(member.parameters, &_CTables::Parameter::secret) && Contains(text, member.name);
    });
}

History::History() : path_(HistoryPath()) {
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);) {
        if (IsValidUtf8(line)) lines_.push_back(line);
    }
    if (lines_.size() <= 2 * kMostLines) return;
    lines_.erase(lines_.begin(), lines_.end() - kMostLines);
    std::string text;
    for (const auto& line : lines_) text += line + "\n";
    WriteLines(path_, text, O_TRUNC);
}

bool History::Keep(const std::string& line) {
    if (line.empty() || MayHoldPassword(line)) return false;
    if (!path_.empty()) WriteLines(path_, line + "\n", O_APPEND);
    return true;
}

}  // namespace kpTables::kpbook::shell
