// kpbench: compares time and memory of the component with its rivals. kpbench --help lists the options.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include "CallBench.h"
#include "ClosingBench.h"
#include "EntryBench.h"
#include "ImportBench.h"
#include "ListingBench.h"
#include "Machine.h"
#include "MemoryBench.h"
#include "Options.h"
#include "Report.h"
#include "ReportBench.h"
#include "Setting.h"
#include "StartBench.h"
#include "TablePage.h"

namespace {

using namespace kpTables::bench;

/// Removes the books even when a benchmark fails.
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

Setting SettingOf(const Options& options, Results& results) {
    Setting setting;
    setting.folder = options.folder;
    setting.size = options.size;
    setting.runs = options.runs;
    setting.details = options.only == "table" ? stderr : stdout;
    setting.results = &results;
    return setting;
}

/// A shop with ten warehouses; of modest size unless --lines says otherwise.
Setting CallSetting(const Options& options, Setting setting) {
    constexpr std::int64_t kLines = 200'000;
    setting.size.lines = options.lines.value_or(kLines);
    setting.size.depots = 10;
    return setting;
}

/// A shop with four warehouses; of modest size unless --lines says otherwise.
Setting ReportSetting(const Options& options, Setting setting) {
    constexpr std::int64_t kLines = 100'000;
    constexpr std::int64_t kLinesOfAProduct = 10;
    setting.size.lines = options.lines.value_or(kLines);
    setting.size.products = std::clamp<std::int64_t>(setting.size.lines / kLinesOfAProduct, 1, setting.size.products);
    setting.size.depots = 4;
    return setting;
}

/// The bill lists and reports of the table are those of the listing's book.
bool BenchListings(const Options& options, Setting setting) {
    const bool isTable = options.only == "table";
    const std::string path = (setting.folder / "listing.kpbook").string();
    bool sound = true;
    if (options.only != "reports") {
        setting.size.depots = 4;
        MakeBook(path, setting.size);
        sound = BenchListing(setting, path);
    }
    if (isTable) {
        sound = BenchReports(setting, path) && sound;
    } else if (options.only != "listing") {
        const Setting ofReports = ReportSetting(options, setting);
        MakeBook(path, ofReports.size);
        sound = BenchReports(ofReports, path) && sound;
    }
    std::filesystem::remove(path);
    return sound;
}

bool RunBenchmarks(const Options& options, const Setting& setting) {
    const bool isTable = options.only == "table";
    const auto wants = [&](std::string_view name) { return isTable || options.only == name; };
    const auto wantsAlways = [&](std::string_view name) { return options.only.empty() || wants(name); };
    bool sound = true;
    if (wantsAlways("closing")) sound = BenchClosing(setting) && sound;
    if (wantsAlways("year")) sound = BenchYear(setting) && sound;
    if (wantsAlways("listing") || wants("reports")) sound = BenchListings(options, setting) && sound;
    if (wantsAlways("calls")) sound = BenchCalls(CallSetting(options, setting)) && sound;
    if (wantsAlways("entry")) sound = BenchEntry(setting, options.only == "entry") && sound;
    if (wants("import")) sound = BenchImport(setting) && sound;
    if (wants("start")) sound = BenchStart(setting) && sound;
    if (wantsAlways("memory")) sound = BenchMemory(setting) && sound;
    return sound;
}

void PrintTableOfAll(const Options& options, const Results& results, double loadAtStart, bool sound) {
    std::string about = "Measured on " + Today();
    for (const std::string& fact : DescribeMachine()) {
        about += ", " + fact;
    }
    about += "; runs in turns with the rival. Load of the machine: " + Fixed(loadAtStart, 1) + " before, " +
             Fixed(LoadOfLastMinute(), 1) + " at the end, of which this is 1.";
    about += sound ? " All answers agree with the rivals'." : " Not all answers agree with the rivals'.";
    std::printf("%s\n\n", about.c_str());
    PrintTable(stdout, results.Cells(), Results::kTextColumns);
    if (!options.markdown.empty()) {
        WriteTable(options.markdown, about + "\n\n" + results.Markdown());
    }
}

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
        Results results;
        const double load = LoadOfLastMinute();
        const bool sound = RunBenchmarks(options, SettingOf(options, results));
        if (options.only == "table") {
            PrintTableOfAll(options, results, load, sound);
        }
        return sound ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kpbench: %s\n", error.what());
        return 1;
    }
}
