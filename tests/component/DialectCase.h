// A call of a method that has two statements, one a dialect.
#pragma once

#include "StatementCase.h"

namespace kpTables::test {

struct DialectCase {
    const char* name;
    std::function<void(CTables&)> call;
    std::vector<Sent> jet;
    std::vector<Sent> server;
};

inline void ExpectDialects(std::span<const DialectCase> cases) {
    for (const DialectCase& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(std::string(each.name) + (isSQL ? " (SQL Server)" : " (Jet)"));
            const auto cnn = std::make_shared<ScriptedConnection>();
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            each.call(tables);
            EXPECT_EQ(cnn->Statements(), isSQL ? each.server : each.jet);
        }
    }
}

}  // namespace kpTables::test
