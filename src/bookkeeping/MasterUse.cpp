#include "bookkeeping/MasterUse.h"

#include <utility>
#include <vector>

#include "bookkeeping/Query.h"
#include "bookkeeping/References.h"
#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// What a column keeps of the row, as statements write it; "" for a row that has none.
std::string KeptValue(const Reference& reference, const MasterRow& row) {
    switch (reference.by) {
        case ReferenceBy::Code:
            return Trim(row.number).empty() ? "" : "'" + Quoted(row.number) + "'";
        case ReferenceBy::Name:
            return Trim(row.name).empty() ? "" : "'" + Quoted(row.name) + "'";
        default:
            return std::to_string(row.id);
    }
}

}  // namespace

std::string UsesOf(Connection& book, MasterKind kind, const MasterRow& row) {
    // A line of a bill may name a warehouse in two columns: it is one row.
    std::vector<std::pair<std::string, std::string>> conditions;
    for (const Reference& reference : kReferences) {
        const std::string kept = reference.master == kind ? KeptValue(reference, row) : "";
        if (kept.empty()) continue;
        const std::string condition = std::string(reference.column) + "=" + kept;
        bool known = false;
        for (auto& [table, conditionOfTable] : conditions) {
            if (table != reference.table) continue;
            conditionOfTable += " Or " + condition;
            known = true;
        }
        if (!known) conditions.emplace_back(reference.table, condition);
    }
    std::string uses;
    for (const auto& [table, condition] : conditions) {
        const auto count = NumberOf(book, "Select Count(*) From " + table + " Where " + condition);
        if (count == 0) continue;
        uses += (uses.empty() ? "" : ", ") + CountedMessage(count, "{1} row of {2}", "{1} rows of {2}", table);
    }
    return uses;
}

}  // namespace kpTables::bookkeeping
