#include "CallBench.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Child.h"
#include "HandLookups.h"
#include "Report.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#ifdef KPBENCH_WRAPPERS
#include "ComposedLookups.h"
#include "Recorder.h"
#include "SociDatabase.h"
#include "SqliteCppDatabase.h"
#endif

namespace kpTables::bench {

namespace {

constexpr std::size_t kCalls = 20'000;
/// A series of long calls ends earlier.
constexpr double kSeconds = 1;

/// The arguments of the calls, made before the clock starts. One in twenty does not exist.
struct Arguments {
    explicit Arguments(const BookSize& size);

    std::int16_t month;
    std::vector<std::int32_t> depots;
    std::vector<std::int32_t> products;
    std::vector<std::string> attributes;
    std::vector<std::string> names;
    std::vector<std::string> figures;
    std::vector<std::string> options;
};

/// A number from 1 to count, or sometimes one that is not in the book, in an order that no cache benefits from.
std::int64_t Scattered(std::size_t call, std::int64_t count) {
    constexpr std::size_t kMultiplier = 0x9E3779B97F4A7C15ULL;
    constexpr int kShift = 33;
    const auto random = static_cast<std::int64_t>(call * kMultiplier >> kShift);
    return random / count % 20 == 0 ? count + 1 : 1 + random % count;
}

Arguments::Arguments(const BookSize& size) : month(static_cast<std::int16_t>(size.months)) {
    for (std::size_t call = 0; call < kCalls; ++call) {
        depots.push_back(static_cast<std::int32_t>(Scattered(call + 1, size.depots)));
        const std::int64_t product = Scattered(call + 1, size.products);
        products.push_back(static_cast<std::int32_t>(product));
        attributes.emplace_back(HandLookups::kAttributes[call % HandLookups::kAttributes.size()]);
        const NamesOfProduct forms = NamesOf(product);
        names.push_back(call % 4 == 0   ? forms.barCode
                        : call % 4 == 1 ? forms.shortCode
                        : call % 4 == 2 ? forms.code
                                        : forms.name);
        figures.emplace_back(call % 2 == 0 ? "数量" : "金额");
        options.push_back(NameOfOption(Scattered(call + 1, kOptions)));
    }
}

/// Nanoseconds per call in a series, with changing arguments or always with the first ones.
template <class Side, class Ask>
double Nanoseconds(Side& side, const Ask& ask, bool varied) {
    constexpr std::size_t kBetweenLooks = 16;
    static_assert(kCalls % kBetweenLooks == 0);
    const Stopwatch watch;
    std::size_t calls = 0;
    double seconds = 0;
    while (calls < kCalls && seconds < kSeconds) {
        for (const std::size_t end = calls + kBetweenLooks; calls < end; ++calls) {
            static_cast<void>(ask(side, varied ? calls : 0));
        }
        seconds = watch.Seconds();
    }
    return seconds / static_cast<double>(calls) * 1e9;
}

template <class Side, class Ask>
std::vector<double> Measure(Side& side, const Ask& ask) {
    Nanoseconds(side, ask, true);  // fills the caches
    const double varied = Nanoseconds(side, ask, true);
    return {varied, Nanoseconds(side, ask, false)};
}

/// The component's side, opened like the others.
class ComponentLookups : public CTables {
public:
    explicit ComponentLookups(const std::string& path) { Cnn(OpenBook(path)); }
};

/// The number of calls with equal answers; throws when answers differ, or when all are the same and so prove nothing.
template <class Rival, class Ask>
double Compare(const std::string& path, const Ask& ask) {
    ComponentLookups component(path);
    Rival rival(path);
    const Variant first(ask(rival, 0));
    bool telling = false;
    std::size_t calls = 0;
    for (const Stopwatch watch; calls < kCalls && watch.Seconds() < kSeconds; ++calls) {
        const Variant answer(ask(rival, calls));
        if (!answer.Is(Variant(ask(component, calls)))) {
            throw std::runtime_error("the answers to call " + std::to_string(calls + 1) + " differ");
        }
        telling = telling || !answer.Is(first);
    }
    if (!telling) {
        throw std::runtime_error("all answers are the same");
    }
    return static_cast<double>(calls);
}

#ifdef KPBENCH_WRAPPERS
using SqliteCppLookups = ComposedLookups<SqliteCppDatabase>;
using SociLookups = ComposedLookups<SociDatabase>;

/// Throws when the wrapper's side sends other texts than the component.
template <class Rival, class Ask>
void CompareTexts(const std::string& path, const Ask& ask) {
    std::vector<std::string> sent;
    std::vector<std::string> composed;
    CTables tables;
    tables.Cnn(std::make_shared<Recorder>(OpenBook(path), sent));
    Rival rival(path);
    rival.Record(composed);
    constexpr std::size_t kTexts = 200;
    for (std::size_t call = 0; call < kTexts; ++call) {
        static_cast<void>(ask(tables, call));
        static_cast<void>(ask(rival, call));
    }
    if (sent.empty() || sent != composed) {
        throw std::runtime_error("the texts differ");
    }
}
#endif

struct CallRuns {
    std::vector<double> varied;
    std::vector<double> repeated;

