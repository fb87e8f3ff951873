// The commands of the shell: what help and completion say about them.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace kpTables::kpbook::shell {

struct DotCommand {
    std::string_view name;
    std::string_view words;  ///< "[TABLE]"
    const char* what;
    std::vector<std::string_view> choices;  ///< what its word may be, where that is fixed
};

std::span<const DotCommand> DotCommands();
/// The words that a command takes; none for an unknown one.
std::span<const std::string_view> ChoicesOf(std::string_view command);

}  // namespace kpTables::kpbook::shell
