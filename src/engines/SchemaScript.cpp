#include "engines/SchemaScript.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "engines/common/SchemaText.h"
#include "engines/postgres/SchemaScript.h"
#include "engines/sqlite/SchemaScript.h"

namespace kpTables::engines {

namespace {

struct ScriptOf {
    std::string_view dialect;
    std::string (*make)();
};
constexpr ScriptOf kScripts[] = {{"jet", JetSchema},
                                 {"sqlserver", SqlServerSchema},
                                 {"sqlite", sqlite::SchemaScript},
                                 {"postgres", postgres::SchemaScript}};

}  // namespace

std::vector<std::string> SchemaDialects() {
    std::vector<std::string> names;
    for (const ScriptOf& script : kScripts) names.emplace_back(script.dialect);
    return names;
}

std::string SchemaScript(const std::string& dialect) {
    const auto* found = std::ranges::find(kScripts, std::string_view(dialect), &ScriptOf::dialect);
    return found == std::end(kScripts) ? std::string() : found->make();
}

}  // namespace kpTables::engines
