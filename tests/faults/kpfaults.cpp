// kpfaults: runs kpbook with faults of disk, memory and power, and checks what it promised.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "faults/FailingMemory.h"
#include "faults/FaultyDisk.h"
#include "faults/Judge.h"

namespace kpTables::faults {

namespace {

constexpr const char* kUsage =
    "usage: kpfaults [options]\n"
    "  --workload NAME   only workloads whose names begin so; may be repeated\n"
    "  --fault NAME      only this kind of fault; may be repeated\n"
    "  --every [STEP]    every operation that a workload reaches, or every STEP-th\n"
    "  --samples N       N faults at random\n"
    "  --seconds S       as many at random as fit\n"
    "  --seed N          of the random ones; default 1\n"
    "  --number N        the N-th operation alone, and show the run (the replay of a failure)\n"
    "  --list            list workloads, and how many operations of each kind they reach\n";

struct Options {
    std::vector<std::string> workloads;
    std::vector<const FaultKind*> kinds;
    std::int64_t step = 0;
    std::int64_t samples = 0;
    std::int64_t seconds = 0;
    std::uint64_t seed = 1;
    std::int64_t number = 0;
    bool list = false;
};

Options ReadOptions(int count, char** words) {
    Options options;
    const auto value = [&](int& i) {
        if (i + 1 >= count) throw std::invalid_argument(std::string(words[i]) + " needs a value");
        return std::string(words[++i]);
    };
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--workload") {
            options.workloads.push_back(value(i));
        } else if (word == "--fault") {
            options.kinds.push_back(FindFaultKind(value(i)));
            if (!options.kinds.back()) throw std::invalid_argument("there is no such fault");
        } else if (word == "--every") {
            options.step = i + 1 < count && words[i + 1][0] != '-' ? std::stoll(value(i)) : 1;
        } else if (word == "--samples") {
            options.samples = std::stoll(value(i));
        } else if (word == "--seconds") {
            options.seconds = std::stoll(value(i));
        } else if (word == "--seed") {
            options.seed = std::stoull(value(i));
        } else if (word == "--number") {
            options.number = std::stoll(value(i));
        } else if (word == "--list") {
            options.list = true;
        } else {
            throw std::invalid_argument("unknown option " + word);
        }
    }
    if (options.kinds.empty()) {
        // Kills follow no plan that could be repeated: they are asked for.
        for (const FaultKind& kind : FaultKinds()) {
            if (kind.effect != Effect::Kill) options.kinds.push_back(&kind);
        }
    }
    return options;
}

