#include "faults/Plan.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>

#include "faults/PowerCut.h"

namespace kpTables::faults {

namespace {

template <class... Points>
constexpr std::uint32_t Bits(Points... points) {
    return ((1U << static_cast<unsigned>(points)) | ...);
}

constexpr std::uint32_t kChanges = Bits(Point::Open, Point::Write, Point::Sync, Point::Truncate, Point::Delete);

constexpr FaultKind kKinds[] = {
    {"open", Bits(Point::Open), Effect::Fail, SQLITE_CANTOPEN, false},
    {"open!", Bits(Point::Open), Effect::Fail, SQLITE_CANTOPEN, true},
    {"read", Bits(Point::Read, Point::Size), Effect::Fail, SQLITE_IOERR_READ, false},
    {"read!", Bits(Point::Read, Point::Size), Effect::Fail, SQLITE_IOERR_READ, true},
    {"write", Bits(Point::Write), Effect::Fail, SQLITE_IOERR_WRITE, false},
    {"write!", Bits(Point::Write), Effect::Fail, SQLITE_IOERR_WRITE, true},
    {"full", Bits(Point::Grow), Effect::Fail, SQLITE_FULL, false},
    {"full!", Bits(Point::Grow), Effect::Fail, SQLITE_FULL, true},
    {"sync", Bits(Point::Sync), Effect::Fail, SQLITE_IOERR_FSYNC, false},
    {"sync!", Bits(Point::Sync), Effect::Fail, SQLITE_IOERR_FSYNC, true},
    {"truncate", Bits(Point::Truncate), Effect::Fail, SQLITE_IOERR_TRUNCATE, false},
    {"delete", Bits(Point::Delete), Effect::Fail, SQLITE_IOERR_DELETE, false},
    {"lock", Bits(Point::Lock), Effect::Fail, SQLITE_IOERR_LOCK, false},
    {"lock!", Bits(Point::Lock), Effect::Fail, SQLITE_IOERR_LOCK, true},
    {"busy", Bits(Point::Lock, Point::SharedMemory), Effect::Fail, SQLITE_BUSY, false},
    {"busy!", Bits(Point::Lock, Point::SharedMemory), Effect::Fail, SQLITE_BUSY, true},
    {"shm", Bits(Point::SharedMemory), Effect::Fail, SQLITE_IOERR_SHMMAP, false},
    {"shm!", Bits(Point::SharedMemory), Effect::Fail, SQLITE_IOERR_SHMMAP, true},
    {"disk!", kChanges | Bits(Point::Read, Point::Size, Point::Lock, Point::SharedMemory), Effect::Fail, SQLITE_IOERR,
     true},
    {"engine-memory", Bits(Point::EngineMemory), Effect::Fail, SQLITE_NOMEM, false},
    {"engine-memory!", Bits(Point::EngineMemory), Effect::Fail, SQLITE_NOMEM, true},
    {"memory", Bits(Point::Memory), Effect::Fail, SQLITE_NOMEM, false},
    {"memory!", Bits(Point::Memory, Point::EngineMemory), Effect::Fail, SQLITE_NOMEM, true},
    {"die", kChanges | Bits(Point::Lock, Point::SharedMemory), Effect::Die, 0, false},
    {"cut", kChanges, Effect::PowerCut, 0, false},
    {"kill", Bits(Point::Moment), Effect::Kill, 0, false},
};

Plan armed;
Report* armedReport = nullptr;
std::int64_t matched = 0;

}  // namespace

std::span<const FaultKind> FaultKinds() { return kKinds; }

const FaultKind* FindFaultKind(std::string_view name) {
    const auto* found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const auto& k) { return k.name == name; });
    return found == std::end(kKinds) ? nullptr : found;
}

std::int64_t Reach(const Passed& passed, const FaultKind& kind) {
    std::int64_t sum = 0;
    for (std::size_t point = 0; point < passed.size(); ++point) {
        if (kind.points >> point & 1U) sum += passed[point];
    }
    return sum;
}

void Arm(const Plan& plan, Report& report) noexcept {
    armed = plan;
    matched = 0;
    armedReport = &report;
}

void Disarm() noexcept { armedReport = nullptr; }

const Plan& Armed() noexcept { return armed; }

bool Fails(Point point) noexcept {
    if (!armedReport) return false;
    ++armedReport->passed[static_cast<std::size_t>(point)];
    if (!armed.kind || !(armed.kind->points >> static_cast<unsigned>(point) & 1U)) return false;
    ++matched;
    if (matched != armed.number && !(armed.kind->forever && matched > armed.number)) return false;
    ++armedReport->injected;
    if (armed.kind->effect == Effect::PowerCut) CutPower();
    if (armed.kind->effect == Effect::Die) ::_exit(kEnded);
    return true;
}

std::uint64_t Random::Next() noexcept {
    // SplitMix64.
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15U;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9U;
    z = (z ^ z >> 27) * 0x94D049BB133111EBU;
    return z ^ z >> 31;
}

}  // namespace kpTables::faults
