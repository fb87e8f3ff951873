// What the commands' descriptions on the command line have in common.
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Date.h"

namespace kpTables::kpbook::commands {

extern const CLI::Validator kDate;
extern const CLI::Validator kUtf8;

/// The date that kDate let pass; nothing for an empty text.
std::optional<Date> DateOf(const std::string& text);

/// The words after the program's name, in the reverse order that CLI11 wants, each that it would take for something
/// else with a mark in front.
std::vector<std::string> MarkedWords(int count, char** words);
/// Takes the mark off.
void Unmark(std::string& word);

CLI::App* AddCommand(CLI::App& app, const std::string& name, const std::string& what, const std::string& footer);
void AddBook(CLI::App& command, std::string& book);

}  // namespace kpTables::kpbook::commands