    void Add(const Measured& measured) {
        varied.push_back(measured.figures.at(0));
        repeated.push_back(measured.figures.at(1));
    }
    std::vector<double> Figures() const {
        return {Minimum(varied),   Median(varied),   Maximum(varied),
                Minimum(repeated), Median(repeated), Maximum(repeated)};
    }
};

std::vector<std::string> Line(const std::string& name, const std::vector<double>& figures, int decimals) {
    std::vector<std::string> row = {name};
    for (const double figure : figures) {
        row.push_back(Fixed(figure, decimals));
    }
    return row;
}

class Report {
public:
    Report(const Setting& setting, std::string path) : setting_(setting), path_(std::move(path)) {}

    /// ask is called with a side and with the number of the call.
    template <class Ask>
    void Add(const std::string& method, const Ask& ask) {
        CallRuns component;
        CallRuns hand;
        CallRuns sqliteCpp;
        CallRuns soci;
        for (int run = 0; run < setting_.runs; ++run) {
            AddRun<ComponentLookups>(component, ask);
            AddRun<HandLookups>(hand, ask);
#ifdef KPBENCH_WRAPPERS
            AddRun<SqliteCppLookups>(sqliteCpp, ask);
            AddRun<SociLookups>(soci, ask);
#endif
        }
        lines_.push_back(Line(method, component.Figures(), 0));
        constexpr double kNanosecondsOfHand = 2;
        AddRival(method, "a cached statement, bound anew", component, hand, RatioUpTo(kNanosecondsOfHand),
                 [&] { return Compare<HandLookups>(path_, ask); });
#ifdef KPBENCH_WRAPPERS
        AddRival(method, "SQLiteCpp, text prepared anew", component, sqliteCpp, RatioBelow(1), [&] {
            CompareTexts<SqliteCppLookups>(path_, ask);
            return Compare<SqliteCppLookups>(path_, ask);
        });
        AddRival(method, "SOCI, text prepared anew", component, soci, RatioBelow(1), [&] {
            CompareTexts<SociLookups>(path_, ask);
            return Compare<SociLookups>(path_, ask);
        });
#endif
    }
    /// True when all answers agree.
    bool Print() const {
        PrintTable(setting_.details, lines_);
        for (const std::string& complaint : complaints_) {
            std::fprintf(setting_.details, "  %s\n", complaint.c_str());
        }
        return complaints_.empty();
    }

private:
    template <class Side, class Ask>
    void AddRun(CallRuns& runs, const Ask& ask) {
        runs.Add(InChild([&] {
            Side side(path_);
            return Measure(side, ask);
        }));
    }

    void AddRival(const std::string& method, const std::string& name, const CallRuns& component, const CallRuns& rival,
                  const Goal& goal, const std::function<double()>& compare) {
        lines_.push_back(Line("  " + name, rival.Figures(), 0));
        try {
            lines_.back().push_back(Fixed(InChild([&] { return std::vector<double>{compare()}; }).figures.at(0), 0));
        } catch (const std::exception&) {
            complaints_.push_back(method + " beside " + name + ": not the same");
        }
        std::vector<double> ratios = component.Figures();
        const std::vector<double> divisors = rival.Figures();
        std::transform(ratios.begin(), ratios.end(), divisors.begin(), ratios.begin(), std::divides<>());
        lines_.push_back(Line("  ratio", ratios, 2));
        setting_.results->Add(
            {method, name, "us a call", 2, Microseconds(component.varied), Microseconds(rival.varied), goal});
    }

    static std::vector<double> Microseconds(std::vector<double> nanoseconds) {
        for (double& each : nanoseconds) {
            each /= 1000;
        }
        return nanoseconds;
    }

    const Setting& setting_;
    std::string path_;
    std::vector<std::vector<std::string>> lines_ = {
        {"", "min", "median", "max", "repeated: min", "median", "max", "answers alike"}};
    std::vector<std::string> complaints_;
};

}  // namespace

bool BenchCalls(const Setting& setting) {
    const BookSize& size = setting.size;
    const std::string path = (setting.folder / "calls.kpbook").string();
    MakeBook(path, size);
    std::fprintf(setting.details,
                 "\nCalls over a book of %lld products, %d warehouses, %lld lines a direction; %d runs, in ns a call\n",
                 static_cast<long long>(size.products), size.depots, static_cast<long long>(size.lines), setting.runs);
    const Arguments with(size);
    Report report(setting, path);
    report.Add("Get仓库名称", [&](auto& side, std::size_t call) { return side.Get仓库名称(with.depots[call]); });
    report.Add("Get商品资料", [&](auto& side, std::size_t call) {
        return side.Get商品资料(with.products[call], with.attributes[call]);
    });
    report.Add("Get商品ID", [&](auto& side, std::size_t call) { return side.Get商品ID(with.names[call]); });
    report.Add("Get本期库存", [&](auto& side, std::size_t call) {
        return side.Get本期库存(with.depots[call], with.products[call], with.month, with.figures[call]);
    });
    report.Add("Get_Option", [&](auto& side, std::size_t call) { return side.Get_Option(with.options[call]); });
    return report.Print();
}

}  // namespace kpTables::bench
