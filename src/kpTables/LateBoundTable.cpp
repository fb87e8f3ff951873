// The late-bound table: one row a member.
#include <utility>
#include <vector>

#include "kpTables/LateBoundMember.h"
#include "kpTables/LateBoundRows.h"

namespace kpTables {
namespace {

/// Makes the rows that calls by name use.
struct TableRow {
    using Row = _CTables::Member;

    template <auto kFunction, class... Name>
    static Row Method(std::string_view name, std::string_view answers, Name... parameters) {
        return Accessor<kFunction>(name, _CTables::MemberKind::Method, answers, parameters...);
    }
    template <auto kFunction, class... Name>
    static Row Accessor(std::string_view name, _CTables::MemberKind kind, std::string_view answers,
                        Name... parameters) {
        return latebound::MakeMember<kFunction>(name, kind, answers, parameters...);
    }
    static void SetSubsystem(Row& row, std::string_view name) { row.subsystem = name; }
};

}  // namespace

std::span<const _CTables::Member> _CTables::Members() {
    static const std::vector<Member> table = latebound::AllRows<TableRow>();
    return table;
}

}  // namespace kpTables
