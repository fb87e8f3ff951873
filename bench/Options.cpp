#include "Options.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace kpTables::bench {

namespace {

constexpr std::array<std::string_view, 10> kNames = {"closing", "year",   "listing", "reports", "calls",
                                                     "entry",   "import", "start",   "memory",  "table"};

void Set(Options& options, std::string_view name, const std::string& value) {
    if (name == "--lines") {
        options.lines = std::stoll(value);
    } else if (name == "--products") {
        options.size.products = std::stoll(value);
    } else if (name == "--runs") {
        options.runs = std::stoi(value);
    } else if (name == "--folder") {
        options.folder = value;
    } else if (name == "--markdown") {
        options.markdown = value;
    } else {
        throw std::invalid_argument(value);
    }
}

}  // namespace

const char* const kUsage =
    "usage: kpbench [--lines N] [--products N] [--runs N] [--folder DIR] [--markdown FILE] [BENCHMARK]\n"
    "  BENCHMARK  closing, year, listing, reports, calls, entry, import, start or memory; without a name all but "
    "import\n"
    "             and start, which need kpbook and the sqlite3 shell\n"
    "  table      all of them, and one table of every figure beside its rival's; --markdown puts it into a file,\n"
    "             in place of the one that is there between <!-- table --> and <!-- end -->\n"
    "Needs about 2 GB in DIR (the temporary directory), in a folder of its own that it removes at the end.\n";

Options ReadOptions(int argc, char** argv) {
    Options options;
    options.folder = std::filesystem::temp_directory_path();
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (std::find(kNames.begin(), kNames.end(), word) != kNames.end()) {
            options.only = word;
        } else if (i + 1 < argc) {
            Set(options, word, argv[++i]);
        } else {
            throw std::invalid_argument(word);
        }
    }
    options.folder /= "kpbench-" + std::to_string(getpid());
    options.size.lines = options.lines.value_or(options.size.lines);
    if (options.size.lines < 1 || options.size.products < 1 || options.runs < 1) {
        throw std::invalid_argument("0");
    }
    return options;
}

}  // namespace kpTables::bench
