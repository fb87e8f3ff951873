// kpbench_postgres: compares books on a server with statements by hand through libpq on the same server.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unistd.h>

#include "../Machine.h"
#include "../Report.h"
#include "../TablePage.h"
#include "Benchmarks.h"
#include "Books.h"

namespace {

using namespace kpTables::bench;

constexpr const char* kUsage =
    "usage: kpbench_postgres [--lines N] [--products N] [--runs N] [--markdown FILE] [closing|reports|calls|import]\n"
    "KPTABLES_SERVER has the server's URL. bench/run --engine postgres starts a server and runs all of them.\n";

struct Options {
    ServerSetting setting;
    std::string markdown;
    std::string only;
};

Options Read(int argc, char** argv) {
    Options options;
    options.setting.size.lines = 100'000;
    options.setting.size.products = 100'000;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const bool hasValue = word.starts_with("--") && i + 1 < argc;
        if (hasValue && word == "--lines")
            options.setting.size.lines = std::stoll(argv[++i]);
        else if (hasValue && word == "--products")
            options.setting.size.products = std::stoll(argv[++i]);
        else if (hasValue && word == "--runs")
            options.setting.runs = std::stoi(argv[++i]);
        else if (hasValue && word == "--markdown")
            options.markdown = argv[++i];
        else if (word == "closing" || word == "reports" || word == "calls" || word == "import")
            options.only = word;
        else
            throw std::invalid_argument(word);
    }
    return options;
}

bool Run(const Options& options) {
    const ServerSetting& setting = options.setting;
    const auto wants = [&](std::string_view name) { return options.only.empty() || options.only == name; };
    bool same = true;
    if (wants("closing")) same = BenchServerClosing(setting) && same;
    if (wants("reports") || wants("calls")) {
        BookSize size = setting.size;
        size.depots = 4;
        size.products = std::clamp<std::int64_t>(size.lines / 10, 1, size.products);
        ServerSetting ofShop = setting;
        ofShop.size = size;
        MakeServerBook("shop", size, setting.folder);
        if (wants("reports")) same = BenchServerReports(ofShop, "shop") && same;
        if (wants("calls")) same = BenchServerCalls(ofShop, "shop") && same;
        DropServerBook("shop");
    }
    if (wants("import")) same = BenchServerImport(setting) && same;
    return same;
}

std::string About(double loadAtStart, bool same) {
    std::string about = "Measured on " + Today();
    for (const std::string& fact : DescribeMachine()) about += ", " + fact;
    about += ", PostgreSQL " + Server(ServerAddress()).Run("SHOW server_version").Text(0, 0);
    about +=
        "; runs in turns with the rival; CPU: the processor time of this program and of the server together. Load "
        "of the machine: " +
        Fixed(loadAtStart, 1) + " before, " + Fixed(LoadOfLastMinute(), 1) + " at the end.";
    return about + (same ? " All answers agree with the rivals'." : " Not all answers agree with the rivals'.");
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    try {
        options = Read(argc, argv);
    } catch (const std::exception&) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const auto folder = std::filesystem::temp_directory_path() / ("kpbench-" + std::to_string(getpid()));
    try {
        std::filesystem::create_directories(folder);
        options.setting.folder = folder.string();
        Results results;
        options.setting.results = &results;
        const double load = LoadOfLastMinute();
        const bool same = Run(options);
        std::filesystem::remove_all(folder);
        const std::string about = About(load, same);
        std::printf("%s\n\n", about.c_str());
        PrintTable(stdout, results.Cells(), Results::kTextColumns);
        if (!options.markdown.empty()) WriteTable(options.markdown, about + "\n\n" + results.Markdown());
        return same ? 0 : 1;
    } catch (const std::exception& error) {
        std::filesystem::remove_all(folder);
        std::fprintf(stderr, "kpbench_postgres: %s\n", error.what());
        return 1;
    }
}
