// Writes the statements of CREATE EXTENSION kptables into a file, from the tables of the functions and of their bodies.
#include <cstdio>
#include <fstream>
#include <string>

#include "functions/FunctionTable.h"
#include "sql/print/postgres/FunctionList.h"

int main(int argc, char** argv) {
    using namespace kpTables;
    if (argc != 2) return 2;
    std::string text =
        "\\echo Use \"CREATE EXTENSION kptables\" to load this file. \\quit\n"
        "CREATE SCHEMA kptables;\nGRANT USAGE ON SCHEMA kptables TO PUBLIC;\n";
    for (const auto& listed : sql::print::postgres::ExtensionFunctions()) {
        const functions::Function* const body = functions::FindFunction("kp_" + std::string(listed.name));
        const int count = static_cast<int>(sql::print::postgres::CountArguments(listed.parameters));
        if (!body || count < body->minimumArguments || count > body->maximumArguments) {
            std::fprintf(stderr, "%s of %d arguments has no body\n", std::string(listed.name).c_str(), count);
            return 1;
        }
        text.append("CREATE FUNCTION kptables.\"").append(listed.name).append("\"(").append(listed.parameters);
        text.append(") RETURNS ").append(listed.result).append(" AS 'MODULE_PATHNAME', 'kptables_call' LANGUAGE C");
        // One that cannot be repeated keeps what it needs for the next call in one process.
        text += body->deterministic ? " IMMUTABLE PARALLEL SAFE" : " VOLATILE PARALLEL RESTRICTED";
        text += body->takesNull ? ";\n" : " STRICT;\n";
    }
    std::ofstream file(argv[1]);
    file << text << std::flush;
    return file ? 0 : 1;
}
