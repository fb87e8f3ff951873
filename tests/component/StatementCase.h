// A call and the statements that it must send.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "kpTables/CTables.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {

struct StatementCase {
    const char* name;
    std::function<void(CTables&)> call;
    std::vector<Sent> sent;
};

/// Runs every case in both dialects, which must make no difference.
inline void ExpectStatements(std::span<const StatementCase> cases) {
    for (const StatementCase& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(std::string(each.name) + (isSQL ? " (SQL Server)" : " (Jet)"));
            const auto cnn = std::make_shared<ScriptedConnection>();
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            each.call(tables);
            EXPECT_EQ(cnn->Statements(), each.sent);
        }
    }
}

/// Runs query on a connection that answers rows, and expects those very rows with a CacheSize of 200.
inline void ExpectHandsOut(const char* name, const std::function<RecordsetPtr(CTables&)>& query) {
    SCOPED_TRACE(name);
    const auto cnn = std::make_shared<ScriptedConnection>();
    const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}, {2}});
    cnn->Answer(rows);
    CTables tables;
    tables.Cnn(cnn);
    const auto answer = query(tables);
    EXPECT_EQ(answer, rows);
    EXPECT_EQ(rows->CacheSize(), 200);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
}

}  // namespace kpTables::test
