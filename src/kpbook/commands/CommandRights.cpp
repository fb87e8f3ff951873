#include "kpbook/commands/CommandRights.h"

#include <algorithm>
#include <iterator>

#include "kpTables/bookkeeping/ActingOperator.h"

namespace kpTables::kpbook::commands {

namespace {

namespace rights = bookkeeping::rights;

struct CommandRight {
    std::string_view command;
    const char* right;
};

constexpr CommandRight kRights[] = {
    {"info", ""},
    {"list", ""},
    {"stock", rights::kStock},
    {"check", rights::kStock},
    {"report", rights::kReports},
    {"payroll", rights::kReports},
    {"close", rights::kClose},
    {"reopen", rights::kClose},
    // By the kind of master row, or of bill, or by the operator that is to be changed.
    {"add", ""},
    {"edit", ""},
    {"remove", ""},
    {"bill", ""},
    {"operators", ""},
};

}  // namespace

const char* RightFor(std::string_view command) {
    const auto* found = std::ranges::find(kRights, command, &CommandRight::command);
    return found == std::end(kRights) ? rights::kSettings : found->right;
}

bool TakesOperator(std::string_view command) {
    constexpr std::string_view kWithout[] = {"methods", "upgrade", "completion", "man", "books", "schema"};
    return std::ranges::find(kWithout, command) == std::end(kWithout);
}

}  // namespace kpTables::kpbook::commands
