// What the library of the command line says by itself, in the user's language.
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <string>

namespace kpTables::kpbook::commands {

/// Translates the headings and the descriptions of the options of a program and of its commands.
void TranslateHelp(CLI::App& app);

/// What the library says of a wrong command line.
std::string TranslatedError(const std::string& text);

}  // namespace kpTables::kpbook::commands
