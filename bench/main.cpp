// kpbench [--lines N] [--products N] [--runs N] [--folder DIR] [closing|listing|calls|reports]
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "CallBench.h"
#include "ClosingBench.h"
#include "ListingBench.h"
#include "ReportBench.h"

namespace {

struct Options {
    kpTables::bench::BookSize size;
    std::optional<std::int64_t> lines;
    int runs = 5;
    std::filesystem::path folder = std::filesystem::temp_directory_path() / ("kpbench-" + std::to_string(getpid()));
    std::string only;  ///< one benchmark by name; all of them when empty

    bool Wants(std::string_view benchmark) const { return only.empty() || only == benchmark; }
};

constexpr const char* kUsage =
    "usage: kpbench [--lines N] [--products N] [--runs N] [--folder DIR] [closing|listing|calls|reports]\n"
    "Needs about 1.5 GB in DIR (a folder of its own in the temporary directory), which it removes at the end.\n";

Options ReadOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "closing" || word == "listing" || word == "calls" || word == "reports") {
            options.only = word;
            continue;
        }
        if (i + 1 == argc) {
            throw std::invalid_argument(word);
        }
        const std::string value = argv[++i];
        if (word == "--lines") {
            options.lines = std::stoll(value);
        } else if (word == "--products") {
            options.size.products = std::stoll(value);
        } else if (word == "--runs") {
            options.runs = std::stoi(value);
        } else if (word == "--folder") {
            options.folder = std::filesystem::path(value) / ("kpbench-" + std::to_string(getpid()));
        } else {
            throw std::invalid_argument(word);
        }
    }
    options.size.lines = options.lines.value_or(options.size.lines);
    if (options.size.lines < 1 || options.size.products < 1 || options.runs < 1) {
        throw std::invalid_argument("0");
    }
    return options;
}

kpTables::bench::BookSize CallSize(const Options& options) {
    constexpr std::int64_t kLines = 200'000;
    kpTables::bench::BookSize size = options.size;
    size.lines = options.lines.value_or(kLines);
    size.depots = 10;
    return size;
}

/// A shop of four warehouses; of a modest size unless another is asked for.
kpTables::bench::BookSize ReportSize(const Options& options) {
    constexpr std::int64_t kLines = 100'000;
    constexpr std::int64_t kLinesOfAProduct = 10;
    kpTables::bench::BookSize size = options.size;
    size.lines = options.lines.value_or(kLines);
    size.products = std::clamp<std::int64_t>(size.lines / kLinesOfAProduct, 1, size.products);
    size.depots = 4;
    return size;
}

/// Removes the books also when a benchmark fails.
class Folder {
public:
    explicit Folder(const std::filesystem::path& path) : path_(path) { std::filesystem::create_directories(path); }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

private:
    std::filesystem::path path_;
};

}  // namespace

int main(int argc, char** argv) {
    Options options;
    try {
        options = ReadOptions(argc, argv);
    } catch (const std::exception&) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    try {
        const Folder folder(options.folder);
        bool sound = true;
        if (options.Wants("closing")) {
            sound = kpTables::bench::BenchClosing(options.folder, options.size, options.runs);
        }
        if (options.Wants("listing")) {
            kpTables::bench::BookSize size = options.size;
            size.depots = 4;
            sound = kpTables::bench::BenchListing(options.folder, size, options.runs) && sound;
        }
        if (options.Wants("calls")) {
            sound = kpTables::bench::BenchCalls(options.folder, CallSize(options), options.runs) && sound;
        }
        if (options.Wants("reports")) {
            sound = kpTables::bench::BenchReports(options.folder, ReportSize(options), options.runs) && sound;
        }
        return sound ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kpbench: %s\n", error.what());
        return 1;
    }
}
