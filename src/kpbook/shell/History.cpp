#include "kpbook/shell/History.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "kpTables/LateBound.h"
#include "kpbook/Utf8.h"
#include "platform/Program.h"
#include "text/Ascii.h"
#include "text/Path.h"

namespace kpTables::kpbook::shell {

namespace {

constexpr std::size_t kMostLines = 1000;

std::string HistoryPath() {
    const auto state = platform::StateFolder();
    if (state.empty()) return {};
    std::error_code failure;
    std::filesystem::create_directories(state / "kpbook", failure);
    return failure ? std::string() : (state / "kpbook" / "history").string();
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
    std::ifstream file(text::PathOf(path_));
    for (std::string line; std::getline(file, line);) {
        if (IsValidUtf8(line)) lines_.push_back(line);
    }
    if (lines_.size() <= 2 * kMostLines) return;
    lines_.erase(lines_.begin(), lines_.end() - kMostLines);
    std::string text;
    for (const auto& line : lines_) text += line + "\n";
    platform::WritePrivately(path_, text, false);
}

bool History::Keep(const std::string& line) {
    if (line.empty() || MayHoldPassword(line)) return false;
    if (!path_.empty()) platform::WritePrivately(path_, line + "\n", true);
    return true;
}

}  // namespace kpTables::kpbook::shell
