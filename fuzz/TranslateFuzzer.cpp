// Every statement that the front end reads, binds and prints for SQLite is one that SQLite can prepare; any other
// raises an SqlError.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Input.h"
#include "SmallBook.h"
#include "kpTables/Error.h"
#include "sql/SqlError.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace {

using namespace kpTables;
using kpTables::fuzz::Require;

bool IsQueryOrChange(sql::StatementKind kind) {
    switch (kind) {
        case sql::StatementKind::Select:
        case sql::StatementKind::SelectInto:
        case sql::StatementKind::Insert:
        case sql::StatementKind::Update:
        case sql::StatementKind::Delete:
        case sql::StatementKind::Transform:
            return true;
        default:
            return false;  // whether a name is free, for example, is known to the engine alone
    }
}

/// What SQLite limits beyond the front end's own limits.
bool IsLimit(std::string_view message) {
    constexpr std::string_view kLimits[] = {"too many",       "too large",     "at most 64 tables",  "parser stack",
                                            "string or blob", "out of memory", "ORDER BY clause has"};
    return std::any_of(std::begin(kLimits), std::end(kLimits),
                       [&](std::string_view limit) { return message.find(limit) != std::string_view::npos; });
}

void Prepare(const sql::Translation& translation) {
    if (!IsQueryOrChange(translation.kind)) return;
    try {
        fuzz::SmallBook().GetExecutor()->GetDriver().Prepare(translation.text);
    } catch (const Error& error) {
        Require(IsLimit(error.Description()), error.Description(), translation.text);
    }
}

void Translate(std::string_view text, sql::Dialect dialect) {
    try {
        const sql::StatementPtr tree = sql::parse::Parse(text, {}, dialect);
        const sql::Catalog& catalog = fuzz::SmallBook().GetCatalog();
        const sql::print::Engine& engine = sql::print::sqlite::SqliteEngine();
        std::vector<sql::LiteralValue> values;
        if (tree->kind == sql::StatementKind::Transform) {
            const auto& transform = static_cast<const sql::TransformStatement&>(*tree);
            if (transform.values.empty()) {
                Prepare(sql::TranslatePivotQuery(transform, catalog, engine));
                values.push_back({sql::LiteralKind::Integer, "3"});
            }
        }
        Prepare(sql::Translate(*tree, catalog, engine, values));
    } catch (const sql::SqlError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto dialect : {sql::Dialect::Jet, sql::Dialect::SqlServer}) Translate(text, dialect);
    return 0;
}
