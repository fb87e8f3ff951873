// The commands and options of the command line as data, for completion scripts and manual pages: what the help shows.
#pragma once

#include <string>
#include <vector>

#include "kpbook/commands/CommandSyntax.h"

namespace kpTables::kpbook::commands {

struct OptionEntry {
    std::vector<std::string> names;  ///< "-o", "--output"; empty: a word that stands for itself
    std::string what;
    std::string value;                 ///< "FILE"; empty for a flag
    std::string positional;            ///< "BOOK", of a word
    std::vector<std::string> choices;  ///< what the value or the word may be, where that is known; else a file
    bool required = false;
    bool repeated = false;
};

struct CommandPage {
    std::string name;                   ///< "sql", "bill add"; empty: the program
    std::vector<std::string> children;  ///< the last words of the names of its own commands
    std::string what;
    std::string description;            ///< the help's paragraphs but for the examples
    std::vector<std::string> examples;  ///< a line each
    std::vector<OptionEntry> options;
    std::vector<OptionEntry> words;
};

/// The program, then its commands in the order of the help, each before its own. Every command must have been added to
/// it.
std::vector<CommandPage> ReadCommandTree(const CLI::App& app);

}  // namespace kpTables::kpbook::commands