/// A folder in memory, where the work is done; removed at the end.
class WorkFolder {
public:
    WorkFolder() : path_("/dev/shm/kpfaults." + std::to_string(::getpid())) {
        std::filesystem::create_directory(path_);
        std::filesystem::current_path(path_);
    }
    ~WorkFolder() {
        std::error_code ignored;
        std::filesystem::current_path("/", ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

private:
    std::string path_;
};

bool Wanted(const Options& options, const std::string& name) {
    return options.workloads.empty() ? !name.starts_with("large.")
                                     : std::any_of(options.workloads.begin(), options.workloads.end(),
                                                   [&](const auto& prefix) { return name.starts_with(prefix); });
}

/// Whether the names that are wanted may lie in a group of workloads.
bool WantsGroup(const Options& options, const std::string& group, bool byDefault) {
    if (options.workloads.empty()) return byDefault;
    return std::any_of(options.workloads.begin(), options.workloads.end(),
                       [&](const auto& prefix) { return prefix.starts_with(group) || group.starts_with(prefix); });
}

std::vector<Workload> Workloads(const Options& options) {
    std::vector<Workload> workloads = Commands(false);
    const auto add = [&](std::vector<Workload> more) { workloads.insert(workloads.end(), more.begin(), more.end()); };
    if (WantsGroup(options, "large.", false)) add(Commands(true));
    if (WantsGroup(options, "call.", true) || WantsGroup(options, "batch.", true)) add(MethodCalls());
    std::erase_if(workloads, [&](const Workload& workload) { return !Wanted(options, workload.name); });
    if (workloads.empty()) throw std::invalid_argument("no workload has such a name");
    return workloads;
}

struct Tally {
    std::int64_t runs = 0;
    std::int64_t injected = 0;
    std::int64_t told = 0;
    std::int64_t done = 0;
    std::int64_t ended = 0;
    std::int64_t complaints = 0;
};

class Session {
public:
    explicit Session(const Options& options)
        : options_(options), workloads_(Workloads(options)), references_(workloads_.size()) {}

    int Run() {
        if (options_.list) {
            List();
            return 0;
        }
        if (options_.number > 0) return Replay();
        if (options_.step > 0) Every();
        if (options_.samples > 0 || options_.seconds > 0) Samples();
        return Summary();
    }

private:
    /// What the workload does without faults; found out when it is asked for.
    const Reference& ReferenceOf(std::size_t workload) {
        auto& reference = references_[workload];
        if (!reference) reference = MakeReference(workloads_[workload]);
        return *reference;
    }

    void List() {
        for (std::size_t i = 0; i < workloads_.size(); ++i) {
            const Reference& reference = ReferenceOf(i);
            std::cout << reference.workload.name << (reference.before == reference.after ? " (reads)" : "") << ':';
            for (const auto* kind : options_.kinds) {
                std::cout << ' ' << kind->name << ' ' << Reach(reference.outcome.report.passed, *kind);
            }
            std::cout << '\n';
        }
    }

    int Replay() {
        for (std::size_t i = 0; i < workloads_.size(); ++i) {
            const Reference& reference = ReferenceOf(i);
            const Plan plan{options_.kinds[0], options_.number, options_.seed};
            const Outcome outcome = RunWith(reference, plan);
            const std::string complaint = Complaint(reference, outcome);
            std::cout << reference.workload.name << ": exit code or signal " << outcome.code << "\n"
                      << outcome.out << outcome.err << (complaint.empty() ? "as promised" : complaint) << '\n';
            if (!complaint.empty()) return 1;
        }
        return 0;
    }

    void Every() {
        for (std::size_t i = 0; i < workloads_.size(); ++i) {
            const Reference& reference = ReferenceOf(i);
            for (const auto* kind : options_.kinds) {
                const std::int64_t reach = Reach(reference.outcome.report.passed, *kind);
                for (std::int64_t n = 1; n <= reach; n += options_.step) Try(reference, {kind, n, options_.seed});
            }
        }
    }

    void Samples() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(options_.seconds);
        Random random(options_.seed);
        for (std::int64_t i = 0;
             options_.seconds > 0 ? std::chrono::steady_clock::now() < end : i < options_.samples;) {
            const auto& reference = ReferenceOf(random.Below(workloads_.size()));
            const auto* kind = options_.kinds[random.Below(options_.kinds.size())];
            const std::int64_t reach = Reach(reference.outcome.report.passed, *kind);
            if (reach == 0 && ++idle_ > 100000) throw std::runtime_error("nothing reaches these faults");
            if (reach == 0) continue;
            idle_ = 0;
            ++i;
            const auto number = static_cast<std::int64_t>(random.Below(static_cast<std::uint64_t>(reach))) + 1;
            Try(reference, {kind, number, random.Below(1000000)});
        }
    }

    void Try(const Reference& reference, const Plan& plan) {
        const Outcome outcome = RunWith(reference, plan);
        Tally& tally = tallies_[std::string(plan.kind->name)];
        ++tally.runs;
        tally.injected += outcome.report.injected;
        tally.told += outcome.end == Outcome::End::Exited && outcome.code != 0;
        tally.done += outcome.Succeeded();
        tally.ended += outcome.end == Outcome::End::Ended;
        const std::string complaint = Complaint(reference, outcome);
        if (complaint.empty()) return;
        ++tally.complaints;
        constexpr int kShown = 3;
        const std::string where = reference.workload.name + " " + std::string(plan.kind->name);
        if (++shown_[where] > kShown) return;
        std::cout << where << ": " << complaint.substr(0, 300) << "\n  replay: kpfaults --workload "
                  << reference.workload.name << " --fault '" << plan.kind->name << "' --number " << plan.number
                  << " --seed " << plan.seed << std::endl;
    }

    int Summary() const {
        Tally sum;
        std::printf("%-16s %9s %9s %9s %9s %9s %9s\n", "fault", "runs", "injected", "told", "done", "ended", "broken");
        const auto line = [](const std::string& name, const Tally& t) {
            std::printf("%-16s %9lld %9lld %9lld %9lld %9lld %9lld\n", name.c_str(), static_cast<long long>(t.runs),
                        static_cast<long long>(t.injected), static_cast<long long>(t.told),
                        static_cast<long long>(t.done), static_cast<long long>(t.ended),
                        static_cast<long long>(t.complaints));
        };
        for (const auto& [name, tally] : tallies_) {
            line(name, tally);
            sum.runs += tally.runs;
            sum.injected += tally.injected;
            sum.told += tally.told;
            sum.done += tally.done;
            sum.ended += tally.ended;
            sum.complaints += tally.complaints;
        }
        line("all", sum);
        std::printf("%zu workloads\n", workloads_.size());
        // A run that injects nothing shows nothing.
        return sum.complaints == 0 && sum.injected > 0 ? 0 : 1;
    }

    const Options& options_;
    std::vector<Workload> workloads_;
    std::vector<std::optional<Reference>> references_;  ///< of each workload, once it was run without faults
    std::map<std::string, Tally> tallies_;
    std::map<std::string, int> shown_;
    std::int64_t idle_ = 0;
};

}  // namespace

}  // namespace kpTables::faults

int main(int count, char** words) {
    using namespace kpTables::faults;
    try {
        const Options options = ReadOptions(count, words);
        InstallFailingMemory();
        InstallFaultyDisk();
        const WorkFolder folder;
        return Session(options).Run();
    } catch (const std::invalid_argument& error) {
        std::cerr << "kpfaults: " << error.what() << '\n' << kUsage;
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "kpfaults: " << error.what() << '\n';
        return 1;
    }
}
