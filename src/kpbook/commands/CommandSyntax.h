// What the definitions of the commands on the command line share.
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Date.h"

namespace kpTables::kpbook::commands {

extern const CLI::Validator kDate;
extern const CLI::Validator kUtf8;

/// The date of a text that kDate accepted; nothing for an empty text.
std::optional<Date> DateOf(const std::string& text);

/// The words of a command line after the program's name, in the reverse order that CLI11 expects; words that it would
/// misread have a mark in front.
std::vector<std::string> MarkedWords(const std::vector<std::string>& words);
/// Lets each option of the program and of its commands remove the mark, before anything else looks at its words.
void UnmarkWords(CLI::App& app);

/// The command that was given, or the innermost one: "bill add".
const CLI::App& AskedCommand(const CLI::App& app);
/// The book that a command works with; "" when it has none.
std::string BookOf(const CLI::App& command);

CLI::App* AddCommand(CLI::App& app, const std::string& name, const std::string& what, const std::string& footer);
CLI::Option* AddMonth(CLI::App& command, const std::string& option, std::int16_t& month, const std::string& what);
void AddBook(CLI::App& command, std::string& book);

}  // namespace kpTables::kpbook::commands
