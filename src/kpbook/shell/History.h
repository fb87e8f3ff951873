// What was typed in earlier shells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpTables::kpbook::shell {

/// Whether a statement or a call may hold a password: it names the column of passwords, or a method that takes one.
bool MayHoldPassword(std::string_view text);

/// A file that only its owner may read: kpbook/history in XDG_STATE_HOME, by default ~/.local/state. A file that cannot
/// be read or written is no error: the shell works without.
class History {
public:
    History();

    /// Oldest first.
    const std::vector<std::string>& Lines() const noexcept { return lines_; }
    /// Adds a line to the file; not one that may hold a password, nor an empty one. False when it was not kept.
    bool Keep(const std::string& line);

private:
    std::string path_;  ///< empty: there is no place for the file
    std::vector<std::string> lines_;
};

}  // namespace kpTables::kpbook::shell
