// The program, its user and their folders.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace kpTables::platform {

/// The words of the command line, in UTF-8, from what main is given.
std::vector<std::string> CommandLineWords(int count, char** words);
/// The program's own file.
std::filesystem::path ProgramPath(std::error_code& failure);
/// The name with which the user logged in; "" when the system does not know it.
std::string UserName();
/// The language that the user has chosen for the system, as "zh_CN"; "" where the environment's variables alone say it.
std::string SystemLanguage();
/// Where programs keep what a user would not miss much, such as what was typed; empty when there is no such folder.
std::filesystem::path StateFolder();
/// Writes a text to a file that only the user may read, at its end or instead of what is there. Nothing happens when
/// that fails.
void WritePrivately(const std::string& path, const std::string& text, bool append) noexcept;

}  // namespace kpTables::platform
