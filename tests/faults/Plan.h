// What goes wrong in a run, and when: the n-th of some operations fails, once or from then on.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kpTables::faults {

/// Where a program can fail: what it asks of the disk, and memory.
enum class Point : unsigned {
    Open,
    Read,
    Size,
    Write,
    Grow,  ///< a write beyond the file's end
    Sync,
    Truncate,
    Delete,  ///< removing a name or giving one
    Lock,
    SharedMemory,  ///< the log's index: mapping it, and its locks
    EngineMemory,  ///< the engine's allocations
    Memory,        ///< operator new
    Moment,        ///< a microsecond of the run
    kCount,
};

enum class Effect {
    Fail,      ///< the operation reports an error
    Die,       ///< the process ends at once; what was written stays
    PowerCut,  ///< the process ends at once; what was not synced may be lost, torn or reordered
    Kill,      ///< SIGKILL from outside
};

struct FaultKind {
    std::string_view name;
    std::uint32_t points;  ///< a bit for each Point
    Effect effect;
    int code;  ///< what the operation reports; 0 takes the point's usual error
    bool forever;
};

/// Every kind of fault. "write" fails once, "write!" from the n-th write on.
std::span<const FaultKind> FaultKinds();
/// nullptr for an unknown name.
const FaultKind* FindFaultKind(std::string_view name);

struct Plan {
    const FaultKind* kind = nullptr;  ///< nullptr: nothing fails
    std::int64_t number = 0;          ///< the operation that fails first, from 1
    std::uint64_t seed = 0;           ///< decides what a power cut leaves, and how much a failed write wrote
};

/// How often each point was passed.
using Passed = std::array<std::int64_t, static_cast<std::size_t>(Point::kCount)>;
/// The operations that a kind of fault can hit.
std::int64_t Reach(const Passed& passed, const FaultKind& kind);

/// What a run reports to the process that started it.
struct Report {
    Passed passed{};
    std::int64_t injected = 0;
};

/// Lets faults happen from now on, and counts into the report, which must outlive the run.
void Arm(const Plan& plan, Report& report) noexcept;
void Disarm() noexcept;
/// Counts the operation; true when it is to fail. A process that dies there does not return.
bool Fails(Point point) noexcept;
/// The plan of this run.
const Plan& Armed() noexcept;
/// The exit code of a process that a fault ended.
inline constexpr int kEnded = 137;

/// A small generator with the same numbers everywhere.
class Random {
public:
    explicit Random(std::uint64_t seed) noexcept : state_(seed) {}
    std::uint64_t Next() noexcept;
    /// From 0 to below the bound.
    std::uint64_t Below(std::uint64_t bound) noexcept { return bound == 0 ? 0 : Next() % bound; }

private:
    std::uint64_t state_;
};

}  // namespace kpTables::faults
